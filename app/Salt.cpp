// SPDX-License-Identifier: MIT
#include "app/Salt.h"

#include "app/HashTable.h"
#include "platform/File.h"

namespace {

bool CanBeOpened(const wchar_t* path) {
    platform::InputFile file = platform::OpenForReading(path);
    if (!file)
        return false;
    platform::Close(file);
    return true;
}

} // namespace

void LoadSalt(RunContext& context, const SaltChoice& salt) {
    if (salt.path[0] == L'\0' || salt.placement == EnumSaltType::None)
        return;
    platform::AllowSpecialFiles(false); // a salt is a regular file; a pipe would be waited for, or used up
    if (!CanBeOpened(salt.path))
        return;

    const CCrypto_Salt* loaded = nullptr;
    for (std::size_t row = 0; row < hashRowCount; ++row) {
        const auto saltedEngine = hashTable[row].saltedEngine;
        if (saltedEngine == nullptr || !IsSelected(context, row))
            continue;
        CCrypto_Salt& engine = saltedEngine(context);
        if (&engine != loaded) // the salted rows of one engine stand together
            engine.SetSalt_FromFile(salt.path, salt.placement);
        loaded = &engine;
    }
}
