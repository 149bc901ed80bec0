// SPDX-License-Identifier: MIT
// usage: fyrn_bench_lanes [ROUNDS [ALGORITHM...]]
// Prints for every lane kernel that this machine can run: its lanes, how many times as fast as the kernel for one
// message it is when all lanes have a message, its MB/s, and from how many messages on it is faster than that kernel.
// The kernels of an algorithm take turns of a fraction of a millisecond, and the best turn of each counts: so another
// program on the same core, and a clock that changes, meet all of them and are left out.
#include "hash/kernels/KernelSelect.h"
#include "hash/kernels/LaneSelect.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace {

using fyrn::kernels::Kernels;
using fyrn::kernels::LaneKernels;

using Bytes = const std::uint8_t*;

constexpr std::size_t mostLanes = 32;
constexpr std::size_t messageSize = 1 << 15; // of each lane; all together stay in a second-level cache
constexpr int defaultRounds = 200;

using Clock = std::chrono::steady_clock;

// Hashes the first `lanes` messages, the second number of bytes of each.
struct Run {
    std::string kernel;
    std::size_t lanes;
    std::function<void(const Bytes messages[], std::size_t size)> hash;
};

struct Algorithm {
    std::string name;
    std::vector<Run> runs; // the one for one message is the last
};

// Messages that begin at different places of a page, as those of a program that cares do.
class Messages {
  public:
    Messages() : memory_(mostLanes * stride, 0x5a) {
        for (std::size_t lane = 0; lane < mostLanes; ++lane)
            messages_[lane] = memory_.data() + lane * stride;
    }
    const Bytes* Get() const { return messages_; }

  private:
    static constexpr std::size_t stride = messageSize + 64;
    std::vector<std::uint8_t> memory_;
    Bytes messages_[mostLanes];
};

double SecondsOfOneTurn(const Run& run) {
    static const Messages messages;
    const Clock::time_point start = Clock::now();
    run.hash(messages.Get(), messageSize);
    return std::chrono::duration<double>(Clock::now() - start).count();
}

void Report(const Algorithm& algorithm, int rounds) {
    std::vector<double> best(algorithm.runs.size(), std::numeric_limits<double>::infinity());
    for (int round = 0; round < rounds; ++round)
        for (std::size_t i = 0; i < best.size(); ++i)
            best[i] = std::min(best[i], SecondsOfOneTurn(algorithm.runs[i]));
    for (std::size_t i = 0; i + 1 < best.size(); ++i) {
        const Run& run = algorithm.runs[i];
        const double turns = best[i] / best.back(); // of the kernel for one message, in the same time
        std::printf("%-12s %-10s %3zu %6.2f %8.0f   pays from %zu\n", algorithm.name.c_str(),
                    run.kernel.c_str(), run.lanes, static_cast<double>(run.lanes) / turns,
                    static_cast<double>(run.lanes * messageSize) / best[i] / 1e6,
                    static_cast<std::size_t>(turns) + 1);
    }
    std::fflush(stdout);
}

// The runs of an algorithm: single(kernel, bytes, size), lanes(kernel, messages, size).
template <class Candidates, class Kernel, class Single, class Lanes>
Algorithm Make(const std::string& name, Candidates candidates, Kernel* kernel, Single single, Lanes lanes) {
    Algorithm algorithm{name, {}};
    for (const auto& candidate : candidates)
        if ((candidate.needs & ~fyrn::kernels::AvailableCpuFeatures()) == 0)
            algorithm.runs.push_back({candidate.name, candidate.lanes,
                                      [lanes, candidate](const Bytes messages[], std::size_t size) {
                                          lanes(candidate.function, messages, size);
                                      }});
    algorithm.runs.push_back({"single", 1, [single, kernel](const Bytes messages[], std::size_t size) {
                                  single(kernel, messages[0], size);
                              }});
    return algorithm;
}

