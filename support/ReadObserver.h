// SPDX-License-Identifier: MIT
// A place from which to watch how far the reading of a file has come. The engines call it and know no more.
#pragma once

#include <cstddef>
#include <cstdint>

class ReadObserver {
  public:
    // Reading begins; bytes of the file, 0 when that cannot be told.
    virtual void Begin(std::int64_t size) noexcept = 0;

    // So many more bytes were read and hashed. False when nobody wants the digest any more: reading ends here.
    virtual bool Read(std::size_t count) noexcept = 0;

  protected:
    ~ReadObserver() = default;
};

// The one observer, if there is one. Set before the first file is read.
inline ReadObserver* readObserver = nullptr;
