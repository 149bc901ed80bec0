// SPDX-License-Identifier: MIT
#include "platform/ByteMain.h"
#include "sum/Run.h"

int ByteMain(const std::vector<std::string>& arguments) {
    return sum::Run(arguments);
}
