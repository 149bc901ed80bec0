// SPDX-License-Identifier: MIT
#include "sum/Walk.h"

#include "sum/Messages.h"
#include "sum/PathRules.h"

#include <algorithm>
#include <utility>

namespace sum {

using platform::EntryKind;

// A directory as it is read: all names in one text, so that a million of them are a few
// allocations. They are sorted as their paths would be, in which the name of a directory is
// followed by a slash.
struct Walk::Entries {
    struct Entry {
        std::size_t begin;
        std::uint32_t length; // with a slash at the end, if it is to be entered
        EntryKind kind;
    };

    std::string names;
    std::vector<Entry> entries;

    void Add(std::string_view name, EntryKind kind, bool entered) {
        const std::size_t begin = names.size();
        names.append(name);
        if (entered)
            names += '/';
        entries.push_back({begin, static_cast<std::uint32_t>(names.size() - begin), kind});
    }

    std::string_view NameOf(const Entry& entry) const {
        return std::string_view(names).substr(entry.begin, entry.length);
    }

    void Sort() {
        std::sort(entries.begin(), entries.end(),
                  [this](const Entry& a, const Entry& b) { return NameOf(a) < NameOf(b); });
    }
};

bool Walk::LookAtPath(platform::EntryStatus& status, bool follow) const {
    const int error = platform::LookAt(path_, follow, status);
    if (error != 0)
        sink_.Trouble(path_, ErrorText(error));
    return error == 0;
}

void Walk::Enter(const Name& directory) {
    platform::EntryStatus status;
    path_ = directory;
    if (!LookAtPath(status, true))
        return;
    device_ = status.identity.device;
    // The operand's own separator, of whichever kind, is not doubled.
    below_ = path_.size() + (platform::LengthOfDirectory(path_) == path_.size() ? 0 : 1);
    EnterBelow(status.identity);
}

// `path_` is the directory, and is so again afterwards.
void Walk::EnterBelow(const platform::FileIdentity& identity) {
    if (options_.follow && std::find(above_.begin(), above_.end(), identity) != above_.end())
        return sink_.Trouble(path_, "leads back to a directory above it");
    Entries found;
    const Name directory = path_;
    const int error = platform::ListDirectory(directory, [&](std::string_view name, EntryKind kind) {
        if (kind == EntryKind::link && options_.follow) {
            platform::EntryStatus status;
            path_ = directory + '/' + Name(name);
            if (!LookAtPath(status, true))
                return;
            kind = status.kind;
        }
        if (kind == EntryKind::regular || kind == EntryKind::directory)
            found.Add(name, kind, kind == EntryKind::directory);
    });
    if (error != 0)
        sink_.Trouble(directory, ErrorText(error));
    found.Sort();
    above_.push_back(identity);
    path_ = directory;
    if (path_.size() < below_ || platform::LengthOfDirectory(path_) != path_.size())
        path_ += '/';
    const std::size_t length = path_.size();
    for (const Entries::Entry& entry : found.entries) {
        path_.resize(length);
        Meet(found.NameOf(entry), entry.kind);
    }
    above_.pop_back();
    path_ = directory;
}

void Walk::Meet(std::string_view name, EntryKind kind) {
    if (kind == EntryKind::directory)
        name.remove_suffix(1);
    path_ += name;
    if (kind == EntryKind::directory)
        MeetDirectory();
    else
        MeetFile();
}

void Walk::MeetDirectory() {
    platform::EntryStatus status;
    if (!IsEntered(options_.rules, Shown(), below_ - options_.hidden))
        return;
    if (options_.follow || options_.oneFileSystem) {
        if (!LookAtPath(status, options_.follow))
            return;
        if (options_.oneFileSystem && status.identity.device != device_)
            return;
    }
    EnterBelow(status.identity);
}

void Walk::MeetFile() {
    if (Counts(options_.rules, Shown(), below_ - options_.hidden) && !IsOwn())
        sink_.File(path_);
}

bool Walk::IsOwn() const {
    platform::EntryStatus status;
    return !ownFiles_.empty() && platform::LookAt(path_, true, status) == 0 &&
           std::find(ownFiles_.begin(), ownFiles_.end(), status.identity) != ownFiles_.end();
}

} // namespace sum
