// SPDX-License-Identifier: MIT
// Reading files by names that are bytes: as they are on POSIX systems, UTF-8 on Windows, where long
// paths work too. Errors are numbers of errno on every system. Only functions that say so throw.
#pragma once

#include "platform/Tree.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace platform {

// A file open for reading; closed when it goes out of scope.
class ByteFile {
  public:
    ByteFile() = default; // none
    ByteFile(ByteFile&& other) noexcept : native_(other.native_), owned_(other.owned_) { other.native_ = -1; }
    ByteFile& operator=(ByteFile&& other) noexcept;
    ~ByteFile() { Close(); }

    // Opens for binary reading whatever has this name, waiting for a writer if it is a pipe. Sets
    // `error` to 0, or to errno upon failure. A directory may open; its reading fails then. Throws
    // std::bad_alloc.
    static ByteFile Open(const std::string& name, int& error);

    // The same for what stores its bytes. A pipe, and a device that could keep its reader waiting or
    // never end, is refused with ENOTSUP.
    static ByteFile OpenStored(const std::string& name, int& error);

    // Standard input, without translation of line ends. Never closed.
    static ByteFile StandardInput();

    explicit operator bool() const { return native_ != -1; }

    // Reads up to `capacity` bytes in one call of the system, begun again after a signal. Returns
    // how many, 0 at the end, or -1 with errno in `error`; EISDIR for a directory.
    std::ptrdiff_t Read(void* buffer, std::size_t capacity, int& error);

    enum class Kind { regular, other };

    // What is open. `sizeLeft` is the bytes of a regular file that are left to read, -1 when that
    // cannot be told. `status` is filled where it is given and the system tells.
    Kind Look(std::int64_t& sizeLeft, EntryStatus* status = nullptr) const;

    void Close();

  private:
    explicit ByteFile(std::intptr_t native, bool owned) : native_(native), owned_(owned) {}

    std::intptr_t native_ = -1;
    bool owned_ = false;
};

} // namespace platform
