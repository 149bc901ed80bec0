// SPDX-License-Identifier: MIT
// Prints the MD5, SHA-256 and BLAKE2b-512 digests of the file that it is called with.
#include "crypto/CCrypto_Blake2.h"
#include "crypto/CCrypto_Md5.h"
#include "crypto/CCrypto_Sha.h"

#include <cstdio>
#include <string>

int main(int count, char* arguments[]) {
    if (count != 2)
        return 2;
    const std::string name = arguments[1];
    const std::wstring path(name.begin(), name.end());

    char text[1024];
    CCrypto_Md5 md5(nullptr);
    if (!md5.GetFromFileAsString(path.c_str(), text))
        return 1;
    std::puts(text);
    CCrypto_Sha sha(nullptr);
    if (!sha.GetSha2_256_FromFileAsString(path.c_str(), text))
        return 1;
    std::puts(text);
    CCrypto_Blake2 blake2(nullptr);
    if (!blake2.GetFromFileAsString(path.c_str(), text, sizeof text, 64, nullptr, 0))
        return 1;
    std::puts(text);
}
