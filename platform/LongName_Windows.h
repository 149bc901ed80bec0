// SPDX-License-Identifier: MIT
// Names in UTF-8 and the system's wide names.
#pragma once

#include <string>
#include <string_view>

namespace platform {

// Throw std::bad_alloc.
std::wstring WideOf(std::string_view utf8);
std::string Utf8Of(std::wstring_view wide);

// The name as the system takes it: one that would be too long is made absolute, with \\?\ before
// it.
std::wstring LongName(std::string_view utf8);

} // namespace platform
