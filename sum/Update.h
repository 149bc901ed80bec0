// SPDX-License-Identifier: MIT
// Writing a list anew after it was compared with its tree.
#pragma once

#include "sum/Entries.h"
#include "sum/Options.h"
#include "sum/Output.h"
#include "sum/Scope.h"
#include "sum/TreeList.h"

#include <deque>
#include <set>

namespace sum {

class Update {
  public:
    // Begins the new list, so that trouble with its directory is met before any file is read. The
    // old list stays until Write. Nothing is copied. Throws TreeError and OutputError.
    Update(const Options& options, const Scope& scope, TreeList& list);

    platform::FileIdentity Identity() const { return file_.Identity(); }

    // Writes the list, keeps the old one beside it, and writes what is remembered of the files.
    // Returns whether the list could take in all that it was to. Throws TreeError and OutputError.
    bool Write(const std::deque<FoundFile>& files);

  private:
    void CheckThatListIsTheSame() const;
    void WriteLines(const std::deque<FoundFile>& files);
    void KeepOlder() const;
    void WriteState(const std::deque<FoundFile>& files) const;

    const Options& options_;
    const Scope& scope_;
    TreeList& list_;
    const Name& name_;
    platform::EntryStatus status_; // of the list when it was read
    OutputFile file_;
    std::set<const FoundFile*> refused_; // whose names the list cannot hold
};

} // namespace sum
