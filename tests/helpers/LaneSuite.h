// SPDX-License-Identifier: MIT
// One test suite for the lane kernels of every algorithm: each candidate that this machine can run is compared, lane by
// lane, with a reference. An algorithm takes part with the family type that it has for the kernel suite (KernelSuite.h)
// and two members more:
//
//       static auto LaneCandidates() { return fyrn::kernels::LaneKernels().md5; }
//       static void RunLanes(const auto& candidate, State* const states[], const std::uint8_t* const blocks[],
//                            std::size_t count);
//   INSTANTIATE_TYPED_TEST_SUITE_P(Md5, LaneSuite, Md5Family, helpers::FamilyNames);
#pragma once

#include "hash/kernels/LaneSelect.h"
#include "tests/helpers/KernelSuite.h"

#include <memory>

namespace helpers {

inline constexpr std::size_t mostLanes = 32;

// The candidates that this machine can run; these and the others are named in the test's output.
template <class Family>
auto RunnableLaneCandidates() {
    const auto all = Family::LaneCandidates();
    std::vector<std::remove_cvref_t<decltype(all.front())>> runnable;
    for (const auto& candidate : all) {
        const bool canRun = (candidate.needs & ~fyrn::kernels::AvailableCpuFeatures()) == 0;
        if (canRun)
            runnable.push_back(candidate);
        std::cout << (canRun ? "run: " : "not run on this machine: ") << Family::name << " lanes "
                  << candidate.name << "\n";
    }
    return runnable;
}

// Runs a kernel of the form (states, blocks, count) whose states are arrays of words.
template <class Candidate, class State>
void RunLanes(const Candidate& candidate, State* const states[], const std::uint8_t* const blocks[],
              std::size_t count) {
    typename State::value_type* words[mostLanes];
    for (std::size_t lane = 0; lane < candidate.lanes; ++lane)
        words[lane] = states[lane]->data();
    candidate.function(words, blocks, count);
}

// Different messages of `count` blocks from different states, in many lanes.
template <class Family>
class LaneCase {
  public:
    using State = typename Family::State;

    LaneCase(std::size_t count, std::uint64_t seed) : count_(count) {
        for (std::size_t lane = 0; lane < mostLanes; ++lane) {
            const std::uint64_t laneSeed = seed * mostLanes + lane;
            messages_.push_back(PseudoRandomBytes(count * Family::blockSize, laneSeed));
            starts_.push_back(RandomState<Family>(laneSeed));
            expected_.push_back(starts_.back());
            Family::Reference(expected_.back(), messages_.back().data(), count);
        }
    }

    const Bytes& Message(std::size_t lane) const { return messages_[lane]; }
    const State& Start(std::size_t lane) const { return starts_[lane]; }
    const State& Expected(std::size_t lane) const { return expected_[lane]; }

    // Runs the candidate over messages wherever they are, with the states in a row, and compares every lane.
    template <class Candidate>
    void Expect(const Candidate& candidate, const std::uint8_t* const blocks[],
                const std::string& which) const {
        std::vector<State> states(starts_.begin(),
                                  starts_.begin() + static_cast<std::ptrdiff_t>(candidate.lanes));
        std::vector<State*> pointers;
        for (State& state : states)
            pointers.push_back(&state);
        Family::RunLanes(candidate, pointers.data(), blocks, count_);
        for (std::size_t lane = 0; lane < candidate.lanes; ++lane)
            EXPECT_TRUE(states[lane] == expected_[lane])
                << candidate.name << ", lane " << lane << ", " << count_ << " blocks, " << which;
    }

  private:
    std::size_t count_;
    std::vector<Bytes> messages_;
    std::vector<State> starts_;
    std::vector<State> expected_;
};

} // namespace helpers

template <class Family>
class LaneSuite : public testing::Test {};

TYPED_TEST_SUITE_P(LaneSuite);

