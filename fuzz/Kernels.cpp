// SPDX-License-Identifier: MIT
// Every kernel that this machine can run, those for many messages too, against the portable one, from any state, at any
// alignment.
// Input: algorithm, count of blocks, alignment, a word for what is special, state, blocks.
#include "fuzz/FuzzInput.h"
#include "hash/kernels/KernelSelect.h"
#include "hash/kernels/LaneSelect.h"

#include <algorithm>
#include <array>
#include <functional>
#include <memory>
#include <vector>

namespace {

constexpr std::size_t maxBlocks = 40;

// Blocks at a chosen distance from an address of 64 bytes, which end where their memory ends.
class Blocks {
  public:
    Blocks(fuzz::Input& input, std::size_t size, std::size_t alignment) : memory_(size + 64) {
        void* aligned = memory_.data();
        std::size_t room = memory_.size();
        std::align(64, size, aligned, room);
        begin_ = static_cast<std::uint8_t*>(aligned) + alignment % (room - size + 1);
        const auto bytes = input.TakeBytes(size);
        for (std::size_t i = 0; i < size && !bytes.empty(); ++i)
            begin_[i] = static_cast<std::uint8_t>(bytes[i % bytes.size()] + i / bytes.size());
    }
    const std::uint8_t* Begin() const { return begin_; }

