// SPDX-License-Identifier: MIT
// The files below a directory.
#pragma once

#include "platform/Tree.h"
#include "sum/Name.h"
#include "sum/Options.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace sum {

// What is met on the way, in order.
class InputSink {
  public:
    virtual ~InputSink() = default;
    virtual void File(const Name& name) = 0;

    // Something could not be looked at or entered.
    virtual void Trouble(const Name& name, const std::string& reason) = 0;
};

// Walks one tree after the other. Of the paths of each the order is that of their bytes. Links are
// passed over unless they are to be followed; pipes, sockets and devices always, and so are the
// files that this run writes.
class Walk {
  public:
    Walk(const Options& options, std::vector<platform::FileIdentity> ownFiles, InputSink& sink)
        : options_(options), ownFiles_(std::move(ownFiles)), sink_(sink) {}

    // The directory is the operand; its own name is in no rule's way.
    void Enter(const Name& directory);

  private:
    struct Entries;

    void EnterBelow(const platform::FileIdentity& identity);
    void Meet(std::string_view name, platform::EntryKind kind);
    void MeetDirectory();
    void MeetFile();
    bool IsOwn() const;
    std::string_view Shown() const { return std::string_view(path_).substr(options_.hidden); }
    bool LookAtPath(platform::EntryStatus& status, bool follow) const;

    const Options& options_;
    const std::vector<platform::FileIdentity> ownFiles_;
    InputSink& sink_;
    Name path_;             // of what is being looked at
    std::size_t below_ = 0; // where in it the part below the operand begins
    std::uint64_t device_ = 0;
    std::vector<platform::FileIdentity> above_; // the directories on the way
};

} // namespace sum
