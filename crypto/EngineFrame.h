// SPDX-License-Identifier: MIT
// The frame that every engine runs in: open the file, feed the salt and the file's bytes, finish, close.
//
// Nothing here is released when an exception passes through: the file stays open on purpose, which tells the
// platform layer not to move or remove a file whose digest is not known, and the buffer stays with it.
#pragma once

#include "crypto/CCrypto_Salt.h"
#include "platform/File.h"

#include <cstddef>

namespace engine_frame {

// Feeds every byte of the file to update(bytes, count), in pieces of `bufferSize` of which only the last is
// shorter. A read error ends the file.
template <class Update>
void FeedFile(platform::InputFile& file, std::size_t bufferSize, Update update) {
    unsigned char* const buffer = new unsigned char[bufferSize]; // not cleared: only bytes read are looked at
    while (const std::size_t count = platform::ReadFully(file, buffer, bufferSize))
        update(buffer, count);
    delete[] buffer;
}

// Feeds salt, file and salt again, as the salt's placement says.
template <class Update>
void FeedSaltAndFile(platform::InputFile& file, std::size_t bufferSize, const CCrypto_Salt& salt,
                     Update update) {
    if (salt.FeedsBefore())
        update(salt.SaltBytes(), std::size_t{salt.SaltLength()});
    FeedFile(file, bufferSize, update);
    if (salt.FeedsAfter())
        update(salt.SaltBytes(), std::size_t{salt.SaltLength()});
}

// The whole of a GetFromFile without departures. False when a pointer is null or the file cannot be opened.
template <class Reset, class Update, class Finish>
bool HashFile(const wchar_t* path, const void* output, std::size_t bufferSize, const CCrypto_Salt& salt,
              Reset reset, Update update, Finish finish) {
    if (path == nullptr || output == nullptr)
        return false;
    platform::InputFile file = platform::OpenForReading(path);
    if (!file)
        return false;
    reset();
    FeedSaltAndFile(file, bufferSize, salt, update);
    finish();
    platform::Close(file);
    return true;
}

} // namespace engine_frame
