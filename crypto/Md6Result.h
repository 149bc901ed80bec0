// SPDX-License-Identifier: MIT
#pragma once

// What the members of CCrypto_Md6 return.
enum Md6Result : int {
    md6Success = 0,
    md6Fault = 1, // an exception was caught and reported
    md6BadDigestLength = 2,
    md6LevelTooLow = 3,
    md6LevelTooHigh = 4,
    md6NullData = 5,
    md6NullOutput = 6,
    md6NullInput = 7,
    md6NullConstant = 8,
    md6NullKey = 9,
    md6BadLevel = 10,
    md6BadRounds = 11,
    md6BadMode = 12,
    md6BadPadding = 13,
    md6BadKeyLength = 14,
};
