// SPDX-License-Identifier: MIT
// One test suite for the block kernels of every algorithm: each candidate that this machine can run is compared
// with a reference, in every way in which fast kernels go wrong. An algorithm takes part with a family type:
//
//   struct Md5Family {
//       static constexpr const char* name = "Md5";
//       using State = std::array<std::uint32_t, 4>; // trivially copyable, comparable, without padding
//       static constexpr std::size_t blockSize = 64; // bytes; 1 for a kernel that takes any length
//       static constexpr std::size_t maxBlocks = 40; // the longest run of blocks worth trying
//       static auto Candidates() { return fyrn::kernels::KernelCandidates().md5; }
//       static void Run(fyrn::kernels::Md5Blocks* kernel, State& state, const std::uint8_t* blocks, std::size_t count);
//       static void Reference(State& state, const std::uint8_t* blocks, std::size_t count);
//   };
//   INSTANTIATE_TYPED_TEST_SUITE_P(Md5, KernelSuite, Md5Family, helpers::FamilyNames);
//
// States are random bytes; a family whose states are more than that has a `static State RandomState(std::uint64_t
// seed)`. What a kernel needs beyond state and blocks, Run takes from the state or makes up.
#pragma once

#include "hash/kernels/KernelSelect.h"
#include "tests/helpers/Bytes.h"
#include "tests/helpers/FamilyNames.h"
#include "tests/helpers/GuardedBuffer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <iostream>
#include <new>
#include <string>
#include <type_traits>
#include <vector>

namespace helpers {

inline constexpr std::uint64_t kernelSuiteSeed = 20240229;

template <class Family>
typename Family::State RandomState(std::uint64_t seed) {
    using State = typename Family::State;
    if constexpr (requires { Family::RandomState(seed); }) {
        return Family::RandomState(seed);
    } else {
        static_assert(std::is_trivially_copyable_v<State>);
        State state;
        std::memcpy(&state, PseudoRandomBytes(sizeof state, seed).data(), sizeof state);
        return state;
    }
}

// The candidates that this machine can run; these and the others are named in the test's output.
template <class Family>
auto RunnableCandidates() {
    const auto all = Family::Candidates();
    std::vector<std::remove_cvref_t<decltype(all.front())>> runnable;
    for (const auto& candidate : all) {
        const bool canRun = (candidate.needs & ~fyrn::kernels::AvailableCpuFeatures()) == 0;
        if (canRun)
            runnable.push_back(candidate);
        std::cout << (canRun ? "run: " : "not run on this machine: ") << Family::name << " " << candidate.name
                  << "\n";
    }
    return runnable;
}

// Whether every runnable candidate makes the same of these blocks as the reference.
template <class Family>
void ExpectAgreement(const std::uint8_t* blocks, std::size_t count, std::uint64_t seed) {
    const typename Family::State start = RandomState<Family>(seed);
    typename Family::State expected = start;
    Family::Reference(expected, blocks, count);
    static const auto candidates = RunnableCandidates<Family>();
    for (const auto& candidate : candidates) {
        typename Family::State state = start;
        Family::Run(candidate.function, state, blocks, count);
        EXPECT_TRUE(state == expected) << candidate.name << ", " << count << " blocks, seed " << seed;
    }
}

} // namespace helpers

template <class Family>
class KernelSuite : public testing::Test {};

TYPED_TEST_SUITE_P(KernelSuite);

TYPED_TEST_P(KernelSuite, LastCandidateNeedsNothingOfTheProcessor) {
    ASSERT_FALSE(TypeParam::Candidates().empty());
    EXPECT_EQ(TypeParam::Candidates().back().needs, fyrn::kernels::cpu::none);
}

TYPED_TEST_P(KernelSuite, AgreesWithTheReferenceForEveryCountOfBlocks) {
    for (std::size_t count = 0; count <= TypeParam::maxBlocks; ++count) {
        const std::uint64_t seed = helpers::kernelSuiteSeed + count;
        const helpers::Bytes blocks = helpers::PseudoRandomBytes(count * TypeParam::blockSize, seed);
        helpers::ExpectAgreement<TypeParam>(blocks.data(), count, seed);
    }
}

TYPED_TEST_P(KernelSuite, AgreesWithTheReferenceForExtremeBlocks) {
    for (const std::uint8_t value : helpers::FromHex("00ff807f")) {
        const helpers::Bytes blocks(TypeParam::maxBlocks * TypeParam::blockSize, value);
        helpers::ExpectAgreement<TypeParam>(blocks.data(), TypeParam::maxBlocks, value);
    }
}

