// SPDX-License-Identifier: MIT
#pragma once

#include "app/RunContext.h"

// Prints the line that names the selected hash functions, and an empty line.
void PrintHeader(const RunContext& context);
