// SPDX-License-Identifier: MIT
// The frame that every engine runs in: open the file, feed the salt and the file's bytes, finish, close.
//
// Nothing here is released when an exception passes through: the file stays open on purpose, which tells
// the platform layer not to move or remove a file whose digest is not known, and the buffer stays with it.
#pragma once

#include "crypto/CCrypto_Salt.h"
#include "platform/File.h"
#include "support/ReadObserver.h"

#include <algorithm>
#include <cstddef>

namespace engine_frame {

// The memory that a file is read into. FeedFile frees it; a copy is the same memory.
struct ReadBuffer {
    unsigned char* bytes;
    std::size_t size;
};

// Not cleared: only bytes that were read are looked at.
inline ReadBuffer MakeReadBuffer(std::size_t size) {
    return {new unsigned char[size], size};
}

// Feeds every byte of the file to update(bytes, count), in pieces of the buffer's size of which only the
// last is shorter. A read error ends the file, and so does the observer. Each piece stands at the start of the
// buffer, which is handed to cleanse(buffer, count) when all is read, with the number of bytes that ever held
// data, and freed.
template <class Update, class Cleanse>
void FeedFile(platform::InputFile& file, ReadBuffer buffer, Update update, Cleanse cleanse) {
    if (readObserver != nullptr)
        readObserver->Begin(file.left >= 0 ? file.left : platform::SizeOf(file));
    std::size_t used = 0;
    while (const std::size_t count = platform::ReadFully(file, buffer.bytes, buffer.size)) {
        used = std::max(used, count);
        update(buffer.bytes, count);
        if (readObserver != nullptr && !readObserver->Read(count))
            break;
    }
    cleanse(buffer.bytes, used);
    delete[] buffer.bytes;
}

// The same for an engine that leaves the buffer as it is.
template <class Update>
void FeedFile(platform::InputFile& file, ReadBuffer buffer, Update update) {
    FeedFile(file, buffer, update, [](unsigned char*, std::size_t) {});
}

// Feed the whole salt at once, if it has this place.
template <class Update>
void FeedSaltBefore(const CCrypto_Salt& salt, Update update) {
    if (salt.FeedsBefore())
        update(salt.SaltBytes(), std::size_t{salt.SaltLength()});
}
template <class Update>
void FeedSaltAfter(const CCrypto_Salt& salt, Update update) {
    if (salt.FeedsAfter())
        update(salt.SaltBytes(), std::size_t{salt.SaltLength()});
}

// Feeds salt, file and salt again, as the salt's placement says. The buffer is there before the first salt
// is fed: where there is no memory, nothing is.
template <class Update>
void FeedSaltAndFile(platform::InputFile& file, ReadBuffer buffer, const CCrypto_Salt& salt, Update update) {
    FeedSaltBefore(salt, update);
    FeedFile(file, buffer, update);
    FeedSaltAfter(salt, update);
}

// Opens the file for the time of hash(file). False when a pointer is null or the file cannot be opened.
template <class Hash>
bool WithOpenFile(const wchar_t* path, const void* output, Hash hash) {
    if (path == nullptr || output == nullptr)
        return false;
    platform::InputFile file = platform::OpenForReading(path);
    if (!file)
        return false;
    hash(file);
    platform::Close(file);
    return true;
}

// The whole of a GetFromFile without departures. False when a pointer is null or the file cannot be opened.
template <class Reset, class Update, class Finish>
bool HashFile(const wchar_t* path, const void* output, std::size_t bufferSize, const CCrypto_Salt& salt,
              Reset reset, Update update, Finish finish) {
    return WithOpenFile(path, output, [&](platform::InputFile& file) {
        reset();
        FeedSaltAndFile(file, MakeReadBuffer(bufferSize), salt, update);
        finish();
    });
}

} // namespace engine_frame
