// SPDX-License-Identifier: MIT
// What the system tells of a file, as Tree.h has it.
#pragma once

#include "platform/Tree.h"

#include <sys/stat.h>

namespace platform {

EntryKind KindOfMode(mode_t mode);
EntryStatus StatusOf(const struct stat& found);

} // namespace platform
