// SPDX-License-Identifier: MIT
#include "sum/Journal.h"

#include "platform/Tree.h"
#include "sum/DigestText.h"
#include "sum/FileTime.h"
#include "sum/Messages.h"
#include "sum/Output.h"
#include "sum/OwnFiles.h"
#include "sum/StateFile.h"

#include <algorithm>
#include <utility>

namespace sum {

namespace {

constexpr std::size_t pieceSize = 16 * 1024;
constexpr std::chrono::milliseconds longestWait{50};

// The digests of all functions, or nothing when one is not there.
std::string DigestsOf(const StateRecord& record, const std::vector<FunctionChoice>& functions) {
    std::string digests;
    for (const FunctionChoice& choice : functions) {
        const auto isThat = [&](const auto& digest) { return digest.first == choice.name; };
        const auto found = std::ranges::find_if(record.digests, isThat);
        if (found == record.digests.end() || HexBytes(found->second) != choice.digestSize)
            return {};
        const std::vector<std::byte> bytes = DigestBytes(found->second, false, choice.digestSize);
        digests.append(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    }
    return digests;
}

} // namespace

Name JournalOf(const Name& list) {
    return list + ".resume";
}

Journal::Journal(const Name& name, FunctionSet functions, std::int64_t start)
    : name_(name), functions_(std::move(functions)), start_(start) {
    if (!CanBeOwn(name_))
        throw OutputError(Quoted(name_) + cannotBeOwn);
    Load();
    Check(file_.Open(name_));
    held_ = "\n"; // ends a line that was left incomplete
}

void Journal::Load() {
    StateFile file(name_);
    StateRecord record;
    while (file.Next(record)) {
        std::string digests = DigestsOf(record, *functions_);
        if (record.modified && !digests.empty())
            known_[record.path] = {record.size, *record.modified, std::move(digests)};
    }
}

std::optional<FileResult> Journal::Find(const Name& file) const {
    FileResult result;
    const auto known = known_.find(file);
    if (known == known_.end() || platform::LookAt(file, true, result.status) != 0 ||
        result.status.kind != platform::EntryKind::regular || result.status.size != known->second.size ||
        result.status.modified != known->second.modified)
        return std::nullopt;
    result.size = known->second.size;
    const auto* place = reinterpret_cast<const std::byte*>(known->second.digests.data());
    for (const FunctionChoice& choice : *functions_) {
        result.digests.emplace_back(place, place + choice.digestSize);
        place += choice.digestSize;
    }
    return result;
}

void Journal::Add(const Name& file, const FileResult& result) {
    const platform::EntryStatus& status = result.status;
    if (status.kind != platform::EntryKind::regular || status.size != result.size ||
        !IsSettled(status.modified, start_))
        return;
    StateRecord record;
    record.path = file;
    record.size = result.size;
    record.modified = status.modified;
    for (std::size_t i = 0; i < functions_->size(); ++i)
        record.digests.emplace_back((*functions_)[i].name, fyrn::ToHex(result.digests[i]));
    held_ += record.Line();
    const auto now = std::chrono::steady_clock::now();
    if (held_.size() >= pieceSize || now - lastWrite_ > longestWait)
        Flush();
}

void Journal::Flush() {
    lastWrite_ = std::chrono::steady_clock::now();
    Check(file_.Write(std::exchange(held_, {})));
}

void Journal::Remove() {
    file_.Close();
    Check(platform::RemoveFile(name_));
}

void Journal::Check(int error) const {
    if (error != 0)
        throw OutputError(Quoted(name_) + ": " + ErrorText(error));
}

} // namespace sum
