// SPDX-License-Identifier: MIT
// Every row of the hash table, with any salt in any place, against the references.
// Input: row, placement, length of the salt, salt, file.
#include "app/HashTable.h"
#include "fuzz/FuzzInput.h"
#include "tests/helpers/RowName.h"
#include "tests/helpers/RowReference.h"
#include "tests/helpers/ScratchFiles.h"

#include <memory>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 20'000)
        return 0;
    static const helpers::ScratchFiles files;
    static const auto context = std::make_unique<RunContext>(); // one for all, as in a run
    fuzz::Input input(data, size);
    const HashRow& row = hashTable[input.Take<std::uint8_t>() % hashRowCount];
    const auto placement = EnumSaltType{input.Take<std::uint8_t>() % 5u};
    const auto saltBytes = input.TakeBytes(input.Take<std::uint16_t>() % 2048u);
    const helpers::Bytes salt(saltBytes.begin(), saltBytes.end());
    const auto message = input.TakeRest();
    const std::string name = helpers::RowName(row);

    // The KECCAK rows run on the engine of the SHA rows, whose salt they share.
    CCrypto_Salt* const engine = row.saltedEngine != nullptr   ? &row.saltedEngine(*context)
                                 : name.starts_with("KECCAK-") ? &context->sha
                                                               : nullptr;
    if (engine != nullptr)
        engine->SetSalt_FromFile(files.Write("salt", salt).c_str(), placement);
    fuzz::Require(row.hash(*context, files.Write("file", message).c_str()), "a file that is there is hashed");
    fuzz::RequireEqual(
        context->hashText,
        helpers::RowReference(name, message, engine != nullptr ? salt : helpers::Bytes(), placement), name);
    return 0;
}
