// SPDX-License-Identifier: MIT
#include "platform/Processors.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <windows.h>

namespace platform {

unsigned UsableProcessors() {
    DWORD_PTR allowed = 0;
    DWORD_PTR all = 0;
    if (GetProcessAffinityMask(GetCurrentProcess(), &allowed, &all) == 0)
        return 1;
    return static_cast<unsigned>(std::max(1, std::popcount(static_cast<std::uint64_t>(allowed))));
}

} // namespace platform
