// SPDX-License-Identifier: MIT
// What this build is: the same text for every build of one commit.
#pragma once

namespace build_stamp {

extern const wchar_t* const version; // "1.2.3"
extern const wchar_t* const date;    // "2026-01-31"
extern const char* const sourceTime; // "Sat Jan 31 23:59:59 2026", the day padded with a space

} // namespace build_stamp
