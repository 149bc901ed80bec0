// SPDX-License-Identifier: MIT
// What every fuzz target needs: the fuzzer's bytes as values, and a way to say that something does not hold.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string>
#include <type_traits>

namespace fuzz {

// Hands out the bytes from the front; what is not there is zero.
class Input {
  public:
    Input(const std::uint8_t* data, std::size_t size) : left_(data, size) {}

    bool IsEmpty() const { return left_.empty(); }

    template <class Value>
    Value Take() {
        static_assert(std::is_trivially_copyable_v<Value>);
        Value value{};
        const std::span<const std::uint8_t> bytes = TakeBytes(sizeof value);
        if (!bytes.empty())
            std::memcpy(&value, bytes.data(), bytes.size());
        return value;
    }

    // A number from 0 to limit - 1.
    std::size_t TakeBelow(std::size_t limit) { return Take<std::uint32_t>() % limit; }

    // Up to `count` bytes.
    std::span<const std::uint8_t> TakeBytes(std::size_t count) {
        const auto taken = left_.first(count < left_.size() ? count : left_.size());
        left_ = left_.subspan(taken.size());
        return taken;
    }

    std::span<const std::uint8_t> TakeRest() { return TakeBytes(left_.size()); }

  private:
    std::span<const std::uint8_t> left_;
};

// Ends the process, which the fuzzer takes for a crash and keeps the input of.
inline void Require(bool holds, const char* claim) {
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n", claim);
    std::abort();
}

inline void RequireEqual(const std::string& got, const std::string& expected, const std::string& claim) {
    if (got != expected)
        Require(false, (claim + ": " + got + " instead of " + expected).c_str());
}

} // namespace fuzz

// What libFuzzer calls for every input, and fuzz/Replay.cpp for every file of a corpus.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
