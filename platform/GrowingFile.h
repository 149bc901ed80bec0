// SPDX-License-Identifier: MIT
// A file that grows at its end. Names are bytes (see ByteFile.h).
#pragma once

#include "platform/Tree.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace platform {

// What was written stays when the process is killed.
class GrowingFile {
  public:
    GrowingFile() = default;
    GrowingFile(const GrowingFile&) = delete;
    GrowingFile& operator=(const GrowingFile&) = delete;
    ~GrowingFile() { Close(); }

    // Opens the file, or makes an empty one. Returns 0 or errno. Called once.
    int Open(const std::string& name);

    // Writes at the end. Returns 0 or errno.
    int Write(std::string_view bytes);

    void Close();

  private:
    std::intptr_t native_ = -1;
};

// Returns 0 or errno.
int RemoveFile(const std::string& name);

} // namespace platform
