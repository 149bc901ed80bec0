// SPDX-License-Identifier: MIT
#include "tests/helpers/RowReference.h"

#include "tests/helpers/FunctionReference.h"
#include "tests/reference/Md6.h"
#include "tests/reference/SaltedSponge.h"
#include "tests/reference/Tiger.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>
#include <vector>

namespace helpers {

namespace {

// Salt, file and salt as they follow each other, and the salt that an engine holds even where it feeds none.
struct Input {
    std::vector<Bytes> parts;
    Bytes salt;

    Bytes Joined() const {
        Bytes joined;
        for (const Bytes& part : parts)
            joined.insert(joined.end(), part.begin(), part.end());
        return joined;
    }
};

Input SaltedInput(std::span<const std::uint8_t> message, const Bytes& salt, EnumSaltType placement) {
    Input input{{Bytes(message.begin(), message.end())}, salt};
    if (salt.empty())
        return input;
    if (placement == EnumSaltType::Before || placement == EnumSaltType::Both)
        input.parts.insert(input.parts.begin(), salt);
    if (placement == EnumSaltType::After || placement == EnumSaltType::Both)
        input.parts.push_back(salt);
    return input;
}

std::size_t NumberAfter(std::string_view row, std::size_t position) {
    std::size_t number = 0;
    const char* const end = row.data() + row.size();
    if (position > row.size() || std::from_chars(row.data() + position, end, number).ptr != end)
        throw std::invalid_argument("no row of the hash table");
    return number;
}

// What the name ends in, in bytes; the functions without a number there have digests of one size.
std::size_t DigestSize(std::string_view row) {
    const std::size_t dash = row.find('-');
    return dash == std::string_view::npos ? 0 : NumberAfter(row, dash + 1) / 8;
}

Bytes Sponge(const Input& input, std::uint8_t padding, std::size_t bits) {
    return reference::SaltedSponge(200 - bits / 4, padding, input.parts, bits / 8);
}

Bytes Md6(const Input& input, std::size_t bits) {
    const Bytes message = input.Joined();
    const Bytes key(input.salt.begin(),
                    input.salt.begin() +
                        static_cast<std::ptrdiff_t>(std::min<std::size_t>(64, input.salt.size())));
    return reference::Md6(message, 8 * message.size(), {.digestBits = static_cast<int>(bits), .key = key});
}

// The bytes that Tiger counts: those that waited when a part, or a piece of a long file, completed their block are
// not among them.
std::uint64_t TigerCount(const Input& input) {
    constexpr std::size_t piece = 1'048'576;
    std::uint64_t fed = 0;
    std::uint64_t lost = 0;
    for (const Bytes& part : input.parts)
        for (std::size_t begin = 0; begin < part.size(); begin += piece) {
            const std::uint64_t count = std::min(piece, part.size() - begin);
            if (fed % 64 + count >= 64)
                lost += fed % 64;
            fed += count;
        }
    return fed - lost;
}

Bytes Tiger(const Input& input, bool tiger2, std::size_t bits) {
    Bytes digest = reference::Tiger(
        input.Joined(), tiger2 ? reference::tiger2Padding : reference::tiger1Padding, TigerCount(input));
    digest.resize(bits / 8);
    return digest;
}

Bytes Digest(std::string_view row, std::span<const std::uint8_t> message, const Input& input) {
    if (row.starts_with("KECCAK-"))
        return Sponge(input, 0x01, NumberAfter(row, 7));
    if (row.starts_with("MD6-"))
        return Md6(input, NumberAfter(row, 4));
    if (row.starts_with("SHA3-"))
        return Sponge(input, 0x06, NumberAfter(row, 5));
    if (row.starts_with("TIGER"))
        return Tiger(input, row.starts_with("TIGER2-"), NumberAfter(row, 7));
    const bool takesNoSalt = row.starts_with("BLAKE2-") || row.starts_with("SHAKE-");
    return FunctionReference(row, takesNoSalt ? Bytes(message.begin(), message.end()) : input.Joined(),
                             DigestSize(row));
}

} // namespace

std::string RowReference(std::string_view row, std::span<const std::uint8_t> message, const Bytes& salt,
                         EnumSaltType placement) {
    return ToHex(Digest(row, message, SaltedInput(message, salt, placement)));
}

} // namespace helpers
