// SPDX-License-Identifier: MIT
// Hash functions as users name them.
#pragma once

#include "fyrn/fyrn.hpp"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace sum {

// The checksums that are printed as decimal numbers, with the file's size, instead of a digest.
enum class Legacy { none, crc, bsd, sysv };

// A function with a length of its digest.
struct FunctionChoice {
    fyrn::Function function;
    std::size_t digestSize = 0; // bytes
    std::string tag;            // in tagged lines: "SHA256", "BLAKE2b-256"
    std::string name;           // as -a, JSON and {alg} have it: "sha256", "blake2b-256"
    Legacy legacy = Legacy::none;
    bool lowestFirst = false; // the digest's bytes in the opposite order: lists of xxhsum --little-endian

    bool operator==(const FunctionChoice& other) const {
        return function == other.function && digestSize == other.digestSize &&
               lowestFirst == other.lowestFirst;
    }
};

// The digests that hashers of these functions end with, in their order.
std::vector<std::vector<std::byte>> FinishAll(std::span<const FunctionChoice> choices,
                                              std::span<fyrn::Hasher> hashers);

// Whether the function gives digests of any length.
bool TakesLength(fyrn::Function function);

// The function with the digest that it has by itself.
FunctionChoice ChoiceOf(fyrn::Function function);

// The same with a digest of `bits`; nothing when it has none of that length. What has one length
// takes only that.
std::optional<FunctionChoice> ChoiceOf(fyrn::Function function, std::size_t bits);

// The function that a tag of a list names, its length included: "SHA256", "BLAKE2b-256",
// "SHA3-512", "SHA2-256(x)"'s "SHA2-256". A tag without a length ("BLAKE2b", "SHAKE128") takes that
// of the digest beside it, given in bytes; "XXH64_LE" is XXH64 with the lowest byte first. Nothing when there is no such function, or when it has
// no digest of that length.
std::optional<FunctionChoice> ChoiceOfTag(std::string_view tag, std::size_t digestBytes);

// Every function with a digest of that many bytes, those that lists have most often first.
std::vector<FunctionChoice> ChoicesOfSize(std::size_t digestBytes);

} // namespace sum
