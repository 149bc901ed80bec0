// SPDX-License-Identifier: MIT
#include "platform/Startup.h"

int wmain(int argc, wchar_t* argv[]);

int main(int argc, char* argv[]) {
    platform::PrepareStandardStreams();
    platform::WideArguments arguments = platform::WidenArguments(argc, argv);
    return wmain(argc, arguments.pointers.data());
}
