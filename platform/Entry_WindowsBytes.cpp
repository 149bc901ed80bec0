// SPDX-License-Identifier: MIT
// The entry of a program that takes its arguments as UTF-8. The runtime's start-up code calls wmain
// by itself.
#include "platform/ByteMain.h"
#include "platform/LongName_Windows.h"

#include <cstdio>
#include <new>

// No shell expands patterns here, so the runtime does.
extern "C" {
extern int _dowildcard;
int _dowildcard = -1;
}

int wmain(int argc, wchar_t* argv[]) {
    try {
        std::vector<std::string> arguments;
        for (int i = 0; i < argc; ++i)
            arguments.push_back(platform::Utf8Of(argv[i]));
        return ByteMain(arguments);
    } catch (const std::bad_alloc&) {
        std::fputs("memory exhausted\n", stderr);
        return 1;
    }
}
