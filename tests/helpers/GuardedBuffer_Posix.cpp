// SPDX-License-Identifier: MIT
#include "tests/helpers/GuardedBuffer.h"

#include <sys/mman.h>
#include <unistd.h>

#include <new>

namespace helpers {
namespace {

const std::size_t pageSize = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));

} // namespace

GuardedBuffer::GuardedBuffer(std::size_t size) : room_((size / pageSize + 1) * pageSize) {
    void* const whole =
        mmap(nullptr, room_ + 2 * pageSize, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (whole == MAP_FAILED)
        throw std::bad_alloc();
    begin_ = static_cast<std::uint8_t*>(whole) + pageSize;
    if (mprotect(begin_, room_, PROT_READ | PROT_WRITE) != 0)
        throw std::bad_alloc();
}

GuardedBuffer::~GuardedBuffer() {
    munmap(begin_ - pageSize, room_ + 2 * pageSize);
}

} // namespace helpers
