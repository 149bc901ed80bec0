// SPDX-License-Identifier: MIT
#include "tests/fakes/FailingAllocation.h"

#include <cstdlib>
#include <new>

namespace {

constexpr std::size_t none = ~std::size_t{0};
std::size_t failingSize = none;

} // namespace

void* operator new(std::size_t size) {
    void* const memory = size == failingSize ? nullptr : std::malloc(size != 0 ? size : 1);
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

// The array forms call the others by default, but the sanitizers bring their own.
void* operator new[](std::size_t size) {
    return operator new(size);
}

void operator delete[](void* memory) noexcept {
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace fakes {

FailingAllocation::FailingAllocation(std::size_t size) {
    failingSize = size;
}

FailingAllocation::~FailingAllocation() {
    failingSize = none;
}

} // namespace fakes
