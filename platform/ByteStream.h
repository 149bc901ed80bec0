// SPDX-License-Identifier: MIT
// Standard output and standard error as bytes, without buffers or translation of line ends.
#pragma once

#include <cstddef>
#include <string_view>

namespace platform {

// Bytes that one call writes to a pipe without bytes of another process in between.
inline constexpr std::size_t wholeToPipe = 4096;

// Write all bytes, in one call where the system takes them at once. Return 0 or errno.
int WriteToOutput(std::string_view bytes);
int WriteToErrors(std::string_view bytes);

// Whether the two are terminals.
bool OutputIsTerminal();
bool ErrorsAreTerminal();

} // namespace platform
