// SPDX-License-Identifier: MIT
#include "sum/ManyFiles.h"

#include "platform/ReadAhead.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <new>
#include <utility>

namespace sum {

namespace {

// More lanes than these gain little, and all pieces should stay in the second-level cache.
constexpr std::size_t maxFiles = 16;
constexpr std::size_t pieceSize = 64 * 1024;
constexpr std::size_t lonePieceSize = 1'000'000; // where one file after the other is as fast

std::size_t FilesAtOnce(const FunctionSet& functions) {
    std::size_t lanes = 1;
    for (const FunctionChoice& choice : *functions)
        lanes = std::max(lanes, choice.function.Lanes());
    return std::min(lanes, maxFiles);
}

} // namespace

std::size_t ManyFiles::Room(const HashJob& job) const {
    const std::size_t wanted = FilesAtOnce(job.functions);
    return wanted > busy_ ? wanted - busy_ : 0;
}

ManyFiles::Slot& ManyFiles::FreeSlot() {
    for (Slot& slot : slots_)
        if (slot.job == nullptr)
            return slot;
    return slots_.emplace_back();
}

// Hashers are kept, since most runs use the same for every file.
void ManyFiles::Start(Slot& slot, HashJob& job) {
    if (slot.functions == job.functions) {
        for (fyrn::Hasher& hasher : slot.hashers)
            hasher.Reset();
    } else {
        slot.functions = nullptr;
        slot.hashers.clear();
        for (const FunctionChoice& choice : *job.functions)
            slot.hashers.emplace_back(choice.function, choice.digestSize);
        slot.buffer = ReadBuffer(FilesAtOnce(job.functions) == 1 ? lonePieceSize : pieceSize);
        slot.functions = job.functions;
    }
    slot.fill = 0;
    slot.atEnd = false;
    slot.isTimed = false;
    slot.job = &job;
    ++busy_;
}

void ManyFiles::Begin(HashJob& job, std::vector<HashJob*>& done) {
    try {
        platform::ByteFile file = OpenToHash(job.name, job.opening, job.result.error);
        if (job.result.error != 0)
            return done.push_back(&job);
        Slot& slot = FreeSlot();
        Start(slot, job);
        slot.file = std::move(file);
        if (slot.file.Look(slot.left, &job.result.status) == platform::ByteFile::Kind::regular) {
            slot.isTimed = platform::readPace.IsTimed();
            return;
        }
        while (slot.job != nullptr) {
            Read(slot);
            HashPieces();
            if (slot.atEnd)
                Finish(slot, done);
        }
    } catch (const std::bad_alloc&) {
        job.result.error = ENOMEM;
        done.push_back(&job);
    }
}

void ManyFiles::Step(std::vector<HashJob*>& done) {
    try {
        for (Slot& slot : slots_)
            if (slot.job != nullptr)
                Read(slot);
        HashPieces();
        for (Slot& slot : slots_)
            if (slot.job != nullptr && slot.atEnd)
                Finish(slot, done);
    } catch (const std::bad_alloc&) {
        FailAll(ENOMEM, done);
    }
}

// One read of the system, behind what the buffer holds.
std::ptrdiff_t ManyFiles::ReadSome(Slot& slot) {
    const auto read = [&slot] {
        return slot.file.Read(slot.buffer.Data() + slot.fill, slot.buffer.Size() - slot.fill,
                              slot.job->result.error);
    };
    if (!std::exchange(slot.isTimed, false))
        return read();
    const auto begin = std::chrono::steady_clock::now();
    const std::ptrdiff_t count = read();
    if (count > 0)
        platform::readPace.Add(std::chrono::steady_clock::now() - begin, static_cast<std::size_t>(count));
    return count;
}

// Fills the buffer, unless the file ends before. A file that gave all the bytes that its size promised is not asked for
// its end: most files are small, and that would be a fifth of the work on them.
void ManyFiles::Read(Slot& slot) {
    while (slot.fill < slot.buffer.Size() && !slot.atEnd) {
        const std::ptrdiff_t count = ReadSome(slot);
        if (count <= 0) {
            slot.atEnd = true;
            return;
        }
        const auto read = static_cast<std::size_t>(count);
        slot.fill += read;
        slot.job->result.size += read;
        bytesRead_.fetch_add(read, std::memory_order_relaxed);
        slot.atEnd = slot.left > 0 && slot.job->result.size == static_cast<std::uint64_t>(slot.left);
    }
}

void ManyFiles::HashPieces() {
    hashers_.clear();
    pieces_.clear();
    for (Slot& slot : slots_) {
        if (slot.job == nullptr || slot.fill == 0)
            continue;
        for (fyrn::Hasher& hasher : slot.hashers) {
            hashers_.push_back(&hasher);
            pieces_.emplace_back(slot.buffer.Data(), slot.fill);
        }
        slot.fill = 0;
    }
    if (hashers_.size() == 1)
        hashers_[0]->Update(pieces_[0]);
    else
        fyrn::Hasher::UpdateMany(hashers_, pieces_);
}

// Stores the digests of a file that was read to its end.
void ManyFiles::Finish(Slot& slot, std::vector<HashJob*>& done) {
    FileResult& result = slot.job->result;
    slot.file.Close();
    done.push_back(slot.job);
    slot.job = nullptr;
    --busy_;
    if (result.error == 0)
        result.digests = FinishAll(*slot.functions, slot.hashers);
}

void ManyFiles::FailAll(int error, std::vector<HashJob*>& done) {
    for (Slot& slot : slots_) {
        if (slot.job == nullptr)
            continue;
        slot.job->result.error = error;
        slot.file.Close();
        done.push_back(slot.job);
        slot.job = nullptr;
        --busy_;
    }
}

} // namespace sum
