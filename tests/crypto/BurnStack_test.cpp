// SPDX-License-Identifier: MIT
// Looks at the stack below its own frame, as somebody would who reads a memory image.
#include "crypto/ShaStream.h"

#include "hash/kernels/ByteOrder.h"
#include "hash/kernels/KernelSelect.h"
#include "tests/helpers/Bytes.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

// Stack below the caller that is looked at; more than the 24,576 bytes that SHA-512 clears.
constexpr std::size_t watched = 32'768;

#define LOOKS_AT_DEAD_STACK __attribute__((noinline, no_sanitize("address", "undefined")))

LOOKS_AT_DEAD_STACK void FillStack() {
    unsigned char area[watched];
    std::memset(area, 0xa5, sizeof area);
    __asm__ volatile("" : : "r"(area) : "memory");
}

// Calls from below its caller's frame, so that what is called leaves its traces inside the watched area.
template <class Call>
LOOKS_AT_DEAD_STACK void CallDeeper(Call call) {
    unsigned char room[512];
    __asm__ volatile("" : : "r"(room) : "memory");
    call();
    __asm__ volatile("" : : "r"(room) : "memory");
}

LOOKS_AT_DEAD_STACK std::size_t LongestRunOfZeros() {
    unsigned char area[watched];
    __asm__ volatile("" : "=m"(area));
    std::size_t longest = 0;
    std::size_t run = 0;
    for (std::size_t i = 0; i < watched; ++i) {
        run = area[i] == 0 ? run + 1 : 0;
        longest = run > longest ? run : longest;
    }
    return longest;
}

LOOKS_AT_DEAD_STACK std::size_t CountOnStack(const std::uint64_t* words, std::size_t count) {
    std::uint64_t area[watched / 8];
    __asm__ volatile("" : "=m"(area));
    std::size_t found = 0;
    for (std::size_t i = 0; i < watched / 8; ++i)
        for (std::size_t k = 0; k < count; ++k)
            found += area[i] == words[k] ? 1u : 0u;
    return found;
}

// The longest run of zeros on the stack after a call, which held none before.
template <class Call>
std::size_t ZerosAfter(Call call) {
    FillStack();
    CallDeeper(call);
    return LongestRunOfZeros();
}

TEST(BurnStack, NothingElseLeavesZerosOnTheStack) {
    EXPECT_LT(ZerosAfter([] {}), 128u);
}

TEST(BurnStack, Clears128BytesForEvery4OfItsCount) {
    EXPECT_GE(ZerosAfter([] { sha::BurnStack<104>(); }), 26 * 128u);
    EXPECT_LT(ZerosAfter([] { sha::BurnStack<104>(); }), 27 * 128u);
    EXPECT_GE(ZerosAfter([] { sha::BurnStack<328>(); }), 82 * 128u);
    EXPECT_LT(ZerosAfter([] { sha::BurnStack<328>(); }), 83 * 128u);
    EXPECT_GE(ZerosAfter([] { sha::BurnStack<768>(); }), 192 * 128u);
    EXPECT_LT(ZerosAfter([] { sha::BurnStack<768>(); }), 193 * 128u);
}

template <class Stream>
void ExpectClearingUpdates(std::size_t cleared) {
    const helpers::Bytes message = helpers::PseudoRandomBytes(300, 1);
    Stream stream;
    stream.Reset();
    unsigned char digest[Stream::digestSize];
    EXPECT_GE(ZerosAfter([&] { stream.Update(message.data(), 256); }), cleared) << "whole blocks";
    EXPECT_GE(ZerosAfter([&] { stream.Update(message.data(), 10); }), cleared) << "less than a block";
    EXPECT_GE(ZerosAfter([&] { stream.Update(message.data(), 118); }), cleared) << "a full buffer";
    EXPECT_GE(ZerosAfter([&] { stream.Finish(digest); }), cleared) << "the end";
}

TEST(BurnStack, RunsAfterEveryUpdateAndAtTheEnd) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer puts its own values around every array";
#endif
    ExpectClearingUpdates<sha::Sha1Stream>(26 * 128);
    ExpectClearingUpdates<sha::Sha256Stream>(82 * 128);
    ExpectClearingUpdates<sha::Sha384Stream>(192 * 128);
    ExpectClearingUpdates<sha::Sha512Stream>(192 * 128);
}

// The words 64..79 of the message schedule are the last that a compression handles.
TEST(BurnStack, ClearsTheWordsThatACompressionLeaves) {
#ifdef __s390x__
    GTEST_SKIP() << "one or two words at the upper end of a frame are out of reach of what is called next";
#endif
    const helpers::Bytes block = helpers::PseudoRandomBytes(128, 7);
    std::uint64_t w[80];
    for (std::size_t t = 0; t < 16; ++t)
        w[t] = fyrn::kernels::LoadBig<std::uint64_t>(block.data() + 8 * t);
    for (std::size_t t = 16; t < 80; ++t) {
        const std::uint64_t x = w[t - 15];
        const std::uint64_t y = w[t - 2];
        w[t] = w[t - 16] + w[t - 7] + (std::rotr(x, 1) ^ std::rotr(x, 8) ^ x >> 7) +
               (std::rotr(y, 19) ^ std::rotr(y, 61) ^ y >> 6);
    }
    std::uint64_t state[8] = {};
    FillStack();
    CallDeeper([&] { fyrn::kernels::Sha512_Blocks_Portable(state, block.data(), 1); });
    EXPECT_GT(CountOnStack(w + 64, 16), 0u) << "a compression leaves words of the schedule";

    FillStack();
    CallDeeper([&] {
        fyrn::kernels::Sha512_Blocks_Portable(state, block.data(), 1);
        sha::BurnStack<768>();
    });
    EXPECT_EQ(CountOnStack(w + 64, 16), 0u);
}

} // namespace
