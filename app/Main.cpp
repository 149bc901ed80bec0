// SPDX-License-Identifier: MIT
// The run, in order.
#include "app/CommandLine.h"
#include "app/HashTable.h"
#include "app/Salt.h"
#include "app/TargetEnumeration.h"
#include "app/Usage.h"
#include "app/Watch.h"

#include <new>

namespace {

void Run(int argc, wchar_t* argv[]) {
    RunContext context;
    SaltChoice salt;
    ParseCommandLine(argc, argv, context, salt);
    if (CountSelectedHashes(context) == 0) {
        PrintUsage(argv[0]);
        return;
    }
    context.report.PrintHeader(context);
    LoadSalt(context, salt);
    context.progress.BeginRun(CountSelectedHashes(context));
    const Watch watch(context.report, context.progress);
    for (int i = 1; i < argc; ++i)
        if (argv[i][0] != L'\0')
            ProcessTarget(context, argv[i]);
}

} // namespace

// Returns 0 whatever happens: a file that cannot be hashed or renamed is no reason to stop a script.
int wmain(int argc, wchar_t* argv[]) {
    try {
        Run(argc, argv);
    } catch (const ReaderGone&) {
        // Whatever was still to be done, nobody would see it.
    } catch (const std::bad_alloc&) {
        // There is no memory for the usage text. A walk passes over what it has no memory for.
    }
    return 0;
}
