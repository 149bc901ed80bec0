// SPDX-License-Identifier: MIT
#include "platform/Startup.h"

#include <new>

int wmain(int argc, wchar_t* argv[]);

// Returns 0 also where memory does not even suffice for the arguments: nothing was asked for that could be done.
int main(int argc, char* argv[]) {
    try {
        platform::PrepareStandardStreams();
        platform::WideArguments arguments = platform::WidenArguments(argc, argv);
        return wmain(argc, arguments.pointers.data());
    } catch (const std::bad_alloc&) {
        return 0;
    }
}
