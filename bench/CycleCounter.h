// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#if defined(__x86_64__)
#    include <x86intrin.h>
#endif

namespace bench {

// The processor's time stamp counter, which counts at a constant rate near the nominal clock. 0 where there is none.
inline std::uint64_t CycleCounter() {
#if defined(__x86_64__)
    return __rdtsc();
#else
    return 0;
#endif
}

} // namespace bench
