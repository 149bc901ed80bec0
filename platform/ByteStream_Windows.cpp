// SPDX-License-Identifier: MIT
#include "platform/ByteStream.h"

#include "platform/LongName_Windows.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <io.h>
#include <windows.h>

namespace platform {

namespace {

constexpr int standardOutput = 1;
constexpr int standardError = 2;

// Not _isatty, which takes the null device for a terminal.
bool IsConsole(int descriptor) {
    DWORD mode;
    return GetConsoleMode(reinterpret_cast<HANDLE>(_get_osfhandle(descriptor)), &mode) != 0;
}

// A console shows text by its own character set; wide text it shows as it is. Whole lines come
// here, so that no character is cut.
int WriteToConsole(int descriptor, std::string_view bytes) {
    const std::wstring wide = WideOf(bytes);
    DWORD written;
    const HANDLE console = reinterpret_cast<HANDLE>(_get_osfhandle(descriptor));
    return WriteConsoleW(console, wide.data(), static_cast<DWORD>(wide.size()), &written, nullptr) != 0 ? 0
                                                                                                        : EIO;
}

int WriteAll(int descriptor, std::string_view bytes) {
    if (IsConsole(descriptor))
        return WriteToConsole(descriptor, bytes);
    _setmode(descriptor, _O_BINARY);
    while (!bytes.empty()) {
        const auto count = static_cast<unsigned>(std::min<std::size_t>(bytes.size(), INT_MAX));
        const int written = _write(descriptor, bytes.data(), count);
        if (written <= 0)
            return written < 0 ? errno : ENOSPC;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return 0;
}

} // namespace

int WriteToOutput(std::string_view bytes) {
    return WriteAll(standardOutput, bytes);
}

int WriteToErrors(std::string_view bytes) {
    return WriteAll(standardError, bytes);
}

bool OutputIsTerminal() {
    return IsConsole(standardOutput);
}

bool ErrorsAreTerminal() {
    return IsConsole(standardError);
}

} // namespace platform
