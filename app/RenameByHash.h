// SPDX-License-Identifier: MIT
#pragma once

#include "app/RunContext.h"

// Renames a file to the last digest and its extension, or to a numbered name when that name is taken, or
// deletes it when that is asked for instead. `extension` begins with its dot, or is empty.
void RenameByHash(const RunContext& context, const wchar_t* path, const wchar_t* extension);
