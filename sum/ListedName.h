// SPDX-License-Identifier: MIT
// From the names in a list to the files that are meant.
#pragma once

#include "sum/Name.h"
#include "sum/Options.h"

namespace sum {

// The file that a listed name means under --directory and --basename. Where a name that begins with
// blanks names nothing, the one without them is taken, as `listed` too: some tools align their
// columns.
Name FileOf(Name& listed, const Options& options);

// What a list that holds a digest and no name is about: "disk.iso" for "disk.iso.sha256". Below a
// directory that was named, the last component of that. Empty when there is no extension.
Name SubjectOf(const Name& list, const Options& options);

// Whether the list is a manifest of a BagIt bag, which has a bagit.txt beside it.
bool IsBagItManifest(const Name& list);

} // namespace sum
