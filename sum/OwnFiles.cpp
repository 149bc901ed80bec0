// SPDX-License-Identifier: MIT
#include "sum/OwnFiles.h"

#include "sum/Journal.h"

#include <algorithm>

namespace sum {

namespace {

Name DirectoryOf(const Name& name) {
    const std::size_t length = platform::LengthOfDirectory(name);
    return length == 0 ? "." : name.substr(0, length);
}

} // namespace

Name StateOf(const Name& list) {
    return list + ".state";
}

Name OlderOf(const Name& list) {
    return list + "~";
}

OwnFiles::OwnFiles(const Name& list) {
    platform::EntryStatus status;
    Add(list);
    Add(StateOf(list));
    Add(OlderOf(list));
    Add(JournalOf(list));
    if (platform::LookAt(DirectoryOf(list), true, status) == 0)
        directory_ = status.identity;
}

void OwnFiles::Add(const Name& name) {
    platform::EntryStatus status;
    if (name != "-" && platform::LookAt(name, true, status) == 0 &&
        status.kind == platform::EntryKind::regular)
        Add(status.identity);
}

bool OwnFiles::Has(const platform::FileIdentity& identity) const {
    return std::ranges::find(identities_, identity) != identities_.end();
}

bool OwnFiles::IsTemporary(const Name& name) const {
    platform::EntryStatus status;
    const std::size_t start = platform::LengthOfDirectory(name);
    return std::string_view(name).substr(start).starts_with(platform::temporaryPrefix) &&
           platform::LookAt(DirectoryOf(name), true, status) == 0 && status.identity == directory_;
}

} // namespace sum
