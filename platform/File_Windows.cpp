// SPDX-License-Identifier: MIT
// Files are opened by the runtime, whose secure open also decides about sharing, and read past its buffers.
#include "platform/EncodedPieces.h"
#include "platform/File.h"
#include "platform/Process.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <io.h>
#include <windows.h>

namespace platform {

namespace {

std::FILE* StreamOf(const InputFile& file) {
    return reinterpret_cast<std::FILE*>(file.native);
}

int DescriptorOf(const InputFile& file) {
    return _fileno(StreamOf(file));
}

HANDLE HandleOf(const InputFile& file) {
    return reinterpret_cast<HANDLE>(_get_osfhandle(DescriptorOf(file)));
}

// What the system opens has nothing against it: the runtime had no stream left, or no memory for one. The file is
// still there when its turn to be renamed by a stale digest comes; the open handle keeps it from being moved or
// removed.
void HoldIfOnlyTheRuntimeFailed(const wchar_t* path) {
    CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
}

// The digest of a file with a read error is that of a part. A second handle keeps the file where it is when the
// first one is closed.
void HoldOpen(const InputFile& file) {
    HANDLE second;
    DuplicateHandle(GetCurrentProcess(), HandleOf(file), GetCurrentProcess(), &second, 0, FALSE,
                    DUPLICATE_SAME_ACCESS);
}

std::FILE* Open(const wchar_t* path, const wchar_t* mode) {
    std::FILE* stream = nullptr;
    return _wfopen_s(&stream, path, mode) == 0 ? stream : nullptr;
}

} // namespace

InputFile OpenForReading(const wchar_t* path) {
    InputFile file;
    if (std::FILE* const stream = Open(path, L"rb"))
        file.native = reinterpret_cast<std::intptr_t>(stream);
    else
        HoldIfOnlyTheRuntimeFailed(path);
    if (file && !IsRegular(file))
        FlushStandardOutput(); // before anybody waits for what comes out of it
    return file;
}

std::size_t ReadFully(InputFile& file, unsigned char* buffer, std::size_t capacity) {
    std::size_t total = 0;
    while (total < capacity && !file.ended) {
        const std::size_t wanted = std::min<std::size_t>(capacity - total, INT_MAX);
        const int count = _read(DescriptorOf(file), buffer + total, static_cast<unsigned>(wanted));
        file.ended = count <= 0;
        if (count < 0)
            HoldOpen(file);
        if (count > 0)
            total += static_cast<std::size_t>(count);
    }
    return total;
}

std::int64_t SizeOf(InputFile& file) {
    if (!IsRegular(file))
        return 0;
    const std::int64_t size = _lseeki64(DescriptorOf(file), 0, SEEK_END);
    file.ended = _lseeki64(DescriptorOf(file), 0, SEEK_SET) != 0;
    return std::max<std::int64_t>(size, 0);
}

bool IsRegular(const InputFile& file) {
    return GetFileType(HandleOf(file)) == FILE_TYPE_DISK;
}

void Close(InputFile& file) {
    std::fclose(StreamOf(file));
    file = InputFile{};
}

// A walk meets neither pipes nor devices here: they have no names in directories.
void AllowSpecialFiles(bool) {}

bool AppendText(const wchar_t* path, const wchar_t* text) {
    std::FILE* const stream = Open(path, L"a");
    if (stream == nullptr)
        return false;
    bool complete = true;
    ForEachEncodedPiece(text, [&](const char* bytes, std::size_t count) {
        complete = std::fwrite(bytes, 1, count, stream) == count && complete;
    });
    return std::fclose(stream) == 0 && complete;
}

} // namespace platform
