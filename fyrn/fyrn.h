/* SPDX-License-Identifier: MIT */
/* libfyrn: the hash functions of fyrn for programs in C and in languages that call C.
 *
 * Every digest is that of the published function, for messages of any length. No function prints, asks, reads or writes
 * files, ends the process or throws. All of them may be called from several threads at once, as long as no two work on
 * the same fyrn_hash. fyrn/fyrn.hpp is the same library for C++. */
#ifndef FYRN_FYRN_H
#define FYRN_FYRN_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* One hash function: a row of a constant table. Never freed. */
typedef struct fyrn_function fyrn_function;

/* One message that is being hashed. */
typedef struct fyrn_hash fyrn_hash;

/* The version of the library in use, such as "1.1.0". */
const char* fyrn_version(void);

/* The functions, 0 to fyrn_function_count() - 1; NULL past the end. */
size_t fyrn_function_count(void);
const fyrn_function* fyrn_function_at(size_t index);

/* The function of this name or alias, NULL if there is none. Case, '-', '_', '/' and blanks do not count: "sha256",
 * "SHA-256" and "SHA2-256" are one function. */
const fyrn_function* fyrn_function_find(const char* name);

/* The canonical name, such as "SHA2-256", and the name that checksum lists use, such as "SHA256". */
const char* fyrn_function_name(const fyrn_function* function);
const char* fyrn_function_tag(const fyrn_function* function);

/* The length of the digest that the function gives by itself, and of the block that it works on, in bytes. */
size_t fyrn_function_digest_size(const fyrn_function* function);
size_t fyrn_function_block_size(const fyrn_function* function);

/* The implementation in use on this processor, such as "avx512" or "portable". */
const char* fyrn_function_kernel(const fyrn_function* function);

/* How many messages fyrn_hash_update_many should be given at once to be fastest on this processor; 1 when side by side
 * is no faster. */
size_t fyrn_function_lanes(const fyrn_function* function);

/* The length in bytes of the parts that fyrn_hash_part takes. 0 where the function is no tree: those of BLAKE3 and MD6 are
 * trees. */
size_t fyrn_function_part_size(const fyrn_function* function);

/* Begins a message. The caller frees it with fyrn_hash_free. NULL when memory runs out. */
fyrn_hash* fyrn_hash_new(const fyrn_function* function);

/* The same with a digest of `digest_size` bytes: 1 to 64 for BLAKE2b, any length but 0 for SHAKE, for other functions only
 * their own. NULL also when the function has no digest of that length. */
fyrn_hash* fyrn_hash_new_sized(const fyrn_function* function, size_t digest_size);

/* A second object that has taken in the same bytes. NULL when memory runs out. */
fyrn_hash* fyrn_hash_clone(const fyrn_hash* hash);

/* The length of the digest in bytes. */
size_t fyrn_hash_digest_size(const fyrn_hash* hash);

/* Takes in bytes of the message. `data` may be NULL when `size` is 0. */
void fyrn_hash_update(fyrn_hash* hash, const void* data, size_t size);

/* Parts of a message may be hashed apart, in several threads for instance. fyrn_hash_part writes the value, of
 * FYRN_PART_VALUE_SIZE bytes, of the part of the message that begins at number * fyrn_function_part_size. It leaves the
 * object as it is, so it may be called for several parts at once. fyrn_hash_add_part takes in the next part by its value
 * in place of its bytes. What the object took in before must be whole parts, and at least one byte must follow: the end
 * of a message is always taken in by fyrn_hash_update. */
#define FYRN_PART_VALUE_SIZE 128
void fyrn_hash_part(const fyrn_hash* hash, unsigned long long number, const void* data, unsigned char* value);
void fyrn_hash_add_part(fyrn_hash* hash, const unsigned char* value);

/* Writes the digest, fyrn_hash_digest_size bytes, and begins a new message. */
void fyrn_hash_finish(fyrn_hash* hash, unsigned char* digest);

/* Forgets what was taken in, and begins a new message. */
void fyrn_hash_reset(fyrn_hash* hash);

/* Frees the object. NULL is allowed. */
void fyrn_hash_free(fyrn_hash* hash);

/* Does fyrn_hash_update(hashes[i], data[i], sizes[i]) for every i below `count`. Messages of one function are hashed side
 * by side where that is faster. No object may stand in `hashes` twice. */
void fyrn_hash_update_many(size_t count, fyrn_hash* const hashes[], const void* const data[],
                           const size_t sizes[]);

/* Writes the digest of one message, fyrn_function_digest_size bytes. Returns 0, or -1 when memory runs out. */
int fyrn_digest(const fyrn_function* function, const void* data, size_t size, unsigned char* digest);

/* Writes the digests of `count` messages, side by side where that is faster. Returns 0, or -1 when memory runs out; the
 * digests are then unspecified. */
int fyrn_digest_many(const fyrn_function* function, size_t count, const void* const data[],
                     const size_t sizes[], unsigned char* const digests[]);

#ifdef __cplusplus
}
#endif

#endif
