// SPDX-License-Identifier: MIT
#include "support/ExceptionReporter.h"

#include "platform/Process.h"

int ReportException(unsigned int, const char*, int, const char*, const char*, const wchar_t*) {
    return platform::answerYes;
}
