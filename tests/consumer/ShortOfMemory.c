/* SPDX-License-Identifier: MIT */
/* A program whose allocator refuses: every function that can say so does. */
#include <fyrn/fyrn.h>

#include <stdio.h>

/* FailingMalloc.c */
extern int refusing;
extern unsigned int refused;

int main(void) {
    size_t i;
    unsigned char digest[256]; /* the longest of all has 128 */
    unsigned char* const digests[1] = {digest};
    const void* const data[1] = {"abc"};
    const size_t sizes[1] = {3};
    for (i = 0; i < fyrn_function_count(); ++i) {
        const fyrn_function* const function = fyrn_function_at(i);
        fyrn_hash* const hash = fyrn_hash_new(function);
        if (hash == NULL)
            return 1;
        refusing = 1;
        refused = 0;
        if (fyrn_hash_new(function) != NULL || fyrn_hash_clone(hash) != NULL ||
            fyrn_hash_new_sized(function, fyrn_function_digest_size(function)) != NULL ||
            fyrn_digest(function, "abc", 3, digest) != -1 ||
            fyrn_digest_many(function, 1, data, sizes, digests) != -1 || refused < 5)
            return 2;
        fyrn_hash_update(hash, "abc", 3);
        fyrn_hash_finish(hash, digest);
        fyrn_hash_free(hash);
        refusing = 0;
    }
    puts("refused");
    return 0;
}