  private:
    std::vector<std::uint8_t> memory_;
    std::uint8_t* begin_;
};

// Runs every candidate from the same state and compares with the last one, which is portable.
template <class State, class Candidates, class Run>
void Compare(const Candidates& candidates, const State& start, Run run) {
    State expected = start;
    run(candidates.back().function, expected);
    for (const auto& candidate : candidates) {
        if ((candidate.needs & ~fyrn::kernels::AvailableCpuFeatures()) != 0)
            continue;
        State state = start;
        run(candidate.function, state);
        fuzz::Require(std::memcmp(&state, &expected, sizeof state) == 0, candidate.name);
    }
}

struct Case {
    fuzz::Input& input;
    std::size_t count;
    std::size_t alignment;
    std::uint64_t special;
};

constexpr std::size_t mostLanes = 32;

// Runs every lane kernel over messages that begin anywhere in the same bytes, each from the given state with another
// first byte, and compares every lane with the portable kernel. lanes(kernel, states, blocks) and single(state, blocks).
template <class State, class Candidates, class Lanes, class Single>
void CompareLanes(const Candidates& candidates, const State& start, const std::uint8_t* bytes,
                  std::size_t spread, Lanes lanes, Single single) {
    State states[mostLanes];
    State* pointers[mostLanes];
    const std::uint8_t* blocks[mostLanes];
    for (const auto& candidate : candidates) {
        if ((candidate.needs & ~fyrn::kernels::AvailableCpuFeatures()) != 0)
            continue;
        for (std::size_t lane = 0; lane < mostLanes; ++lane) {
            states[lane] = start;
            reinterpret_cast<unsigned char&>(states[lane]) ^= static_cast<unsigned char>(lane);
            pointers[lane] = &states[lane];
            blocks[lane] = bytes + lane * 37 % (spread + 1);
        }
        lanes(candidate.function, pointers, blocks);
        for (std::size_t lane = 0; lane < candidate.lanes; ++lane) {
            State expected = start;
            reinterpret_cast<unsigned char&>(expected) ^= static_cast<unsigned char>(lane);
            single(expected, blocks[lane]);
            fuzz::Require(std::memcmp(&states[lane], &expected, sizeof expected) == 0, candidate.name);
        }
    }
}

// Pointers to the words of the states of all lanes.
template <class State>
auto WordsOf(State* const states[]) {
    std::array<decltype(&states[0]->words[0]), mostLanes> words;
    for (std::size_t lane = 0; lane < mostLanes; ++lane)
        words[lane] = states[lane]->words;
    return words;
}

// Kernels of the form (state, blocks, count).
template <class Form, class Member>
void Plain(const Case& given, Member member) {
    using State = typename Form::State;
    const auto start = given.input.Take<State>();
    const Blocks blocks(given.input, given.count * Form::blockSize, given.alignment);
    Compare(member(fyrn::kernels::KernelCandidates()), start,
            [&](auto* kernel, State& state) { kernel(state.words, blocks.Begin(), given.count); });
}

// Lane kernels of the form (states, blocks, count).
template <class Form, class Member>
void PlainLanes(const Case& given, Member member) {
    using State = typename Form::State;
    const auto start = given.input.Take<State>();
    const Blocks blocks(given.input, given.count * Form::blockSize, given.alignment);
    const std::size_t count = given.count / 2;
    CompareLanes(
        member(fyrn::kernels::LaneKernels()), start, blocks.Begin(), (given.count - count) * Form::blockSize,
        [&](auto* kernel, State* const states[], const std::uint8_t* const messages[]) {
            kernel(WordsOf(states).data(), messages, count);
        },
        [&](State& state, const std::uint8_t* message) {
            member(fyrn::kernels::KernelCandidates()).back().function(state.words, message, count);
        });
}

template <class Word, std::size_t count>
struct Words {
    Word words[count];
};

template <std::size_t words, class Candidates, class LaneCandidates>
void Skein(const Case& given, const Candidates& candidates, const LaneCandidates& laneCandidates) {
    struct State {
        std::uint64_t chain[words];
        std::uint64_t tweak[2];
    };
    const auto start = given.input.Take<State>();
    const Blocks blocks(given.input, given.count * 8 * words, given.alignment);
    Compare(candidates, start, [&](auto* kernel, State& state) {
        kernel(state.chain, state.tweak, blocks.Begin(), given.count, given.special);
    });
    const std::size_t count = given.count / 2;
    CompareLanes(
        laneCandidates, start, blocks.Begin(), (given.count - count) * 8 * words,
        [&](auto* kernel, State* const states[], const std::uint8_t* const messages[]) {
            std::uint64_t* chains[mostLanes];
            std::uint64_t* tweaks[mostLanes];
            for (std::size_t lane = 0; lane < mostLanes; ++lane) {
                chains[lane] = states[lane]->chain;
                tweaks[lane] = states[lane]->tweak;
            }
            kernel(chains, tweaks, messages, count, given.special);
        },
        [&](State& state, const std::uint8_t* message) {
            candidates.back().function(state.chain, state.tweak, message, count, given.special);
        });
}

void Blake2b(const Case& given) {
    using State = fyrn::kernels::Blake2bState;
    const auto start = given.input.Take<State>();
    const Blocks blocks(given.input, given.count * 128, given.alignment);
    Compare(fyrn::kernels::KernelCandidates().blake2b, start,
            [&](auto* kernel, State& state) { kernel(state, blocks.Begin(), given.count, given.special); });
    const std::size_t count = given.count / 2;
    CompareLanes(
        fyrn::kernels::LaneKernels().blake2b, start, blocks.Begin(), (given.count - count) * 128,
        [&](auto* kernel, State* const states[], const std::uint8_t* const messages[]) {
            kernel(states, messages, count, given.special);
        },
        [&](State& state, const std::uint8_t* message) {
            fyrn::kernels::Blake2b_Compress_Portable(state, message, count, given.special);
        });
}

void Keccak(const Case& given) {
    using State = Words<std::uint64_t, 25>;
    const auto words = static_cast<std::size_t>(given.special % 26);
    const auto start = given.input.Take<State>();
    const Blocks blocks(given.input, given.count * words * 8, given.alignment);
    Compare(fyrn::kernels::KernelCandidates().keccak, start,
            [&](auto* kernel, State& state) { kernel(state.words, blocks.Begin(), words, given.count); });
    const std::size_t count = given.count / 2;
    CompareLanes(
        fyrn::kernels::LaneKernels().keccak, start, blocks.Begin(), (given.count - count) * words * 8,
        [&](auto* kernel, State* const states[], const std::uint8_t* const messages[]) {
            kernel(WordsOf(states).data(), messages, words, count);
        },
        [&](State& state, const std::uint8_t* message) {
            fyrn::kernels::Keccak_Blocks_Portable(state.words, message, words, count);
        });
}

void FillTables(std::uint64_t polynomial, fyrn::kernels::CrcTables& tables) {
    for (std::uint64_t byte = 0; byte < 256; ++byte) {
        std::uint64_t value = byte;
        for (int bit = 0; bit < 8; ++bit)
            value = value >> 1 ^ ((value & 1) != 0 ? polynomial : 0);
        tables.slices[0][byte] = value;
    }
    fyrn::kernels::Crc_CompleteTables(tables);
}

// Any polynomial, and any number of bytes.
void Crc(const Case& given) {
    static fyrn::kernels::CrcTables tables;
    FillTables(given.special, tables);
    const auto start = given.input.Take<std::uint64_t>();
    const std::size_t count = given.count * 64 + given.input.Take<std::uint8_t>() % 64u;
    const Blocks blocks(given.input, count, given.alignment);
    Compare(fyrn::kernels::KernelCandidates().crc, start,
            [&](auto* kernel, std::uint64_t& crc) { crc = kernel(tables, crc, blocks.Begin(), count); });
}

void Md6(const Case& given) {
    struct State {
        std::uint8_t values[maxBlocks * fyrn::kernels::md6ChainingValueSize];
    };
    const auto prefix = given.input.Take<Words<std::uint64_t, fyrn::kernels::md6PrefixWords>>();
    fyrn::kernels::Md6Batch batch{};
    batch.prefix = prefix.words;
    batch.firstId = given.input.Take<std::uint64_t>();
    batch.control = given.input.Take<std::uint64_t>();
    batch.lastControl = given.special;
    batch.rounds = given.input.Take<std::uint8_t>();
    const Blocks nodes(given.input, given.count * fyrn::kernels::md6NodeSize, given.alignment);
    Compare(fyrn::kernels::KernelCandidates().md6, State{},
            [&](auto* kernel, State& state) { kernel(state.values, nodes.Begin(), given.count, batch); });
}

// Chunks or pairs of values, with any number.
void Blake3Nodes(const Case& given) {
    struct State {
        std::uint8_t values[maxBlocks * fyrn::kernels::blake3ValueSize];
    };
    const bool areChunks = given.input.Take<std::uint8_t>() % 2 == 0;
    const auto level = areChunks ? fyrn::kernels::Blake3Level::chunks : fyrn::kernels::Blake3Level::parents;
    const Blocks nodes(given.input, given.count * (areChunks ? 1024 : 64), given.alignment);
    Compare(fyrn::kernels::KernelCandidates().blake3Nodes, State{}, [&](auto* kernel, State& state) {
        kernel(state.values, nodes.Begin(), given.count, level, given.special);
    });
}

using Algorithm = std::function<void(const Case& given)>;

// Kernels of the usual form, one message at a time and in lanes.
void AddPlain(std::vector<Algorithm>& algorithms) {
    fyrn::kernels::ForEachAlgorithm([&](const char*, auto member) {
        if constexpr (requires { typename decltype(member)::Form; })
            algorithms.push_back(
                [member](const Case& given) { Plain<typename decltype(member)::Form>(given, member); });
    });
    fyrn::kernels::ForEachLaneAlgorithm([&](const char*, auto member) {
        if constexpr (requires { typename decltype(member)::Form; })
            algorithms.push_back(
                [member](const Case& given) { PlainLanes<typename decltype(member)::Form>(given, member); });
    });
}

std::vector<Algorithm> AllAlgorithms() {
    const auto& kernels = fyrn::kernels::KernelCandidates();
    const auto& lanes = fyrn::kernels::LaneKernels();
    std::vector<Algorithm> algorithms = {
        Blake2b,
        Blake3Nodes,
        Crc,
        Keccak,
        Md6,
        [&](const Case& given) { Skein<4>(given, kernels.skein256, lanes.skein256); },
        [&](const Case& given) { Skein<8>(given, kernels.skein512, lanes.skein512); },
        [&](const Case& given) { Skein<16>(given, kernels.skein1024, lanes.skein1024); },
    };
    AddPlain(algorithms);
    return algorithms;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::vector<Algorithm> algorithms = AllAlgorithms();
    fuzz::Input input(data, size);
    const Algorithm& algorithm = algorithms[input.Take<std::uint8_t>() % algorithms.size()];
    const std::size_t count = input.Take<std::uint8_t>() % (maxBlocks + 1);
    const std::size_t alignment = input.Take<std::uint8_t>() % 64u;
    algorithm({input, count, alignment, input.Take<std::uint64_t>()});
    return 0;
}
