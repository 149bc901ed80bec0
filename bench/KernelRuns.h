// SPDX-License-Identifier: MIT
// Every kernel that this machine can run, in one shape, for the programs that measure them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace bench {

struct KernelRun {
    std::string algorithm;
    std::string kernel;
    bool inUse; // chosen on this machine
    std::function<void(const std::uint8_t* bytes, std::size_t count)>
        hash; // takes up to longestMessage bytes
};

inline constexpr std::size_t longestMessage = 1 << 20;

// The kernels of an algorithm stand together, best first; the last of them is the portable one.
std::vector<KernelRun> KernelRuns();

} // namespace bench
