// SPDX-License-Identifier: MIT
// Stands in for the reporter of faults: remembers what is reported, asks nobody and writes no log.
#pragma once

#include <string>
#include <vector>

namespace fakes {

struct FaultRecord {
    std::string sourceFile;
    int line;
    std::string signature;
    std::string timeStamp;
    bool hasInfo;
};

// What was reported since the last call.
std::vector<FaultRecord> TakeFaultRecords();

} // namespace fakes
