// SPDX-License-Identifier: MIT
// What keeps two runs of this program apart.
#pragma once

#include "platform/Descriptor_Posix.h"

namespace platform {

// Holds advisory locks on the directories of two paths: for what takes more than one step, and so
// would be seen half done by another run. Where a directory cannot be opened or knows no locks,
// there is none to wait for.
class DirectoryLocks {
  public:
    DirectoryLocks(const char* path, const char* otherPath);

    // False when somebody else has kept one of the directories for seconds.
    explicit operator bool() const { return held_; }

  private:
    Descriptor directory_;
    Descriptor otherDirectory_;
    bool held_;
};

} // namespace platform
