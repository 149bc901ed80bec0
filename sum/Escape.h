// SPDX-License-Identifier: MIT
// Names and digests as the forms of lists write them.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace sum {

// Whether a line must begin with a backslash because its name is escaped, and the name with "\\",
// "\n" and "\r".
bool NeedsEscape(std::string_view name);
std::string Escaped(std::string_view name);

// CR, LF and % as %0D, %0A and %25.
std::string PercentEscaped(std::string_view name);

// What stands between the quotes of a JSON string. The text is UTF-8.
std::string JsonEscaped(std::string_view text);

// The member of a JSON object that tells a name: "path", or "path_base64" where it is no UTF-8.
std::string JsonPath(std::string_view name);

// The same for a member of another name: "from", or "from_base64".
std::string JsonName(const std::string& member, std::string_view name);

std::string ToBase64(std::span<const std::byte> bytes);

} // namespace sum
