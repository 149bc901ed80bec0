// SPDX-License-Identifier: MIT
// No exception leaves a member of the hash library: each
// ends in a catch site that reports the fault and goes on.
#pragma once

#include "support/BuildStamp.h"

// Appends a record of a caught fault to "Error.log" beside the executable
// and asks the user whether to go on. Returns the answer (6 for Yes); with
// No the process ends with status 3 and this does not return. Never throws.
int ReportException(unsigned int ignored, const char* sourceFile, int line, const char* signature,
                    const char* timeStamp, const wchar_t* info);

// The catch clause of a member, reported with the member's full signature, calling convention included.
// Stands right behind the try block; control goes on behind it, where the member returns its failure value.
// CATCH_SITE_AT is for members whose reported line is fixed, CATCH_SITE_WITH for those that tell more.
#define CATCH_SITE_AT(line, signature) CATCH_SITE_RECORD(line, signature, nullptr)
#define CATCH_SITE_WITH(info, signature) CATCH_SITE_RECORD(__LINE__, signature, info)
#define CATCH_SITE(signature) CATCH_SITE_AT(__LINE__, signature)
#define CATCH_SITE_RECORD(line, signature, info)                                                             \
    catch (...) {                                                                                            \
        ReportException(0, __FILE__, line, signature, build_stamp::sourceTime, info);                        \
    }