// Kernels of the form (state, blocks, count) and (states, blocks, count).
template <class Word, std::size_t words, std::size_t blockSize, class Candidates, class Kernel>
Algorithm Blocks(const char* name, Candidates candidates, Kernel* kernel) {
    return Make(
        name, candidates, kernel,
        [](auto* single, Bytes bytes, std::size_t size) {
            Word state[words] = {};
            single(state, bytes, size / blockSize);
        },
        [](auto* lanes, const Bytes messages[], std::size_t size) {
            Word states[mostLanes][words] = {};
            Word* pointers[mostLanes];
            for (std::size_t lane = 0; lane < mostLanes; ++lane)
                pointers[lane] = states[lane];
            lanes(pointers, messages, size / blockSize);
        });
}

Algorithm Blake2b() {
    using State = fyrn::kernels::Blake2bState;
    return Make(
        "Blake2b", LaneKernels().blake2b, Kernels().blake2b,
        [](auto* single, Bytes bytes, std::size_t size) {
            State state{};
            single(state, bytes, size / 128, 128);
        },
        [](auto* lanes, const Bytes messages[], std::size_t size) {
            State states[mostLanes] = {};
            State* pointers[mostLanes];
            for (std::size_t lane = 0; lane < mostLanes; ++lane)
                pointers[lane] = states + lane;
            lanes(pointers, messages, size / 128, 128);
        });
}

Algorithm Keccak(std::size_t rate) {
    return Make(
        "Keccak-" + std::to_string(rate), LaneKernels().keccak, Kernels().keccak,
        [rate](auto* single, Bytes bytes, std::size_t size) {
            std::uint64_t state[25] = {};
            single(state, bytes, rate / 8, size / rate);
        },
        [rate](auto* lanes, const Bytes messages[], std::size_t size) {
            std::uint64_t states[mostLanes][25] = {};
            std::uint64_t* pointers[mostLanes];
            for (std::size_t lane = 0; lane < mostLanes; ++lane)
                pointers[lane] = states[lane];
            lanes(pointers, messages, rate / 8, size / rate);
        });
}

template <std::size_t words, class Candidates, class Kernel>
Algorithm Skein(const char* name, Candidates candidates, Kernel* kernel) {
    return Make(
        name, candidates, kernel,
        [](auto* single, Bytes bytes, std::size_t size) {
            std::uint64_t chain[words] = {};
            std::uint64_t tweak[2] = {};
            single(chain, tweak, bytes, size / (8 * words), 8 * words);
        },
        [](auto* lanes, const Bytes messages[], std::size_t size) {
            std::uint64_t states[mostLanes][words + 2] = {};
            std::uint64_t* chains[mostLanes];
            std::uint64_t* tweaks[mostLanes];
            for (std::size_t lane = 0; lane < mostLanes; ++lane) {
                chains[lane] = states[lane];
                tweaks[lane] = states[lane] + words;
            }
            lanes(chains, tweaks, messages, size / (8 * words), 8 * words);
        });
}

std::vector<Algorithm> Algorithms() {
    return {
        Blake2b(),
        Keccak(72),
        Keccak(136),
        Keccak(168),
        Blocks<std::uint32_t, 4, 64>("Md4", LaneKernels().md4, Kernels().md4),
        Blocks<std::uint32_t, 4, 64>("Md5", LaneKernels().md5, Kernels().md5),
        Blocks<std::uint32_t, 5, 64>("Sha1", LaneKernels().sha1, Kernels().sha1),
        Blocks<std::uint32_t, 8, 64>("Sha256", LaneKernels().sha256, Kernels().sha256),
        Blocks<std::uint64_t, 8, 128>("Sha512", LaneKernels().sha512, Kernels().sha512),
        Skein<4>("Skein256", LaneKernels().skein256, Kernels().skein256),
        Skein<8>("Skein512", LaneKernels().skein512, Kernels().skein512),
        Skein<16>("Skein1024", LaneKernels().skein1024, Kernels().skein1024),
        Blocks<std::uint64_t, 3, 64>("Tiger", LaneKernels().tiger, Kernels().tiger),
    };
}

} // namespace

int main(int argc, char* argv[]) {
    const int rounds = argc > 1 ? std::atoi(argv[1]) : defaultRounds;
    const std::vector<std::string> wanted(argv + std::min(argc, 2), argv + argc);
    for (const Algorithm& algorithm : Algorithms())
        if (wanted.empty() || std::find(wanted.begin(), wanted.end(), algorithm.name) != wanted.end())
            Report(algorithm, rounds);
    return 0;
}
