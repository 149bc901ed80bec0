// SPDX-License-Identifier: MIT
// The files that a run reads and writes itself: they are no part of the tree.
#pragma once

#include "platform/NewFile.h"
#include "sum/Name.h"

#include <vector>

namespace sum {

class OwnFiles {
  public:
    // The list, its state, its older version, and what a run that was killed has left beside it.
    explicit OwnFiles(const Name& list);

    // The file that has this name now, if there is one. Of a link, what it leads to.
    void Add(const Name& name);
    void Add(const platform::FileIdentity& identity) { identities_.push_back(identity); }

    const std::vector<platform::FileIdentity>& Identities() const { return identities_; }
    bool Has(const platform::FileIdentity& identity) const;

    // Whether this is an incomplete new list. Looks at names only, unless they are of that kind.
    bool IsTemporary(const Name& name) const;

  private:
    void AddPlain(const Name& name);

    std::vector<platform::FileIdentity> identities_;
    platform::FileIdentity directory_; // where the list is
};

// Whether a run may take this name for a file of its own: it is free, or that of a regular file. A link may lead to a file
// of the user's, and a pipe would keep the run waiting.
bool CanBeOwn(const Name& name);

// What to say where it may not.
inline constexpr const char* cannotBeOwn = ": not a regular file, and needed for one";

// The names of what belongs to a list.
Name StateOf(const Name& list);
Name OlderOf(const Name& list);

} // namespace sum
