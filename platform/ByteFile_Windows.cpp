// SPDX-License-Identifier: MIT
#include "platform/ByteFile.h"

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
#include <windows.h>

namespace platform {

namespace {

constexpr int standardInput = 0;

int Descriptor(std::intptr_t native) {
    return static_cast<int>(native);
}

bool IsDirectory(const std::wstring& name) {
    const DWORD attributes = GetFileAttributesW(name.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

} // namespace

ByteFile& ByteFile::operator=(ByteFile&& other) noexcept {
    std::swap(native_, other.native_);
    std::swap(owned_, other.owned_);
    return *this;
}

ByteFile ByteFile::Open(const std::string& name, int& error) {
    const std::wstring wide = LongName(name);
    int descriptor = -1;
    if (_wsopen_s(&descriptor, wide.c_str(), _O_RDONLY | _O_BINARY | _O_NOINHERIT, _SH_DENYNO, 0) == 0)
        error = 0;
    else
        error = IsDirectory(wide) ? EISDIR : errno;
    return ByteFile(error == 0 ? descriptor : -1, true);
}

ByteFile ByteFile::OpenStored(const std::string& name, int& error) {
    ByteFile file = Open(name, error);
    std::int64_t left;
    if (error == 0 && file.Look(left) == Kind::other) {
        error = ENOTSUP;
        file.Close();
    }
    return file;
}

ByteFile ByteFile::StandardInput() {
    _setmode(standardInput, _O_BINARY);
    return ByteFile(standardInput, false);
}

std::ptrdiff_t ByteFile::Read(void* buffer, std::size_t capacity, int& error) {
    const int count =
        _read(Descriptor(native_), buffer, static_cast<unsigned>(std::min<std::size_t>(capacity, INT_MAX)));
    if (count < 0)
        error = errno;
    return count;
}

ByteFile::Kind ByteFile::Look(std::int64_t& sizeLeft, EntryStatus* status) const {
    sizeLeft = -1;
    const int descriptor = Descriptor(native_);
    const HANDLE file = reinterpret_cast<HANDLE>(_get_osfhandle(descriptor));
    if (status != nullptr && StatusOf(file, *status) != 0)
        *status = {};
    if (GetFileType(file) != FILE_TYPE_DISK)
        return Kind::other;
    const std::int64_t size = _filelengthi64(descriptor);
    const std::int64_t position = _telli64(descriptor);
    if (position >= 0 && position <= size)
        sizeLeft = size - position;
    return Kind::regular;
}

void ByteFile::Close() {
    if (owned_ && native_ != -1)
        _close(Descriptor(native_));
    native_ = -1;
}

} // namespace platform
