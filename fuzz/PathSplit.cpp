// SPDX-License-Identifier: MIT
// Path splitting by both rule sets: the parts are the path again, each is of its form, and none is too long.
#include "platform/PathSplit.h"
#include "fuzz/FuzzInput.h"
#include "platform/Text.h"

#include <cwchar>
#include <string>

namespace {

using platform::maxPath;
using platform::PathParts;

struct Rules {
    void (*split)(const wchar_t* path, PathParts& parts);
    const wchar_t* separators;
    bool hasDrives;
};

constexpr Rules rules[] = {{platform::SplitPathByPosixRules, L"/", false},
                           {platform::SplitPathByWindowsRules, L"/\\", true}};

bool Holds(const std::wstring& text, const wchar_t* characters) {
    return text.find_first_of(characters) != text.npos;
}

void CheckParts(const std::wstring& path, const Rules& rule, const PathParts& parts) {
    const std::wstring drive = parts.drive, directory = parts.directory, base = parts.base,
                       extension = parts.extension;
    const std::wstring whole = drive + directory + base + extension;
    if (whole.empty()) {
        fuzz::Require(path.empty() || path.size() >= maxPath, "only what is too long has no parts");
        return;
    }
    fuzz::Require(whole == path, "the parts are the path");
    fuzz::Require(drive.empty() || (rule.hasDrives && drive.size() == 2 && drive[1] == L':'),
                  "a drive is one character and a colon");
    fuzz::Require(!rule.hasDrives || !drive.empty() || path.size() < 2 || path[1] != L':', "a drive is seen");
    fuzz::Require(directory.empty() || Holds(directory.substr(directory.size() - 1), rule.separators),
                  "a directory ends in its separator");
    fuzz::Require(!Holds(base + extension, rule.separators), "no separator behind the directory");
    fuzz::Require(extension.empty() ? !Holds(base, L".") : extension.rfind(L'.') == 0,
                  "the extension begins at the last dot");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::wstring decoded = platform::DecodeName({reinterpret_cast<const char*>(data), size});
    const std::wstring path = decoded.c_str(); // up to a zero
    for (const Rules& rule : rules) {
        PathParts parts;
        std::wmemset(reinterpret_cast<wchar_t*>(&parts), L'#', sizeof parts / sizeof(wchar_t));
        rule.split(path.c_str(), parts);
        CheckParts(path, rule, parts);
    }
    return 0;
}