TYPED_TEST_P(LaneSuite, EveryLaneAgreesWithTheReferenceForEveryCountOfBlocks) {
    const auto candidates = helpers::RunnableLaneCandidates<TypeParam>();
    for (std::size_t count = 0; count <= TypeParam::maxBlocks / 2; ++count) {
        const helpers::LaneCase<TypeParam> lanes(count, helpers::kernelSuiteSeed + count);
        const std::uint8_t* blocks[helpers::mostLanes];
        for (std::size_t lane = 0; lane < helpers::mostLanes; ++lane)
            blocks[lane] = lanes.Message(lane).data();
        for (const auto& candidate : candidates)
            lanes.Expect(candidate, blocks, "one behind the other");
    }
}

TYPED_TEST_P(LaneSuite, EveryLaneAgreesWithTheReferenceAtEveryAlignmentOfItsBlocks) {
    constexpr std::size_t count = 3;
    const helpers::LaneCase<TypeParam> lanes(count, helpers::kernelSuiteSeed + 100);
    const auto candidates = helpers::RunnableLaneCandidates<TypeParam>();
    std::vector<std::unique_ptr<helpers::GuardedBuffer>> buffers;
    for (std::size_t lane = 0; lane < helpers::mostLanes; ++lane)
        buffers.push_back(std::make_unique<helpers::GuardedBuffer>(64 + count * TypeParam::blockSize));
    for (std::size_t shift = 0; shift < 64; ++shift) {
        const std::uint8_t* blocks[helpers::mostLanes];
        for (std::size_t lane = 0; lane < helpers::mostLanes; ++lane) {
            std::uint8_t* const place = buffers[lane]->Front() + (shift + lane) % 64;
            std::copy(lanes.Message(lane).begin(), lanes.Message(lane).end(), place);
            blocks[lane] = place;
        }
        for (const auto& candidate : candidates)
            lanes.Expect(candidate, blocks, "alignment " + std::to_string(shift) + " in the first lane");
    }
}

TYPED_TEST_P(LaneSuite, TouchesNothingOutsideTheBlocks) {
    constexpr std::size_t most = 4;
    const auto candidates = helpers::RunnableLaneCandidates<TypeParam>();
    std::vector<std::unique_ptr<helpers::GuardedBuffer>> buffers;
    for (std::size_t lane = 0; lane < helpers::mostLanes; ++lane)
        buffers.push_back(std::make_unique<helpers::GuardedBuffer>(most * TypeParam::blockSize));
    for (std::size_t count = 1; count <= most; ++count) {
        const helpers::LaneCase<TypeParam> lanes(count, helpers::kernelSuiteSeed + 200 + count);
        for (const bool atTheEnd : {false, true}) {
            const std::uint8_t* blocks[helpers::mostLanes];
            for (std::size_t lane = 0; lane < helpers::mostLanes; ++lane) {
                const helpers::Bytes& message = lanes.Message(lane);
                std::uint8_t* const place =
                    atTheEnd ? buffers[lane]->Rear(message.size()) : buffers[lane]->Front();
                std::copy(message.begin(), message.end(), place);
                blocks[lane] = place;
            }
            for (const auto& candidate : candidates)
                lanes.Expect(candidate, blocks, atTheEnd ? "before a guard" : "behind a guard");
            for (std::size_t lane = 0; lane < helpers::mostLanes; ++lane)
                EXPECT_TRUE(std::equal(lanes.Message(lane).begin(), lanes.Message(lane).end(), blocks[lane]))
                    << "the input was changed";
        }
    }
}

