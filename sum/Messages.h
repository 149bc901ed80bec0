// SPDX-License-Identifier: MIT
// What is said on standard error, and names as they are shown to people.
#pragma once

#include "sum/Name.h"

#include <string>
#include <string_view>

namespace sum {

// The name that begins every message. "fyrnsum" until set.
void SetProgramName(std::string_view name);
const std::string& ProgramName();

// Writes "fyrnsum: TEXT" and a line end to standard error, in one piece and after what standard
// output holds back.
void Say(std::string_view text);

// The same without a look at standard output: for what went wrong with that.
void SayAtOnce(std::string_view text);

// "Try 'fyrnsum --help' for more information."
void SayAdvice();

// "fyrnsum: NAME: No such file or directory", the name quoted where that is needed.
void SayError(const Name& name, int error);

// The text of an errno, in English whatever the locale.
std::string ErrorText(int error);

// The name as a POSIX shell takes it: as it is, or quoted when anything in it is unusual. Control
// characters, bytes that are no UTF-8 and characters that hide or turn text come out as escapes
// ('a'$'\n''b').
std::string Quoted(std::string_view name);

// The same in quotes in any case.
std::string QuotedAlways(std::string_view name);

// 'text' with C's escapes, as an option's argument stands in a sentence.
std::string QuotedPlain(std::string_view text);

} // namespace sum
