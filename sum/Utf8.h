// SPDX-License-Identifier: MIT
// Characters of names, which need not be text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace sum {

struct Character {
    std::size_t length = 1; // bytes
    bool valid = false;     // UTF-8; otherwise a single byte
    bool showable = false;  // in messages: no control, and nothing that hides or turns text
    std::uint32_t code = 0;
};

// The first character of a text that is not empty.
Character FirstCharacter(std::string_view text);

// Whether all of the text is UTF-8, and whether all of it can stand in a message.
bool IsUtf8(std::string_view text);
bool IsShowable(std::string_view text);

} // namespace sum
