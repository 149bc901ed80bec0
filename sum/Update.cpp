// SPDX-License-Identifier: MIT
#include "sum/Update.h"

#include "platform/ByteFile.h"
#include "sum/Findings.h"
#include "sum/ListFile.h"
#include "sum/Messages.h"
#include "sum/NewLines.h"
#include "sum/OwnFiles.h"
#include "sum/StateFile.h"
#include "sum/TreeError.h"

#include <optional>
#include <vector>

namespace sum {

namespace {

[[noreturn]] void Fail(const Name& name, const std::string& reason) {
    throw TreeError(Quoted(name) + ": " + reason);
}

StateRecord RecordOf(Name path, const KeptDigest* digests, const Content& content,
                     const FunctionNumbers& functions) {
    StateRecord record;
    record.path = std::move(path);
    record.size = content.size;
    if (content.hasTime)
        record.modified = content.modified;
    for (; digests != nullptr; digests = digests->next)
        record.digests.emplace_back(functions[digests->function].name, fyrn::ToHex(digests->Bytes()));
    return record;
}

} // namespace

Update::Update(const Options& options, const Scope& scope, TreeList& list)
    : options_(options), scope_(scope), list_(list), name_(*options.list), file_(name_) {
    if (const int error = platform::LookAt(name_, true, status_))
        Fail(name_, ErrorText(error));
    if (status_.kind != platform::EntryKind::regular)
        Fail(name_, "only a regular file can be updated");
    file_.TakeRightsOf(name_);
}

void Update::CheckThatListIsTheSame() const {
    platform::EntryStatus now;
    if (platform::LookAt(name_, true, now) != 0 || !(now.identity == status_.identity) ||
        now.size != status_.size || now.modified != status_.modified)
        Fail(name_, "the list was changed meanwhile, and is not updated");
}

// A copy, so that the list has its name at any moment.
void Update::KeepOlder() const {
    int error = 0;
    platform::ByteFile list = platform::ByteFile::Open(name_, error);
    if (error != 0)
        Fail(name_, ErrorText(error));
    OutputFile older(OlderOf(name_));
    older.TakeRightsOf(name_);
    std::vector<char> piece(std::size_t{256} * 1024);
    for (;;) {
        const std::ptrdiff_t count = list.Read(piece.data(), piece.size(), error);
        if (count < 0)
            Fail(name_, ErrorText(error));
        if (count == 0)
            break;
        older.Write({piece.data(), static_cast<std::size_t>(count)});
    }
    older.Complete();
}

// The old list is closed before it is replaced, which Windows demands.
void Update::WriteLines(const std::deque<FoundFile>& files) {
    NewLines lines(options_, scope_, list_, file_);
    try {
        lines.Write(files);
    } catch (const ListError& error) {
        Fail(name_, ErrorText(error.error));
    }
    refused_.insert(lines.Refused().begin(), lines.Refused().end());
}

bool Update::Write(const std::deque<FoundFile>& files) {
    CheckThatListIsTheSame();
    WriteLines(files);
    KeepOlder();
    CheckThatListIsTheSame();
    file_.Complete();
    for (const FoundFile* const file : refused_)
        Say(Quoted(list_.Spelled(file->key)) + ": this name cannot be written in lists of this form");
    WriteState(files);
    return refused_.empty();
}

// Of a file that changed and was not accepted, what the list tells stays remembered: if its size and
// time are the same, it must not be taken for true, but for the next update it is still decay.
void Update::WriteState(const std::deque<FoundFile>& files) const {
    OutputFile state(StateOf(name_));
    state.TakeRightsOf(name_);
    const FunctionNumbers& functions = list_.All().Functions();
    for (const Entry& entry : list_.All().All()) {
        const Outcome outcome = OutcomeOf(entry);
        if (outcome == Outcome::missing || outcome == Outcome::renamed)
            continue;
        const bool isAccepted = IsAccepted(outcome, options_.acceptance);
        const Content& content = isAccepted ? *entry.found : entry.listed;
        if (outcome != Outcome::same && !isAccepted && !content.hasTime)
            continue;
        StateRecord record = RecordOf(Name(entry.name), content.digests, content, functions);
        record.stale = !isAccepted && (outcome == Outcome::changedUnseen || entry.isStale);
        state.Write(record.Line());
    }
    for (const FoundFile& file : files) {
        const bool isListed = file.kind == FoundFile::Kind::isNew || file.kind == FoundFile::Kind::copy ||
                              file.kind == FoundFile::Kind::renamed;
        if (!isListed || refused_.contains(&file))
            continue;
        const KeptDigest* const digests =
            file.kind == FoundFile::Kind::renamed ? file.origin->listed.digests : file.content.digests;
        state.Write(RecordOf(list_.Spelled(file.key), digests, file.content, functions).Line());
    }
    state.Complete();
}

} // namespace sum
