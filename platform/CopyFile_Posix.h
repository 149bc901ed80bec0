// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

// Moves a regular file to another file system: copies content, owner, mode and times to a new file, makes sure that it
// is on the medium, and only then removes the source. On failure the new file is gone and the source untouched. A
// source that cannot be removed stays beside its copy, which counts as moved.
bool MoveByCopy(const char* from, const char* to);

} // namespace platform
