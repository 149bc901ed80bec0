// SPDX-License-Identifier: MIT
#include "sum/FileHasher.h"

#include "sum/ReadBuffer.h"

#include <cerrno>
#include <span>

namespace sum {

namespace {

// Read, and then hashed by one function after the other, out of the second-level cache.
constexpr std::size_t bufferSize = 256 * 1024;

} // namespace

struct FileHasher::State {
    ReadWatcher* watcher;
    Opening opening;
    FunctionSet functions; // that `hashers` are of
    std::vector<fyrn::Hasher> hashers;
    ReadBuffer buffer = ReadBuffer(bufferSize);

    void Begin(const FunctionSet& wanted);
    FileResult Hash(platform::ByteFile file, const Name& name);
    int HashAll(platform::ByteFile& file, std::int64_t sizeAtStart, std::uint64_t& size);
};

// Hashers are kept, since most runs use the same for every file.
void FileHasher::State::Begin(const FunctionSet& wanted) {
    if (wanted == functions) {
        for (fyrn::Hasher& hasher : hashers)
            hasher.Reset();
        return;
    }
    functions = nullptr;
    hashers.clear();
    for (const FunctionChoice& choice : *wanted)
        hashers.emplace_back(choice.function, choice.digestSize);
    functions = wanted;
}

// Reads to the end: where a regular file ended when it was opened, which saves asking for more, or
// where reading finds none. Files of the system that tell no size are read as well as those that grow.
int FileHasher::State::HashAll(platform::ByteFile& file, std::int64_t sizeAtStart, std::uint64_t& size) {
    int error = 0;
    for (;;) {
        const std::ptrdiff_t count = file.Read(buffer.Data(), buffer.Size(), error);
        if (count <= 0)
            return count < 0 ? error : 0;
        const auto read = static_cast<std::size_t>(count);
        for (fyrn::Hasher& hasher : hashers)
            hasher.Update(std::span(buffer.Data(), read));
        size += read;
        if (watcher != nullptr)
            watcher->Read(read);
        if (sizeAtStart > 0 && size == static_cast<std::uint64_t>(sizeAtStart))
            return 0;
    }
}

FileResult FileHasher::State::Hash(platform::ByteFile file, const Name& name) {
    FileResult result;
    std::int64_t left;
    const platform::ByteFile::Kind kind = file.Look(left, &result.status);
    if (watcher != nullptr) {
        watcher->Begin(name);
        if (kind == platform::ByteFile::Kind::other || left > std::int64_t{bufferSize})
            watcher->WillWait();
    }
    result.error = HashAll(file, left, result.size);
    if (result.error != 0)
        return result;
    result.digests = FinishAll(*functions, hashers);
    return result;
}

platform::ByteFile OpenToHash(const Name& name, Opening opening, int& error) {
    error = 0;
    if (name == "-")
        return platform::ByteFile::StandardInput();
    return opening == Opening::stored ? platform::ByteFile::OpenStored(name, error)
                                      : platform::ByteFile::Open(name, error);
}

FileHasher::FileHasher(ReadWatcher* watcher, Opening opening) : state_(std::make_unique<State>()) {
    state_->watcher = watcher;
    state_->opening = opening;
}

FileHasher::~FileHasher() = default;

FileResult FileHasher::Hash(const Name& name, const FunctionSet& functions) {
    FileResult result;
    platform::ByteFile file = OpenToHash(name, state_->opening, result.error);
    if (result.error != 0)
        return result;
    state_->Begin(functions);
    return state_->Hash(std::move(file), name);
}

} // namespace sum
