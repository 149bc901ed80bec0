// SPDX-License-Identifier: MIT
// A program whose operator new and allocator refuse: what needs memory throws.
#include <fyrn/fyrn.hpp>

#include <cstdio>
#include <cstdlib>

extern "C" int refusing; // FailingMalloc.c

void* operator new(std::size_t size) {
    void* const memory = std::malloc(size);
    return memory != nullptr ? memory : throw std::bad_alloc();
}
void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    return std::aligned_alloc(static_cast<std::size_t>(alignment), size);
}
void operator delete(void*) noexcept {}
void operator delete(void*, std::size_t) noexcept {}
void operator delete(void*, std::align_val_t) noexcept {}

template <class Use>
bool Throws(Use use) {
    refusing = 1;
    bool thrown = false;
    try {
        use();
    } catch (const std::bad_alloc&) {
        thrown = true;
    }
    refusing = 0;
    return thrown;
}

int main() {
    for (const fyrn::Function function : fyrn::Function::All()) {
        fyrn::Hasher hasher(function);
        if (!Throws([&] { fyrn::Hasher another(function); }) || !Throws([&] { fyrn::Hasher copy(hasher); }) ||
            !Throws([&] { hasher.Update("abc").Finish(); }) || !Throws([&] { fyrn::Digest(function, {}); }))
            return 1;
    }
    std::puts("refused");
}
