// SPDX-License-Identifier: MIT
// Bounded formatting, small string services and the guarded memory move.
#pragma once

#include "support/WideFormat.h"

#include <cstddef>
#include <initializer_list>
#include <string>

// A text that collects debug messages; a null pointer means that nothing is collected. Owned by the caller.
using DebugLog = std::wstring;

int FormatToBufferList(wchar_t* pwcDst, std::size_t capacity, const wchar_t* pwcFormat,
                       std::initializer_list<FormatArgument> arguments);
unsigned int OutputDebugMessageList(DebugLog* pWstrDebugLog, const wchar_t* pwcFormat,
                                    std::initializer_list<FormatArgument> arguments);

// Formats into a buffer of `capacity` characters. Returns the length, or 0 when the text was cut to fit or
// the buffer is null or empty.
template <class... Arguments>
int FormatToBuffer(wchar_t* pwcDst, std::size_t capacity, const wchar_t* pwcFormat,
                   const Arguments&... arguments) {
    return FormatToBufferList(pwcDst, capacity, pwcFormat, {FormatArgument(arguments)...});
}

// Appends a formatted message to the log. Returns the number of characters appended; 0 without a log.
template <class... Arguments>
unsigned int OutputDebugMessage(DebugLog* pWstrDebugLog, const wchar_t* pwcFormat,
                                const Arguments&... arguments) {
    return OutputDebugMessageList(pWstrDebugLog, pwcFormat, {FormatArgument(arguments)...});
}

// Index of the last path separator at or before `start` (negative: the end of the text), or -1.
int ReverseFindNoCase(const wchar_t* text, unsigned int ignored, int start);

// 0 when both are equal but for ASCII case. Otherwise the first difference, at index i: the complement of i
// when `a` is the lower, else i + 1. A null or empty text sorts before any other (-1, 1).
int CompareNoCase(const wchar_t* a, const wchar_t* b);

// A character in lower case, ASCII only, so that the answer is the same in every locale.
wchar_t ToLowerAscii(wchar_t character);

// Moves min(capacity, length) bytes, overlap-safe. Leaves a warning in the log when it has to cut.
void Safe_memmove(void* pvDst, std::size_t capacity, const void* pvSrc, std::size_t length,
                  DebugLog* pWstrDebugLog);
