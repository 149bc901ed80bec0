// SPDX-License-Identifier: MIT
#include "sum/ListedName.h"

#include "platform/Tree.h"
#include "sum/ListLine.h"

#include <filesystem>
#include <string_view>
#include <utility>

namespace sum {

namespace {

constexpr bool onWindows = std::filesystem::path::preferred_separator != '/';
constexpr std::string_view separators = onWindows ? "/\\" : "/";

bool IsThere(const Name& name) {
    platform::EntryStatus status;
    return platform::LookAt(name, true, status) == 0;
}

std::size_t StartOfLastComponent(std::string_view name) {
    return name.find_last_of(separators) + 1; // npos + 1 is 0
}

bool IsAbsolute(std::string_view name) {
    const bool hasDrive = onWindows && name.size() > 1 && name[1] == ':';
    return hasDrive || name.find_first_of(separators) == 0;
}

Name Located(const Name& listed, const Options& options) {
    if (listed == "-")
        return listed;
    Name name = options.baseName ? listed.substr(StartOfLastComponent(listed)) : listed;
    if (options.directory && !IsAbsolute(name))
        name.insert(0, *options.directory + "/");
    return name == "-" ? "./-" : name;
}

} // namespace

Name FileOf(Name& listed, const Options& options) {
    Name name = Located(listed, options);
    if (listed.empty() || !IsBlank(listed[0]) || IsThere(name))
        return name;
    Name unaligned(WithoutLeadingBlanks(listed));
    Name found = Located(unaligned, options);
    if (!IsThere(found))
        return name;
    listed = std::move(unaligned);
    return found;
}

Name SubjectOf(const Name& list, const Options& options) {
    const std::size_t start = StartOfLastComponent(list);
    const std::size_t dot = list.rfind('.');
    if (dot == Name::npos || dot <= start)
        return {};
    return options.directory ? list.substr(start, dot - start) : list.substr(0, dot);
}

bool IsBagItManifest(const Name& list) {
    const std::size_t start = StartOfLastComponent(list);
    const std::string_view name = std::string_view(list).substr(start);
    return (name.starts_with("manifest-") || name.starts_with("tagmanifest-")) && name.ends_with(".txt") &&
           IsThere(list.substr(0, start) + "bagit.txt");
}

} // namespace sum