TYPED_TEST_P(KernelSuite, AgreesWithTheReferenceAtEveryAlignmentOfTheBlocks) {
    const std::size_t count = TypeParam::maxBlocks / 2 + 1;
    helpers::GuardedBuffer buffer(64 + count * TypeParam::blockSize);
    for (std::size_t offset = 0; offset < 64; ++offset) {
        const std::uint64_t seed = helpers::kernelSuiteSeed + 1000 + offset;
        const helpers::Bytes blocks = helpers::PseudoRandomBytes(count * TypeParam::blockSize, seed);
        std::copy(blocks.begin(), blocks.end(), buffer.Front() + offset);
        helpers::ExpectAgreement<TypeParam>(buffer.Front() + offset, count, seed);
    }
}

TYPED_TEST_P(KernelSuite, TouchesNothingOutsideTheBlocks) {
    helpers::GuardedBuffer buffer(TypeParam::maxBlocks * TypeParam::blockSize);
    for (std::size_t count = 0; count <= TypeParam::maxBlocks; ++count) {
        const std::uint64_t seed = helpers::kernelSuiteSeed + 2000 + count;
        const helpers::Bytes blocks = helpers::PseudoRandomBytes(count * TypeParam::blockSize, seed);
        for (std::uint8_t* const place : {buffer.Front(), buffer.Rear(blocks.size())}) {
            std::copy(blocks.begin(), blocks.end(), place);
            helpers::ExpectAgreement<TypeParam>(place, count, seed);
            EXPECT_TRUE(std::equal(blocks.begin(), blocks.end(), place)) << "the input was changed";
        }
    }
}

TYPED_TEST_P(KernelSuite, OneCallEqualsOneCallForEachBlock) {
    const std::uint64_t seed = helpers::kernelSuiteSeed + 3000;
    const std::size_t count = TypeParam::maxBlocks;
    const helpers::Bytes blocks = helpers::PseudoRandomBytes(count * TypeParam::blockSize, seed);
    for (const auto& candidate : helpers::RunnableCandidates<TypeParam>()) {
        typename TypeParam::State together = helpers::RandomState<TypeParam>(seed);
        typename TypeParam::State apart = together;
        TypeParam::Run(candidate.function, together, blocks.data(), count);
        for (std::size_t i = 0; i < count; ++i)
            TypeParam::Run(candidate.function, apart, blocks.data() + i * TypeParam::blockSize, 1);
        EXPECT_TRUE(together == apart) << candidate.name;
    }
}

TYPED_TEST_P(KernelSuite, TouchesNothingOutsideTheState) {
    using State = typename TypeParam::State;
    helpers::GuardedBuffer buffer(sizeof(State));
    for (const std::size_t count : {std::size_t{0}, std::size_t{1}, TypeParam::maxBlocks}) {
        const std::uint64_t seed = helpers::kernelSuiteSeed + 4000 + count;
        const helpers::Bytes blocks = helpers::PseudoRandomBytes(count * TypeParam::blockSize, seed);
        const State start = helpers::RandomState<TypeParam>(seed);
        State expected = start;
        TypeParam::Reference(expected, blocks.data(), count);
        for (const auto& candidate : helpers::RunnableCandidates<TypeParam>())
            for (std::uint8_t* const place : {buffer.Front(), buffer.Rear(sizeof(State))}) {
                State* const state = new (place) State(start);
                TypeParam::Run(candidate.function, *state, blocks.data(), count);
                EXPECT_TRUE(*state == expected) << candidate.name << ", " << count << " blocks";
            }
    }
}

// Engines promise the state no more than the alignment of its type.
TYPED_TEST_P(KernelSuite, StateNeedsOnlyTheAlignmentOfItsType) {
    using State = typename TypeParam::State;
    const std::size_t count = TypeParam::maxBlocks / 2 + 1;
    const helpers::Bytes blocks =
        helpers::PseudoRandomBytes(count * TypeParam::blockSize, helpers::kernelSuiteSeed);
    alignas(64) unsigned char memory[sizeof(State) + 64];
    const State start = helpers::RandomState<TypeParam>(helpers::kernelSuiteSeed);
    State expected = start;
    TypeParam::Reference(expected, blocks.data(), count);
    for (const auto& candidate : helpers::RunnableCandidates<TypeParam>()) {
        for (std::size_t offset = 0; offset < 64; offset += alignof(State)) {
            State* const state = new (memory + offset) State(start);
            TypeParam::Run(candidate.function, *state, blocks.data(), count);
            EXPECT_TRUE(*state == expected) << candidate.name << ", state at offset " << offset;
        }
    }
}

REGISTER_TYPED_TEST_SUITE_P(KernelSuite, LastCandidateNeedsNothingOfTheProcessor,
                            AgreesWithTheReferenceForEveryCountOfBlocks,
                            AgreesWithTheReferenceForExtremeBlocks,
                            AgreesWithTheReferenceAtEveryAlignmentOfTheBlocks, TouchesNothingOutsideTheBlocks,
                            TouchesNothingOutsideTheState, OneCallEqualsOneCallForEachBlock,
                            StateNeedsOnlyTheAlignmentOfItsType);
