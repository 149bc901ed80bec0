// SPDX-License-Identifier: MIT
// A wide path as the bytes that system calls take, without allocation.
#pragma once

#include <climits>

namespace platform {

class NativePath {
  public:
    // A path that is too long for the system becomes the empty one, which names nothing.
    explicit NativePath(const wchar_t* path);

    operator const char*() const { return bytes_; }

  private:
    char bytes_[PATH_MAX];
};

} // namespace platform
