// SPDX-License-Identifier: MIT
// Messages that come in pieces of any size, against the references, for every member that takes pieces.
// Input: function, number of pieces, their lengths, message.
#include "crypto/CCrypto_Blake2.h"
#include "crypto/CCrypto_Skein.h"
#include "crypto/CCrypto_Tiger.h"
#include "fuzz/FuzzInput.h"
#include "tests/helpers/RowReference.h"
#include "tests/reference/Tiger.h"

#include <algorithm>
#include <vector>

namespace {

using helpers::Bytes;
using Pieces = std::vector<std::span<const std::uint8_t>>;

template <unsigned char length>
Bytes Blake2(const Pieces& pieces) {
    CCrypto_Blake2 engine(nullptr);
    engine.Blake2_Initialize(length);
    for (const auto piece : pieces)
        engine.Blake2_Update(piece.data(), piece.size());
    Bytes digest(length);
    engine.Blake2_Final(digest.data(), length);
    return digest;
}

template <class Context, auto init, auto update, auto final>
Bytes Skein(const Pieces& pieces) {
    CCrypto_Skein engine(nullptr);
    Context context;
    (engine.*init)(&context);
    for (const auto piece : pieces)
        (engine.*update)(&context, piece.data(), static_cast<unsigned int>(piece.size()));
    Bytes digest(sizeof context.buffer);
    (engine.*final)(&context, digest.data());
    return digest;
}

struct Row {
    const char* name;
    Bytes (*digest)(const Pieces& pieces);
};

constexpr Row rows[] = {
    {"BLAKE2-128", Blake2<16>},
    {"BLAKE2-512", Blake2<64>},
    {"SKEIN-256", Skein<CCrypto_Skein::SKEIN_256_CONTEXT, &CCrypto_Skein::Skein_256_Init,
                        &CCrypto_Skein::Skein_256_Update, &CCrypto_Skein::Skein_256_Final>},
    {"SKEIN-512", Skein<CCrypto_Skein::SKEIN_512_CONTEXT, &CCrypto_Skein::Skein_512_Init,
                        &CCrypto_Skein::Skein_512_Update, &CCrypto_Skein::Skein_512_Final>},
    {"SKEIN-1024", Skein<CCrypto_Skein::SKEIN_1024_CONTEXT, &CCrypto_Skein::Skein_1024_Init,
                         &CCrypto_Skein::Skein_1024_Update, &CCrypto_Skein::Skein_1024_Final>},
};

// Tiger's digest depends on the pieces: bytes that waited when a piece completed their block are not counted.
void CheckTiger(const Pieces& pieces, std::span<const std::uint8_t> message) {
    CCrypto_Tiger engine(nullptr);
    engine.Tiger_Initialize();
    std::uint64_t fed = 0;
    std::uint64_t lost = 0;
    for (const auto piece : pieces) {
        engine.Tiger_Transform(piece.data(), piece.size());
        if (fed % 64 + piece.size() >= 64)
            lost += fed % 64;
        fed += piece.size();
    }
    engine.Tiger_Finalize();
    Bytes digest;
    for (std::size_t i = 0; i < 24; ++i)
        digest.push_back(static_cast<std::uint8_t>(engine.State()[i / 8] >> (8 * (i % 8))));
    // The padding of Tiger2, which an engine starts with.
    fuzz::RequireEqual(helpers::ToHex(digest),
                       helpers::ToHex(reference::Tiger(message, reference::tiger2Padding, fed - lost)),
                       "Tiger");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 20'000)
        return 0;
    fuzz::Input input(data, size);
    const std::size_t function = input.Take<std::uint8_t>() % (std::size(rows) + 1);
    std::vector<std::size_t> lengths(input.Take<std::uint8_t>() % 20u);
    for (std::size_t& length : lengths)
        length = input.Take<std::uint16_t>() % 2000u;
    const auto message = input.TakeRest();
    Pieces pieces;
    std::size_t position = 0;
    for (const std::size_t length : lengths) {
        pieces.push_back(message.subspan(position, std::min(length, message.size() - position)));
        position += pieces.back().size();
    }
    pieces.push_back(message.subspan(position));
    if (function == std::size(rows))
        CheckTiger(pieces, message);
    else
        fuzz::RequireEqual(helpers::ToHex(rows[function].digest(pieces)),
                           helpers::RowReference(rows[function].name, message), rows[function].name);
    return 0;
}
