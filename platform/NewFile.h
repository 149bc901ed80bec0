// SPDX-License-Identifier: MIT
// A file that has its name only when it is complete. Names are bytes (see ByteFile.h).
#pragma once

#include "platform/Tree.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace platform {

// How the temporary names begin; six letters or digits follow.
inline constexpr std::string_view temporaryPrefix = ".fyrnsum-";

// Whether a file name, without a directory, is of the kind that NewFile makes.
bool IsTemporaryName(std::string_view name);

// Until Complete, the bytes stand in a file without a name or under a temporary one in the same
// directory; what had the name before stays. A name of something else than a regular file (a
// device, a pipe) is written to as it stands.
class NewFile {
  public:
    NewFile() = default;
    NewFile(NewFile&& other) noexcept;
    NewFile& operator=(NewFile&& other) = delete;
    ~NewFile(); // an incomplete file goes away

    // Makes the file. Returns 0 or errno. Throws std::bad_alloc. Called once.
    int Create(const std::string& name);

    // Gives the file the owner and the rights of another one, as far as this user may, in place of
    // those that new files have. Where the system has no such rights, nothing happens.
    void TakeRightsOf(const std::string& name);

    // Returns 0 or errno.
    int Write(std::string_view bytes);

    // Gives the file its name, in place of what had it. Returns 0 or errno.
    int Complete();

    // The file that is being written.
    FileIdentity Identity() const;

  private:
    int CreateNamed();

    std::intptr_t native_ = -1;
    std::string name_;      // links resolved
    std::string temporary_; // empty: the file has no name, or its own
    bool direct_ = false;   // written to as it stands
};

} // namespace platform
