// SPDX-License-Identifier: MIT
#include "tests/helpers/FailingNew.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

namespace helpers {

namespace {

FailingNew* active = nullptr;
WatchedNew* watching = nullptr;

void* Allocate(std::size_t bytes) noexcept {
    if (active != nullptr && active->Refuses(bytes))
        return nullptr;
    void* const memory = std::malloc(std::max<std::size_t>(bytes, 1));
    if (watching != nullptr)
        watching->Allocated(memory, bytes);
    return memory;
}

void Free(void* memory) noexcept {
    if (watching != nullptr)
        watching->Freed(memory);
    std::free(memory);
}

// Before the object stands where its memory begins.
void* AllocateAligned(std::size_t bytes, std::align_val_t alignment) noexcept {
    const auto step = static_cast<std::size_t>(alignment);
    void* const memory = Allocate(bytes + step + sizeof(void*));
    if (memory == nullptr)
        return nullptr;
    const auto address = reinterpret_cast<std::uintptr_t>(memory) + sizeof(void*);
    auto* const object = static_cast<std::byte*>(memory) + sizeof(void*) + (step - address % step) % step;
    std::memcpy(object - sizeof memory, &memory, sizeof memory);
    return object;
}

void FreeAligned(void* object) noexcept {
    if (object == nullptr)
        return;
    void* memory;
    std::memcpy(&memory, static_cast<std::byte*>(object) - sizeof memory, sizeof memory);
    Free(memory);
}

void* OrThrow(void* memory) {
    return memory != nullptr ? memory : throw std::bad_alloc();
}

} // namespace

FailingNew::FailingNew(std::size_t size, std::size_t turn, bool always)
    : size_(size), turn_(turn), always_(always) {
    active = this;
}

FailingNew::~FailingNew() {
    active = nullptr;
}

bool FailingNew::Refuses(std::size_t bytes) {
    ++count_;
    const bool refused = always_ || count_ == turn_ || (bytes == size_ && size_ != 0);
    failures_ += refused ? 1 : 0;
    return refused;
}

WatchedNew::WatchedNew(std::size_t bytes) : size_(bytes) {
    watching = this;
}

WatchedNew::~WatchedNew() {
    watching = nullptr;
}

void WatchedNew::Allocated(const void* memory, std::size_t bytes) {
    if (bytes == size_ && memory_ == nullptr && !zeros_)
        memory_ = static_cast<const unsigned char*>(memory);
}

void WatchedNew::Freed(const void* memory) {
    if (memory != memory_ || memory == nullptr)
        return;
    const auto isSet = [](unsigned char byte) { return byte != 0; };
    zeros_ = static_cast<std::size_t>(std::find_if(memory_, memory_ + size_, isSet) - memory_);
    memory_ = nullptr;
}

} // namespace helpers

// All forms, so that none of a sanitizer's own is left to be paired with one of these.
void* operator new(std::size_t bytes) {
    return helpers::OrThrow(helpers::Allocate(bytes));
}
void* operator new[](std::size_t bytes) {
    return helpers::OrThrow(helpers::Allocate(bytes));
}
void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
    return helpers::Allocate(bytes);
}
void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept {
    return helpers::Allocate(bytes);
}
void operator delete(void* memory) noexcept {
    helpers::Free(memory);
}
void operator delete[](void* memory) noexcept {
    helpers::Free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    helpers::Free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    helpers::Free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
    helpers::Free(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
    helpers::Free(memory);
}
void* operator new(std::size_t bytes, std::align_val_t alignment) {
    return helpers::OrThrow(helpers::AllocateAligned(bytes, alignment));
}
void* operator new[](std::size_t bytes, std::align_val_t alignment) {
    return helpers::OrThrow(helpers::AllocateAligned(bytes, alignment));
}
void* operator new(std::size_t bytes, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    return helpers::AllocateAligned(bytes, alignment);
}
void* operator new[](std::size_t bytes, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    return helpers::AllocateAligned(bytes, alignment);
}
void operator delete(void* object, std::align_val_t) noexcept {
    helpers::FreeAligned(object);
}
void operator delete[](void* object, std::align_val_t) noexcept {
    helpers::FreeAligned(object);
}
void operator delete(void* object, std::size_t, std::align_val_t) noexcept {
    helpers::FreeAligned(object);
}
void operator delete[](void* object, std::size_t, std::align_val_t) noexcept {
    helpers::FreeAligned(object);
}
void operator delete(void* object, std::align_val_t, const std::nothrow_t&) noexcept {
    helpers::FreeAligned(object);
}
void operator delete[](void* object, std::align_val_t, const std::nothrow_t&) noexcept {
    helpers::FreeAligned(object);
}
