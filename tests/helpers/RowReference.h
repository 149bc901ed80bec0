// SPDX-License-Identifier: MIT
// What every row of the hash table has to give, from the references alone: the departures with a salt included.
#pragma once

#include "crypto/CCrypto_Salt.h"
#include "tests/helpers/Bytes.h"

#include <span>
#include <string>
#include <string_view>

namespace helpers {

// The digest text of a file with this content under a row's name ("SHA2-256"), when its engine holds this salt. An
// empty salt is none. Throws std::invalid_argument for a name that is no row's.
std::string RowReference(std::string_view row, std::span<const std::uint8_t> message, const Bytes& salt = {},
                         EnumSaltType placement = EnumSaltType::None);

} // namespace helpers
