// SPDX-License-Identifier: MIT
#include "platform/GrowingFile.h"

#include "platform/EntryStatus_Windows.h"
#include "platform/LongName_Windows.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>
#include <utility>

namespace platform {

int GrowingFile::Open(const std::string& name) {
    int descriptor = -1;
    const int error = _wsopen_s(&descriptor, LongName(name).c_str(),
                                _O_WRONLY | _O_APPEND | _O_BINARY | _O_CREAT | _O_NOINHERIT, _SH_DENYWR,
                                _S_IREAD | _S_IWRITE);
    native_ = descriptor;
    return error;
}

int GrowingFile::Write(std::string_view bytes) {
    while (!bytes.empty()) {
        const auto count = static_cast<unsigned>(std::min<std::size_t>(bytes.size(), INT_MAX));
        const int written = _write(static_cast<int>(native_), bytes.data(), count);
        if (written <= 0)
            return written < 0 ? errno : ENOSPC;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return 0;
}

void GrowingFile::Close() {
    const int descriptor = static_cast<int>(std::exchange(native_, -1));
    if (descriptor != -1)
        _close(descriptor);
}

int RemoveFile(const std::string& name) {
    return DeleteFileW(LongName(name).c_str()) != 0 ? 0 : ErrnoOf(GetLastError());
}

} // namespace platform
