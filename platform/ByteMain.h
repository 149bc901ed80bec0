// SPDX-License-Identifier: MIT
// The program behind Entry_*Bytes.cpp.
#pragma once

#include <string>
#include <vector>

// Runs with the program's name and its arguments, bytes or on Windows UTF-8. Returns the exit
// status. May throw std::bad_alloc.
int ByteMain(const std::vector<std::string>& arguments);
