// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstring>

// Zeroes memory that is not read again. The compiler, which would leave out such a write, is told that
// somebody looks at the memory.
inline void SecureWipe(void* memory, std::size_t size) {
    std::memset(memory, 0, size);
    __asm__ volatile("" : : "r"(memory) : "memory");
}
