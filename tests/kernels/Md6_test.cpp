// SPDX-License-Identifier: MIT
#include "tests/reference/Md6.h"

#include "hash/kernels/ByteOrder.h"
#include "tests/helpers/KernelSuite.h"

#include <array>
#include <bit>

namespace {

using Words = std::vector<std::uint64_t>;

// What a batch needs, and the chaining values so far, mixed into 16 words such that their order matters.
struct Md6State {
    std::array<std::uint64_t, fyrn::kernels::md6PrefixWords> prefix;
    std::uint64_t nextId;
    std::uint64_t control;
    std::uint64_t rounds;
    std::array<std::uint64_t, 16> values;

    bool operator==(const Md6State&) const = default;

    void Absorb(std::size_t word, std::uint64_t value) { values[word] = std::rotl(values[word], 9) ^ value; }
};

// One node by the reference: its chaining value.
Words ReferenceNode(const std::array<std::uint64_t, fyrn::kernels::md6PrefixWords>& prefix, std::uint64_t id,
                    std::uint64_t control, int rounds, const std::uint8_t* node) {
    Words input(prefix.begin(), prefix.end());
    input.push_back(id);
    input.push_back(control);
    for (std::size_t i = 0; i < 64; ++i)
        input.push_back(fyrn::kernels::LoadBig<std::uint64_t>(node + 8 * i));
    return reference::Md6Compress(input, rounds);
}

struct Md6Family {
    static constexpr const char* name = "Md6";
    using State = Md6State;
    static constexpr std::size_t blockSize = fyrn::kernels::md6NodeSize;
    static constexpr std::size_t maxBlocks = 19;
    static auto Candidates() { return fyrn::kernels::KernelCandidates().md6; }

    static State RandomState(std::uint64_t seed) {
        State state;
        std::memcpy(&state, helpers::PseudoRandomBytes(sizeof state, seed).data(), sizeof state);
        state.rounds %= 36; // few, for speed; every number of rounds has a test of its own
        return state;
    }
    static void Run(fyrn::kernels::Md6Nodes* kernel, State& state, const std::uint8_t* nodes,
                    std::size_t count) {
        helpers::Bytes values(count * fyrn::kernels::md6ChainingValueSize);
        kernel(values.data(), nodes, count,
               {state.prefix.data(), state.nextId, state.control, state.control,
                static_cast<int>(state.rounds)});
        state.nextId += count;
        for (std::size_t i = 0; i < 16 * count; ++i)
            state.Absorb(i % 16, fyrn::kernels::LoadBig<std::uint64_t>(values.data() + 8 * i));
    }
    static void Reference(State& state, const std::uint8_t* nodes, std::size_t count) {
        for (; count != 0; --count, nodes += blockSize) {
            const Words value = ReferenceNode(state.prefix, state.nextId++, state.control,
                                              static_cast<int>(state.rounds), nodes);
            for (std::size_t i = 0; i < 16; ++i)
                state.Absorb(i, value[i]);
        }
    }
};

INSTANTIATE_TYPED_TEST_SUITE_P(Md6, KernelSuite, Md6Family, helpers::FamilyNames);

// Whether `count` nodes, of which the last has a control word of its own, come out as by the reference.
void ExpectNodes(std::size_t count, int rounds) {
    const Md6State state = Md6Family::RandomState(helpers::kernelSuiteSeed + count);
    const helpers::Bytes nodes = helpers::PseudoRandomBytes(count * fyrn::kernels::md6NodeSize, count);
    const std::uint64_t lastControl = ~state.control;
    for (const auto& candidate : helpers::RunnableCandidates<Md6Family>()) {
        helpers::GuardedBuffer buffer(count * fyrn::kernels::md6ChainingValueSize);
        std::uint8_t* const values = buffer.Rear(count * fyrn::kernels::md6ChainingValueSize);
        candidate.function(values, nodes.data(), count,
                           {state.prefix.data(), state.nextId, state.control, lastControl, rounds});
        for (std::size_t i = 0; i < count; ++i) {
            const Words expected =
                ReferenceNode(state.prefix, state.nextId + i, i + 1 == count ? lastControl : state.control,
                              rounds, nodes.data() + i * fyrn::kernels::md6NodeSize);
            for (std::size_t word = 0; word < 16; ++word)
                EXPECT_EQ(fyrn::kernels::LoadBig<std::uint64_t>(values + 128 * i + 8 * word), expected[word])
                    << candidate.name << ", " << rounds << " rounds, node " << i << " of " << count;
        }
    }
}

TEST(Md6Nodes, TheLastNodeHasAControlWordOfItsOwn) {
    for (std::size_t count = 1; count <= 19; ++count)
        ExpectNodes(count, 7);
}

TEST(Md6Nodes, AnyNumberOfRoundsIsRun) {
    for (int rounds = 0; rounds <= 255; ++rounds)
        ExpectNodes(static_cast<std::size_t>(rounds) % 9 + 1, rounds);
}

} // namespace
