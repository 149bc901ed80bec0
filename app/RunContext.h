// SPDX-License-Identifier: MIT
#pragma once

#include "app/Progress.h"
#include "app/Report.h"
#include "crypto/CCrypto_Blake2.h"
#include "crypto/CCrypto_Crc.h"
#include "crypto/CCrypto_Md4.h"
#include "crypto/CCrypto_Md5.h"
#include "crypto/CCrypto_Md6.h"
#include "crypto/CCrypto_Sha.h"
#include "crypto/CCrypto_Shake.h"
#include "crypto/CCrypto_Skein.h"
#include "crypto/CCrypto_Tiger.h"
#include "crypto/CCrypto_Whirlpool.h"

#include <cstdint>

// The state of one run: what the command line asked for, the engines, the last digest, and what the user sees.
struct RunContext {
    bool inStartDirectory = true;   // false once the way back from a walk was lost
    bool deleteOnCollision = false; // a file whose digest name is taken is deleted instead of numbered
    bool recurse = false;           // walks go into sub-directories
    bool rename = false;            // every file is renamed to its digest

    // The digest as lower-case hex, zero-terminated. Deliberately never cleared: an operation that fails
    // leaves the digest of the operation before it, which some rows print and renaming uses.
    char hashText[1024] = {};

    // Built once, used for every file. The null pointers: no debug messages are collected.
    CCrypto_Blake2 blake2{nullptr};
    CCrypto_Crc crc{nullptr};
    CCrypto_Md4 md4{nullptr};
    CCrypto_Md5 md5{nullptr};
    CCrypto_Md6 md6{nullptr};
    CCrypto_Sha sha{nullptr};
    CCrypto_Shake shake{nullptr};
    CCrypto_Skein skein{nullptr};
    CCrypto_Tiger tiger{nullptr};
    CCrypto_Whirlpool whirlpool{nullptr};

    std::uint32_t selection[2] = {}; // bit n of low and high word: row n of the hash table is selected
    std::uint8_t verbosity = 2;      // 1: digests; 2: and the file's name; 3: and its full path

    Report report;
    Progress progress;
};
