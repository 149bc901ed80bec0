// SPDX-License-Identifier: MIT
// The options. Nothing a user types is an error: a value of no use is ignored, and what is no option is a
// target.
#pragma once

#include "app/RunContext.h"
#include "platform/Directory.h"

// The salt as the command line names it.
struct SaltChoice {
    wchar_t path[platform::maxPath] = {}; // empty: no salt
    EnumSaltType placement = EnumSaltType::None;
};

// Reads all options, wherever they stand among the targets. An argument that was used up is
// emptied, so that what is left of argv[1] to argv[argc - 1] are the targets.
void ParseCommandLine(int argc, wchar_t* argv[], RunContext& context, SaltChoice& salt);