TYPED_TEST_P(LaneSuite, TouchesNothingOutsideTheStates) {
    using State = typename TypeParam::State;
    constexpr std::size_t count = 2;
    const helpers::LaneCase<TypeParam> lanes(count, helpers::kernelSuiteSeed + 300);
    const std::uint8_t* blocks[helpers::mostLanes];
    std::vector<std::unique_ptr<helpers::GuardedBuffer>> buffers;
    for (std::size_t lane = 0; lane < helpers::mostLanes; ++lane) {
        blocks[lane] = lanes.Message(lane).data();
        buffers.push_back(std::make_unique<helpers::GuardedBuffer>(sizeof(State)));
    }
    for (const auto& candidate : helpers::RunnableLaneCandidates<TypeParam>()) {
        for (const bool atTheEnd : {false, true}) {
            State* states[helpers::mostLanes];
            for (std::size_t lane = 0; lane < helpers::mostLanes; ++lane) {
                std::uint8_t* const place =
                    atTheEnd ? buffers[lane]->Rear(sizeof(State)) : buffers[lane]->Front();
                states[lane] = new (place) State(lanes.Start(lane));
            }
            TypeParam::RunLanes(candidate, states, blocks, count);
            for (std::size_t lane = 0; lane < candidate.lanes; ++lane)
                EXPECT_TRUE(*states[lane] == lanes.Expected(lane)) << candidate.name << ", lane " << lane;
            for (std::size_t lane = candidate.lanes; lane < helpers::mostLanes; ++lane)
                EXPECT_TRUE(*states[lane] == lanes.Start(lane)) << candidate.name << " has no lane " << lane;
        }
    }
}

// One message in any lane, and in all the others a repetition of it that goes into one state for them all.
TYPED_TEST_P(LaneSuite, IdleLanesMayShareAMessageAndAState) {
    using State = typename TypeParam::State;
    constexpr std::size_t count = 5;
    const helpers::LaneCase<TypeParam> lanes(count, helpers::kernelSuiteSeed + 400);
    for (const auto& candidate : helpers::RunnableLaneCandidates<TypeParam>()) {
        for (std::size_t busy = 0; busy < candidate.lanes; ++busy) {
            State state = lanes.Start(busy);
            State scratch = lanes.Start(0);
            State* states[helpers::mostLanes];
            const std::uint8_t* blocks[helpers::mostLanes];
            std::fill_n(states, candidate.lanes, &scratch);
            std::fill_n(blocks, candidate.lanes, lanes.Message(busy).data());
            states[busy] = &state;
            TypeParam::RunLanes(candidate, states, blocks, count);
            EXPECT_TRUE(state == lanes.Expected(busy)) << candidate.name << ", lane " << busy;
        }
    }
}

TYPED_TEST_P(LaneSuite, OneCallEqualsOneCallForEachBlock) {
    using State = typename TypeParam::State;
    constexpr std::size_t count = 5;
    const helpers::LaneCase<TypeParam> lanes(count, helpers::kernelSuiteSeed + 500);
    for (const auto& candidate : helpers::RunnableLaneCandidates<TypeParam>()) {
        std::vector<State> states;
        for (std::size_t lane = 0; lane < candidate.lanes; ++lane)
            states.push_back(lanes.Start(lane));
        for (std::size_t i = 0; i < count; ++i) {
            State* pointers[helpers::mostLanes];
            const std::uint8_t* blocks[helpers::mostLanes];
            for (std::size_t lane = 0; lane < candidate.lanes; ++lane) {
                pointers[lane] = &states[lane];
                blocks[lane] = lanes.Message(lane).data() + i * TypeParam::blockSize;
            }
            TypeParam::RunLanes(candidate, pointers, blocks, 1);
        }
        for (std::size_t lane = 0; lane < candidate.lanes; ++lane)
            EXPECT_TRUE(states[lane] == lanes.Expected(lane)) << candidate.name << ", lane " << lane;
    }
}

REGISTER_TYPED_TEST_SUITE_P(LaneSuite, EveryLaneAgreesWithTheReferenceForEveryCountOfBlocks,
                            EveryLaneAgreesWithTheReferenceAtEveryAlignmentOfItsBlocks,
                            TouchesNothingOutsideTheBlocks, TouchesNothingOutsideTheStates,
                            IdleLanesMayShareAMessageAndAState, OneCallEqualsOneCallForEachBlock);
