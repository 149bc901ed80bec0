// SPDX-License-Identifier: MIT
// MD6 of any number of bits, in pieces of any number of bits, against the reference.
// Input: digest size, bits to leave out at the end, number of pieces, their lengths, message.
#include "crypto/CCrypto_Md6.h"
#include "fuzz/FuzzInput.h"
#include "tests/helpers/Bytes.h"
#include "tests/reference/Md6.h"

#include <algorithm>
#include <vector>

namespace {

// The bits from `first` on, moved to the start of a buffer of just their size; behind them, one bits that must
// not count.
helpers::Bytes CutBits(std::span<const std::uint8_t> bytes, std::size_t first, std::size_t count) {
    helpers::Bytes piece((count + 7) / 8, 0xff);
    for (std::size_t i = 0; i < count; ++i)
        if ((bytes[(first + i) / 8] >> (7 - (first + i) % 8) & 1) == 0)
            piece[i / 8] = static_cast<std::uint8_t>(piece[i / 8] & ~(0x80 >> i % 8));
    return piece;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 9000)
        return 0;
    fuzz::Input input(data, size);
    const auto digestBits = static_cast<unsigned short>(1 + input.TakeBelow(512));
    const std::size_t leftOut = input.Take<std::uint8_t>() % 8u;
    std::vector<std::size_t> pieces(input.Take<std::uint8_t>() % 20u);
    for (std::size_t& piece : pieces)
        piece = input.Take<std::uint16_t>();
    const auto message = input.TakeRest();
    const std::size_t bitCount = 8 * message.size() - std::min(leftOut, 8 * message.size());

    static CCrypto_Md6 engine(nullptr); // one for all, as in a run
    fuzz::Require(engine.Initialize(digestBits, 0) == md6Success, "a message begins");
    pieces.push_back(bitCount);
    std::size_t position = 0;
    for (const std::size_t piece : pieces) {
        const std::size_t count = std::min(piece, bitCount - position);
        helpers::Bytes bits = CutBits(message, position, count);
        bits.reserve(1); // an address also for no bits
        fuzz::Require(engine.Md6_Update(bits.data(), count) == md6Success, "bits are taken");
        position += count;
    }
    fuzz::Require(engine.Md6_Final() == md6Success, "a message ends");
    fuzz::RequireEqual(helpers::ToHex({engine.HashValue(), (digestBits + 7u) / 8}),
                       helpers::ToHex(reference::Md6({message.begin(), message.end()}, bitCount,
                                                     {.digestBits = digestBits})),
                       std::to_string(bitCount) + " bits");
    return 0;
}
