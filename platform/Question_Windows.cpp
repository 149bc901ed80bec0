// SPDX-License-Identifier: MIT
// The question after a fault and the end of the process. A source of their own, so that a test can link other
// ones in their place.
#include "platform/Process.h"
#include "platform/Status.h"

#include <cstdio>
#include <cstdlib>
#include <windows.h>

namespace platform {

int AskYesNo(const wchar_t* text, const wchar_t* caption) {
    static_assert(answerYes == IDYES && answerNo == IDNO);
    constexpr UINT style = MB_YESNO | MB_ICONERROR | MB_TASKMODAL;
    static_assert(style == 0x2014);
    WipeStatus();
    FlushStandardOutput();
    return MessageBoxW(nullptr, text, caption, style);
}

// The runtime raises the abort signal for any handler and ends the process with status 3.
void EndAfterFault() {
    std::fflush(stdout);
    std::abort();
}

} // namespace platform
