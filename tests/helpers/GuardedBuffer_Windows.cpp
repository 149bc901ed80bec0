// SPDX-License-Identifier: MIT
#include "tests/helpers/GuardedBuffer.h"

#include <windows.h>

#include <new>

namespace helpers {
namespace {

constexpr std::size_t pageSize = 4096;

} // namespace

GuardedBuffer::GuardedBuffer(std::size_t size) : room_((size / pageSize + 1) * pageSize) {
    void* const whole = VirtualAlloc(nullptr, room_ + 2 * pageSize, MEM_RESERVE, PAGE_NOACCESS);
    if (whole == nullptr)
        throw std::bad_alloc();
    begin_ = static_cast<std::uint8_t*>(whole) + pageSize;
    if (VirtualAlloc(begin_, room_, MEM_COMMIT, PAGE_READWRITE) == nullptr)
        throw std::bad_alloc();
}

GuardedBuffer::~GuardedBuffer() {
    VirtualFree(begin_ - pageSize, 0, MEM_RELEASE);
}

} // namespace helpers
