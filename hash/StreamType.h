// SPDX-License-Identifier: MIT
// Every stream class in one form, so that a table can hold all functions.
#pragma once

#include "hash/LaneScheduler.h"

#include <cstddef>
#include <cstdint>
#include <new>
#include <type_traits>

namespace fyrn::hash {

// What can be done with a stream of some class, in memory that the caller owns. Streams are trivially copyable: a copy of
// the bytes is a second stream, and none needs to be destroyed.
struct StreamType {
    std::size_t size; // bytes of a stream; aligned as any object that `new` makes, or to 64 bytes
    void (*begin)(void* stream, std::size_t digestSize); // makes a stream and begins its first message
    void (*reset)(void* stream);
    void (*update)(void* stream, const std::uint8_t* bytes, std::size_t count);
    // As update for each of up to maxLaneJobs streams; null when there is no kernel for many messages.
    void (*updateMany)(void* const streams[], const std::uint8_t* const data[], const std::size_t sizes[],
                       std::size_t count);
    // Of a tree: the value of a part of partSize bytes by its number, and such a value taken in. 0 and null otherwise.
    std::size_t partSize;
    void (*part)(const void* stream, std::uint64_t number, const std::uint8_t* bytes, std::uint8_t* value);
    void (*addPart)(void* stream, const std::uint8_t* value);
    void (*finish)(void* stream, std::uint8_t* digest);
    const char* (*kernel)(); // the name of the kernel in use
    std::size_t (*lanes)();  // of the best kernel for many messages here; 1 when there is none
};

inline constexpr std::size_t maxStreamAlignment = 64;

template <class Stream>
constexpr auto UpdateManyOf() -> decltype(StreamType::updateMany) {
    if constexpr (requires { Stream::Lanes(); })
        return [](void* const streams[], const std::uint8_t* const data[], const std::size_t sizes[],
                  std::size_t count) {
            Stream* typed[maxLaneJobs];
            for (std::size_t i = 0; i < count; ++i)
                typed[i] = static_cast<Stream*>(streams[i]);
            UpdateSideBySide(typed, data, sizes, count);
        };
    else
        return nullptr;
}

template <class Stream>
constexpr void SetParts(StreamType& type) {
    if constexpr (requires { Stream::partSize; }) {
        type.partSize = Stream::partSize;
        type.part = [](const void* stream, std::uint64_t number, const std::uint8_t* bytes,
                       std::uint8_t* value) {
            static_cast<const Stream*>(stream)->Part(number, bytes, value);
        };
        type.addPart = [](void* stream, const std::uint8_t* value) {
            static_cast<Stream*>(stream)->AddPart(value);
        };
    }
}

template <class Stream>
std::size_t LanesOf() {
    if constexpr (requires { Stream::Lanes(); })
        if (const auto* const kernel = kernels::ChooseLanes(Stream::Lanes(), maxLaneJobs))
            return kernel->lanes;
    return 1;
}

// `make(memory, digestSize)` constructs the stream.
template <class Stream, class Make>
constexpr StreamType MakeStreamType(Make make) {
    static_assert(std::is_trivially_copyable_v<Stream> && alignof(Stream) <= maxStreamAlignment);
    StreamType type = {
        .size = sizeof(Stream),
        .begin = make,
        .reset = [](void* stream) { static_cast<Stream*>(stream)->Reset(); },
        .update = [](void* stream, const std::uint8_t* bytes,
                     std::size_t count) { static_cast<Stream*>(stream)->Update(bytes, count); },
        .updateMany = UpdateManyOf<Stream>(),
        .partSize = 0,
        .part = nullptr,
        .addPart = nullptr,
        .finish = [](void* stream, std::uint8_t* digest) { static_cast<Stream*>(stream)->Finish(digest); },
        .kernel = Stream::Kernel,
        .lanes = LanesOf<Stream>};
    SetParts<Stream>(type);
    return type;
}

// Of a stream class without parameters.
template <class Stream>
inline constexpr StreamType streamType = MakeStreamType<Stream>([](void* memory, std::size_t) {
    (new (memory) Stream)->Reset();
});

} // namespace fyrn::hash
