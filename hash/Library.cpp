// SPDX-License-Identifier: MIT
// The functions of fyrn/fyrn.h.
#include "fyrn/fyrn.h"

#include "hash/FunctionTable.h"
#include "hash/Version.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <type_traits>

// The stream's memory follows the object.
struct alignas(fyrn::hash::maxStreamAlignment) fyrn_hash {
    const fyrn_function* function;
    std::size_t digestSize;

    void* Stream() { return this + 1; }
    const void* Stream() const { return this + 1; }
};

namespace {

using fyrn::hash::AllFunctions;
using fyrn::hash::maxLaneJobs;
using fyrn::hash::maxStreamAlignment;

std::size_t SizeOf(const fyrn_function* function) {
    return sizeof(fyrn_hash) + function->stream->size;
}

// Null when memory runs out.
void* Allocate(const fyrn_function* function) {
    return ::operator new (SizeOf(function), std::align_val_t{maxStreamAlignment}, std::nothrow);
}

void Update(fyrn_hash* hash, const void* data, std::size_t size) {
    if (size != 0)
        hash->function->stream->update(hash->Stream(), static_cast<const std::uint8_t*>(data), size);
}

// Takes in the data of all hashes of the same kind as the first one that is left, and marks them as done.
void UpdateGroup(std::size_t count, fyrn_hash* const hashes[], const void* const data[],
                 const std::size_t sizes[], bool isDone[], std::size_t first) {
    const fyrn::hash::StreamType* const type = hashes[first]->function->stream;
    void* streams[maxLaneJobs];
    const std::uint8_t* messages[maxLaneJobs];
    std::size_t messageSizes[maxLaneJobs];
    std::size_t found = 0;
    for (std::size_t i = first; i < count; ++i) {
        if (isDone[i] || hashes[i]->function->stream != type)
            continue;
        isDone[i] = true;
        if (sizes[i] == 0)
            continue;
        streams[found] = hashes[i]->Stream();
        messages[found] = static_cast<const std::uint8_t*>(data[i]);
        messageSizes[found++] = sizes[i];
    }
    type->updateMany(streams, messages, messageSizes, found);
}

void UpdateGroups(std::size_t count, fyrn_hash* const hashes[], const void* const data[],
                  const std::size_t sizes[]) {
    bool isDone[maxLaneJobs] = {};
    for (std::size_t i = 0; i < count; ++i)
        if (hashes[i]->function->stream->updateMany == nullptr)
            Update(hashes[i], data[i], sizes[i]);
        else if (!isDone[i])
            UpdateGroup(count, hashes, data, sizes, isDone, i);
}

} // namespace

const char* fyrn_version(void) {
    return fyrn::hash::version;
}

size_t fyrn_function_count(void) {
    return AllFunctions().size();
}

const fyrn_function* fyrn_function_at(size_t index) {
    return index < AllFunctions().size() ? &AllFunctions()[index] : nullptr;
}

const fyrn_function* fyrn_function_find(const char* name) {
    return name == nullptr ? nullptr : fyrn::hash::FindFunction(name);
}

const char* fyrn_function_name(const fyrn_function* function) {
    return function->name;
}

const char* fyrn_function_tag(const fyrn_function* function) {
    return function->tag;
}

size_t fyrn_function_digest_size(const fyrn_function* function) {
    return function->digestSize;
}

size_t fyrn_function_block_size(const fyrn_function* function) {
    return function->blockSize;
}

size_t fyrn_function_part_size(const fyrn_function* function) {
    return function->stream->partSize;
}

const char* fyrn_function_kernel(const fyrn_function* function) {
    return function->stream->kernel();
}

size_t fyrn_function_lanes(const fyrn_function* function) {
    return function->stream->lanes();
}

fyrn_hash* fyrn_hash_new(const fyrn_function* function) {
    return fyrn_hash_new_sized(function, function->digestSize);
}

fyrn_hash* fyrn_hash_new_sized(const fyrn_function* function, size_t digest_size) {
    if (digest_size < function->minDigestSize || digest_size > function->maxDigestSize)
        return nullptr;
    void* const memory = Allocate(function);
    if (memory == nullptr)
        return nullptr;
    auto* const hash = new (memory) fyrn_hash{function, digest_size};
    function->stream->begin(hash->Stream(), digest_size);
    return hash;
}

fyrn_hash* fyrn_hash_clone(const fyrn_hash* hash) {
    void* const memory = Allocate(hash->function);
    if (memory != nullptr)
        std::memcpy(memory, static_cast<const void*>(hash), SizeOf(hash->function));
    return static_cast<fyrn_hash*>(memory);
}

size_t fyrn_hash_digest_size(const fyrn_hash* hash) {
    return hash->digestSize;
}

void fyrn_hash_update(fyrn_hash* hash, const void* data, size_t size) {
    Update(hash, data, size);
}

void fyrn_hash_part(const fyrn_hash* hash, unsigned long long number, const void* data,
                    unsigned char* value) {
    hash->function->stream->part(hash->Stream(), number, static_cast<const std::uint8_t*>(data), value);
}

void fyrn_hash_add_part(fyrn_hash* hash, const unsigned char* value) {
    hash->function->stream->addPart(hash->Stream(), value);
}

void fyrn_hash_finish(fyrn_hash* hash, unsigned char* digest) {
    hash->function->stream->finish(hash->Stream(), digest);
    fyrn_hash_reset(hash);
}

void fyrn_hash_reset(fyrn_hash* hash) {
    hash->function->stream->reset(hash->Stream());
}

void fyrn_hash_free(fyrn_hash* hash) {
    static_assert(std::is_trivially_destructible_v<fyrn_hash>);
    ::operator delete (hash, std::align_val_t{maxStreamAlignment});
}

void fyrn_hash_update_many(size_t count, fyrn_hash* const hashes[], const void* const data[],
                           const size_t sizes[]) {
    for (size_t first = 0; first < count; first += maxLaneJobs) {
        const size_t piece = std::min(maxLaneJobs, count - first);
        UpdateGroups(piece, hashes + first, data + first, sizes + first);
    }
}

int fyrn_digest(const fyrn_function* function, const void* data, size_t size, unsigned char* digest) {
    return fyrn_digest_many(function, 1, &data, &size, &digest);
}

int fyrn_digest_many(const fyrn_function* function, size_t count, const void* const data[],
                     const size_t sizes[], unsigned char* const digests[]) {
    fyrn_hash* const hash = fyrn_hash_new(function);
    if (hash == nullptr)
        return -1;
    for (size_t i = 0; i < count; ++i) {
        Update(hash, data[i], sizes[i]);
        fyrn_hash_finish(hash, digests[i]);
    }
    fyrn_hash_free(hash);
    return 0;
}
