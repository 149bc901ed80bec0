/* SPDX-License-Identifier: MIT */
/* A program's own allocator, with memory from one array, that refuses everything while `refusing` is not 0. */
#include <stddef.h>
#include <string.h>

int refusing = 0;
unsigned int refused = 0;

static void* Take(size_t size, size_t alignment) {
    static unsigned char arena[64 << 20];
    static size_t used = 0;
    size_t begin = ((size_t)arena + used + 64 + alignment - 1) / alignment * alignment - (size_t)arena;
    if (refusing) {
        ++refused;
        return NULL;
    }
    if (begin > sizeof arena || size > sizeof arena - begin)
        return NULL;
    used = begin + size;
    memcpy(arena + begin - sizeof size, &size, sizeof size);
    return arena + begin;
}

void* malloc(size_t size) {
    return Take(size, 16);
}
void* calloc(size_t count, size_t size) {
    return Take(count * size, 16); /* the array starts with zeros, and nothing is used twice */
}
void* realloc(void* old, size_t size) {
    void* const memory = Take(size, 16);
    size_t before = 0;
    if (old != NULL && memory != NULL) {
        memcpy(&before, (unsigned char*)old - sizeof before, sizeof before);
        memcpy(memory, old, before < size ? before : size);
    }
    return memory;
}
void* aligned_alloc(size_t alignment, size_t size) {
    return Take(size, alignment);
}
int posix_memalign(void** memory, size_t alignment, size_t size);
int posix_memalign(void** memory, size_t alignment, size_t size) {
    *memory = Take(size, alignment);
    return *memory != NULL ? 0 : 12;
}
void free(void* memory) {
    (void)memory;
}
