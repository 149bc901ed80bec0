// SPDX-License-Identifier: MIT
#include "platform/StandardOutput.h"

#include <cstdlib>
#include <windows.h>

namespace platform {

// The runtime's error numbers do not tell one of these from a wrong argument.
bool FoundClosedPipe() {
    const unsigned long error = _doserrno;
    return error == ERROR_BROKEN_PIPE || error == ERROR_NO_DATA || error == ERROR_PIPE_NOT_CONNECTED;
}

bool IsPipeWithoutReader() {
    return false;
}

} // namespace platform
