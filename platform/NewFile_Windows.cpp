// SPDX-License-Identifier: MIT
#include "platform/NewFile.h"

#include "platform/LongName_Windows.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>
#include <utility>
#include <windows.h>

namespace platform {

namespace {

bool IsDevice(const std::string& name) {
    EntryStatus status;
    return LookAt(name, true, status) == 0 && status.kind == EntryKind::special;
}

} // namespace

NewFile::NewFile(NewFile&& other) noexcept
    : native_(std::exchange(other.native_, -1)), name_(std::move(other.name_)),
      temporary_(std::move(other.temporary_)), direct_(other.direct_) {}

NewFile::~NewFile() {
    if (native_ != -1)
        _close(static_cast<int>(native_));
    if (native_ != -1 && !temporary_.empty())
        DeleteFileW(LongName(temporary_).c_str());
}

int NewFile::Create(const std::string& name) {
    name_ = name;
    direct_ = IsDevice(name);
    if (!direct_)
        return CreateNamed();
    int descriptor = -1;
    const errno_t error =
        _wsopen_s(&descriptor, WideOf(name).c_str(), _O_WRONLY | _O_BINARY | _O_NOINHERIT, _SH_DENYNO, 0);
    native_ = descriptor;
    return error;
}

int NewFile::CreateNamed() {
    const std::size_t end = name_.find_last_of("/\\:");
    const std::string directory = end == std::string::npos ? "" : name_.substr(0, end + 1);
    constexpr unsigned numbers = 1'000'000;
    for (unsigned number = GetCurrentProcessId();; ++number) {
        const std::string digits = std::to_string(numbers + number % numbers).substr(1); // six of them
        const std::string temporary = directory + std::string(temporaryPrefix) + digits;
        int descriptor = -1;
        const errno_t error = _wsopen_s(&descriptor, LongName(temporary).c_str(),
                                        _O_WRONLY | _O_BINARY | _O_CREAT | _O_EXCL | _O_NOINHERIT, _SH_DENYWR,
                                        _S_IREAD | _S_IWRITE);
        native_ = descriptor;
        if (error == 0)
            temporary_ = temporary;
        if (error != EEXIST)
            return error;
    }
}

// A new file has the rights that its directory hands down, as the old one had.
void NewFile::TakeRightsOf(const std::string& /*name*/) {}

int NewFile::Write(std::string_view bytes) {
    while (!bytes.empty()) {
        const auto count = static_cast<unsigned>(std::min<std::size_t>(bytes.size(), INT_MAX));
        const int written = _write(static_cast<int>(native_), bytes.data(), count);
        if (written <= 0)
            return written < 0 ? errno : ENOSPC;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return 0;
}

int NewFile::Complete() {
    const int descriptor = static_cast<int>(std::exchange(native_, -1));
    const std::string temporary = std::exchange(temporary_, {});
    if (_close(descriptor) != 0)
        return errno;
    if (direct_)
        return 0;
    const DWORD flags = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
    if (MoveFileExW(LongName(temporary).c_str(), LongName(name_).c_str(), flags) != 0)
        return 0;
    DeleteFileW(LongName(temporary).c_str());
    return EACCES;
}

FileIdentity NewFile::Identity() const {
    BY_HANDLE_FILE_INFORMATION info;
    const HANDLE file = reinterpret_cast<HANDLE>(_get_osfhandle(static_cast<int>(native_)));
    if (GetFileInformationByHandle(file, &info) == 0)
        return {};
    return {info.dwVolumeSerialNumber, std::uint64_t{info.nFileIndexHigh} << 32 | info.nFileIndexLow};
}

} // namespace platform
