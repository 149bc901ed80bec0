/* SPDX-License-Identifier: MIT */
/* Prints the MD5, SHA-256 and BLAKE2b-512 digests of the file that it is called with. Its own functions bear names that
 * stand in the library's sources, too. */
#include <fyrn/fyrn.h>

#include <stdio.h>
#include <string.h>

int CompareNoCase(const char* a, const char* b);
char ToLowerAscii(char c);
int platform(void);
int kernels(void);

int CompareNoCase(const char* a, const char* b) {
    return strcmp(a, b);
}
char ToLowerAscii(char c) {
    return c;
}
int platform(void) {
    return 1;
}
int kernels(void) {
    return 2;
}

static int Print(const char* name, const char* path) {
    unsigned char piece[1000], digest[64];
    fyrn_hash* const hash = fyrn_hash_new(fyrn_function_find(name));
    FILE* const file = fopen(path, "rb");
    size_t size, i;
    if (hash == NULL || file == NULL)
        return 1;
    while ((size = fread(piece, 1, sizeof piece, file)) != 0)
        fyrn_hash_update(hash, piece, size);
    fclose(file);
    fyrn_hash_finish(hash, digest);
    for (i = 0; i < fyrn_hash_digest_size(hash); ++i)
        printf("%02x", digest[i]);
    printf("\n");
    fyrn_hash_free(hash);
    return 0;
}

int main(int count, char* arguments[]) {
    if (count != 2 || CompareNoCase("a", "A") == 0 || ToLowerAscii('A') != 'A' || platform() + kernels() != 3)
        return 2;
    return Print("md5", arguments[1]) || Print("sha256", arguments[1]) || Print("blake2b", arguments[1]);
}
