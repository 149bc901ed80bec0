// SPDX-License-Identifier: MIT
#pragma once

namespace fyrn::hash {

// The version of the library, "1.1.0".
extern const char version[];

} // namespace fyrn::hash
