// SPDX-License-Identifier: MIT
// The library's functions and objects, for tests that hold for each of them.
#pragma once

#include "fyrn/fyrn.h"
#include "hash/FunctionTable.h"
#include "tests/helpers/Bytes.h"
#include "tests/helpers/FunctionReference.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <random>
#include <span>
#include <string>
#include <vector>

namespace hash_tests {

using helpers::Bytes;
using Message = std::span<const std::uint8_t>;
using Random = std::mt19937_64;

struct FreeHash {
    void operator()(fyrn_hash* hash) const { fyrn_hash_free(hash); }
};
using Hash = std::unique_ptr<fyrn_hash, FreeHash>;

inline std::vector<const fyrn_function*> AllFunctions() {
    std::vector<const fyrn_function*> all;
    for (std::size_t i = 0; i < fyrn_function_count(); ++i)
        all.push_back(fyrn_function_at(i));
    return all;
}

inline std::string Name(const fyrn_function* function) {
    return fyrn_function_name(function);
}

// Whether there are digests of several lengths, and of any.
inline bool IsSized(const fyrn_function* function) {
    return function->minDigestSize != function->maxDigestSize;
}
inline bool IsUnlimited(const fyrn_function* function) {
    return function->maxDigestSize == SIZE_MAX;
}

// The block size, for choosing lengths; CRCs, which have none, get one that fits their kernels.
inline std::size_t Block(const fyrn_function* function) {
    return std::max<std::size_t>(fyrn_function_block_size(function), 64);
}

inline Hash New(const fyrn_function* function) {
    return Hash(fyrn_hash_new(function));
}

inline void Update(const Hash& hash, Message bytes) {
    fyrn_hash_update(hash.get(), bytes.data(), bytes.size());
}

// A digest's place, and bytes behind it that must stay as they are.
class DigestSpace {
  public:
    explicit DigestSpace(std::size_t size) : bytes_(size + 16, 0xa5), size_(size) {}

    unsigned char* Begin() { return bytes_.data(); }

    Bytes Digest() const {
        for (std::size_t i = size_; i < bytes_.size(); ++i)
            EXPECT_EQ(bytes_[i], 0xa5) << "written behind a digest of " << size_ << " bytes";
        return {bytes_.begin(), bytes_.begin() + static_cast<std::ptrdiff_t>(size_)};
    }

  private:
    Bytes bytes_;
    std::size_t size_;
};

inline std::string Finish(const Hash& hash) {
    DigestSpace space(fyrn_hash_digest_size(hash.get()));
    fyrn_hash_finish(hash.get(), space.Begin());
    return helpers::ToHex(space.Digest());
}

inline std::string Digest(const fyrn_function* function, Message message) {
    DigestSpace space(fyrn_function_digest_size(function));
    EXPECT_EQ(fyrn_digest(function, message.data(), message.size(), space.Begin()), 0);
    return helpers::ToHex(space.Digest());
}

inline std::string Expected(const fyrn_function* function, Message message) {
    return helpers::ToHex(helpers::FunctionReference(fyrn_function_name(function), message,
                                                     fyrn_function_digest_size(function)));
}

// A length that tends to what breaks code: nothing, a few bytes, whole blocks or nearly so, or any up to `limit`.
inline std::size_t AwkwardLength(Random& random, std::size_t block, std::size_t limit) {
    const std::uint64_t kind = random() % 8;
    const std::size_t length = kind == 0   ? 0
                               : kind <= 2 ? random() % 20
                               : kind <= 5 ? (1 + random() % 4) * block + random() % 3 - 1
                                           : random() % (limit + 1);
    return std::min(length, limit);
}

} // namespace hash_tests
