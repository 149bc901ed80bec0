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

bool CanBeOwn(const Name& name) {
    platform::EntryStatus status;
    return platform::LookAt(name, false, status) != 0 || status.kind == platform::EntryKind::regular;
}

Name StateOf(const Name& list) {
    return list + ".state";
}

Name OlderOf(const Name& list) {
    return list + "~";
}

OwnFiles::OwnFiles(const Name& list) {
    platform::EntryStatus status;
    Add(list);
    for (const Name& name : {StateOf(list), OlderOf(list), JournalOf(list)})
        AddPlain(name);
    if (platform::LookAt(DirectoryOf(list), true, status) == 0)
        directory_ = status.identity;
}

void OwnFiles::Add(const Name& name) {
    platform::EntryStatus status;
    if (name != "-" && platform::LookAt(name, true, status) == 0 &&
        status.kind == platform::EntryKind::regular)
        Add(status.identity);
}

void OwnFiles::AddPlain(const Name& name) {
    platform::EntryStatus status;
    if (platform::LookAt(name, false, status) == 0 && status.kind == platform::EntryKind::regular)
        Add(status.identity);
}

bool OwnFiles::Has(const platform::FileIdentity& identity) const {
    return std::ranges::find(identities_, identity) != identities_.end();
}

bool OwnFiles::IsTemporary(const Name& name) const {
    platform::EntryStatus status;
    const std::size_t start = platform::LengthOfDirectory(name);
    return platform::IsTemporaryName(std::string_view(name).substr(start)) &&
           platform::LookAt(DirectoryOf(name), true, status) == 0 && status.identity == directory_;
}

} // namespace sum
