// SPDX-License-Identifier: MIT
// The XXH functions (xxHash fast digest algorithm, version 0.8), by the reference header of their author. Digests are
// the numbers' bytes, the highest first, as xxhsum prints them.
#pragma once

#define XXH_INLINE_ALL
#include <xxhash.h>

#include <cstddef>
#include <cstdint>

namespace fyrn::hash {

struct Xxh32 {
    static constexpr std::size_t blockSize = 16, digestSize = 4; // bytes
    using State = XXH32_state_t;
    static void Reset(State& state) { XXH32_reset(&state, 0); }
    static void Update(State& state, const std::uint8_t* bytes, std::size_t count) {
        XXH32_update(&state, bytes, count);
    }
    static void Finish(const State& state, std::uint8_t* digest) {
        XXH32_canonicalFromHash(reinterpret_cast<XXH32_canonical_t*>(digest), XXH32_digest(&state));
    }
};

struct Xxh64 {
    static constexpr std::size_t blockSize = 32, digestSize = 8; // bytes
    using State = XXH64_state_t;
    static void Reset(State& state) { XXH64_reset(&state, 0); }
    static void Update(State& state, const std::uint8_t* bytes, std::size_t count) {
        XXH64_update(&state, bytes, count);
    }
    static void Finish(const State& state, std::uint8_t* digest) {
        XXH64_canonicalFromHash(reinterpret_cast<XXH64_canonical_t*>(digest), XXH64_digest(&state));
    }
};

struct Xxh3 {
    static constexpr std::size_t blockSize = 64, digestSize = 8; // bytes
    using State = XXH3_state_t;
    static void Reset(State& state) { XXH3_64bits_reset(&state); }
    static void Update(State& state, const std::uint8_t* bytes, std::size_t count) {
        XXH3_64bits_update(&state, bytes, count);
    }
    static void Finish(const State& state, std::uint8_t* digest) {
        XXH64_canonicalFromHash(reinterpret_cast<XXH64_canonical_t*>(digest), XXH3_64bits_digest(&state));
    }
};

struct Xxh128 : Xxh3 {
    static constexpr std::size_t digestSize = 16;
    static void Reset(State& state) { XXH3_128bits_reset(&state); }
    static void Finish(const State& state, std::uint8_t* digest) {
        XXH128_canonicalFromHash(reinterpret_cast<XXH128_canonical_t*>(digest), XXH3_128bits_digest(&state));
    }
};

// One of them as a stream.
template <class Algorithm>
class XxhStream {
  public:
    static constexpr std::size_t blockSize = Algorithm::blockSize;
    static constexpr std::size_t digestSize = Algorithm::digestSize;

    // Begins a message.
    void Reset() { Algorithm::Reset(state_); }

    // Takes in bytes of the message.
    void Update(const std::uint8_t* bytes, std::size_t count) {
        if (count != 0)
            Algorithm::Update(state_, bytes, count);
    }

    // Writes the digest of digestSize bytes. Reset begins the next message.
    void Finish(std::uint8_t* digest) { Algorithm::Finish(state_, digest); }

    // The header chooses its vectors when it is compiled.
    static const char* Kernel() { return "portable"; }

  private:
    typename Algorithm::State state_;
};

} // namespace fyrn::hash
