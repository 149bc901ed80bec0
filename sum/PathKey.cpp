// SPDX-License-Identifier: MIT
#include "sum/PathKey.h"

#include <filesystem>

namespace sum {

namespace {

constexpr bool onWindows = std::filesystem::path::preferred_separator != '/';

bool IsSeparator(char c) {
    return c == '/' || (onWindows && c == '\\');
}

std::string_view WithoutLeadingDots(std::string_view name) {
    while (name.starts_with('.') && (name.size() == 1 || IsSeparator(name[1]))) {
        name.remove_prefix(1);
        while (!name.empty() && IsSeparator(name[0]))
            name.remove_prefix(1);
    }
    return name;
}

// Whether a path that does not begin with "./" is a key already.
bool IsKey(std::string_view name) {
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (onWindows && name[i] == '\\')
            return false;
        if (name[i] != '/')
            continue;
        if (i + 1 == name.size())
            return i == 0;
        const bool isDot = name[i + 1] == '.' && (i + 2 == name.size() || IsSeparator(name[i + 2]));
        if (IsSeparator(name[i + 1]) || isDot)
            return false;
    }
    return true;
}

bool IsAbsolute(std::string_view key) {
    return key.starts_with('/') || (onWindows && key.size() > 1 && key[1] == ':');
}

} // namespace

std::string_view KeyOf(std::string_view name, Name& buffer) {
    name = WithoutLeadingDots(name);
    if (IsKey(name))
        return name;
    buffer.clear();
    if (IsSeparator(name[0]))
        buffer += '/';
    if (onWindows && name.size() > 1 && IsSeparator(name[0]) && IsSeparator(name[1]))
        buffer += '/'; // a server's name follows
    bool isFirst = true;
    while (!name.empty()) {
        std::size_t length = 0;
        while (length < name.size() && !IsSeparator(name[length]))
            ++length;
        const std::string_view component = name.substr(0, length);
        name.remove_prefix(length == name.size() ? length : length + 1);
        if (component.empty() || component == ".")
            continue;
        if (!isFirst)
            buffer += '/';
        buffer += component;
        isFirst = false;
    }
    return buffer;
}

bool IsWithin(std::string_view path, std::string_view directory) {
    if (directory.empty())
        return !IsAbsolute(path) && path != ".." && !path.starts_with("../");
    if (!path.starts_with(directory))
        return false;
    return path.size() == directory.size() || directory.ends_with('/') || path[directory.size()] == '/';
}

std::string_view BaseOf(std::string_view key) {
    return key.substr(key.rfind('/') + 1); // npos + 1 is 0
}

} // namespace sum
