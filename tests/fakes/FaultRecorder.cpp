// SPDX-License-Identifier: MIT
#include "tests/fakes/FaultRecorder.h"

#include "platform/Process.h"
#include "support/ExceptionReporter.h"

#include <utility>

namespace {

std::vector<fakes::FaultRecord> records;

} // namespace

int ReportException(unsigned int, const char* sourceFile, int line, const char* signature,
                    const char* timeStamp, const wchar_t* info) {
    records.push_back({sourceFile, line, signature, timeStamp, info != nullptr});
    return platform::answerYes;
}

namespace fakes {

std::vector<FaultRecord> TakeFaultRecords() {
    return std::exchange(records, {});
}

} // namespace fakes
