// SPDX-License-Identifier: MIT
#pragma once

#include "app/CommandLine.h"
#include "app/RunContext.h"

// Gives the salt to the engines that take one and have a selected row. Without path or placement, or when
// the file cannot be opened, the run goes on without a salt.
void LoadSalt(RunContext& context, const SaltChoice& salt);
