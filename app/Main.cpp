// SPDX-License-Identifier: MIT
#include "crypto/CCrypto_Md5.h"

#include <cstdio>

int main(int argc, char*[]) {
    CCrypto_Md5 engine(nullptr);
    char text[33];
    if (argc == 1 && engine.GetFromFileAsString(L"LICENSE", text))
        std::puts(text);
    return 0;
}
