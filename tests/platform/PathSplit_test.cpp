// SPDX-License-Identifier: MIT
#include "platform/PathSplit.h"

#include <gtest/gtest.h>
#include <string>

namespace {

using platform::PathParts;
using Splitter = void (*)(const wchar_t*, PathParts&);

struct Row {
    std::wstring path, drive, directory, base, extension;
};

std::wstring Joined(const std::wstring& a, const std::wstring& b, const std::wstring& c,
                    const std::wstring& d) {
    return a + L"|" + b + L"|" + c + L"|" + d;
}

void ExpectSplits(Splitter split, std::initializer_list<Row> rows) {
    for (const Row& row : rows) {
        PathParts parts;
        split(row.path.c_str(), parts);
        EXPECT_EQ(Joined(parts.drive, parts.directory, parts.base, parts.extension),
                  Joined(row.drive, row.directory, row.base, row.extension))
            << testing::PrintToString(row.path);
    }
}

// What splits alike by both rules.
const std::initializer_list<Row> commonRows = {
    {L"", L"", L"", L"", L""},
    {L"a.txt", L"", L"", L"a", L".txt"},
    {L"noext", L"", L"", L"noext", L""},
    {L".bashrc", L"", L"", L"", L".bashrc"},
    {L"a.b.c", L"", L"", L"a.b", L".c"},
    {L"foo.", L"", L"", L"foo", L"."},
    {L"foo..", L"", L"", L"foo.", L"."},
    {L".", L"", L"", L"", L"."},
    {L"..", L"", L"", L".", L"."},
    {L"*.exe", L"", L"", L"*", L".exe"},
    {L"a?.*", L"", L"", L"a?", L".*"},
    {L"/", L"", L"/", L"", L""},
    {L"/d/e/a.out", L"", L"/d/e/", L"a", L".out"},
    {L"d.d/.hid", L"", L"d.d/", L"", L".hid"},
    {L"d.d/e", L"", L"d.d/", L"e", L""},
    {L"d//e", L"", L"d//", L"e", L""},
    {L"d/e/", L"", L"d/e/", L"", L""},
    {L"x.tar.gz ", L"", L"", L"x.tar", L".gz "},
};

TEST(PathSplit, BothRulesAgreeWhereTheSlashIsTheOnlySeparator) {
    ExpectSplits(platform::SplitPathByPosixRules, commonRows);
    ExpectSplits(platform::SplitPathByWindowsRules, commonRows);
}

TEST(PathSplit, PosixRulesKnowNoDriveAndNoBackslash) {
    ExpectSplits(platform::SplitPathByPosixRules, {
                                                      {L"a:b.txt", L"", L"", L"a:b", L".txt"},
                                                      {L"C:/d/x", L"", L"C:/d/", L"x", L""},
                                                      {L"a\\b.c\\d", L"", L"", L"a\\b", L".c\\d"},
                                                  });
}

// Measured with the runtime's own function.
TEST(PathSplit, WindowsRulesKnowDrivesAndBothSeparators) {
    ExpectSplits(platform::SplitPathByWindowsRules,
                 {
                     {L"C:", L"C:", L"", L"", L""},
                     {L"C:file.txt", L"C:", L"", L"file", L".txt"},
                     {L"C:\\", L"C:", L"\\", L"", L""},
                     {L"\\", L"", L"\\", L"", L""},
                     {L"C:\\Dir\\a.txt", L"C:", L"\\Dir\\", L"a", L".txt"},
                     {L"C:/Dir/a.txt", L"C:", L"/Dir/", L"a", L".txt"},
                     {L"C:\\Dir\\Sub\\", L"C:", L"\\Dir\\Sub\\", L"", L""},
                     {L"Temp\\Sub", L"", L"Temp\\", L"Sub", L""},
                     {L"Temp/Sub\\x.y", L"", L"Temp/Sub\\", L"x", L".y"},
                     {L"..\\x", L"", L"..\\", L"x", L""},
                     {L"dir.d\\.hid", L"", L"dir.d\\", L"", L".hid"},
                     {L"D:\\a.b\\noext", L"D:", L"\\a.b\\", L"noext", L""},
                     {L"1:x", L"1:", L"", L"x", L""},
                     {L"CC:x.y", L"", L"", L"CC:x", L".y"},
                     {L":x.y", L"", L"", L":x", L".y"},
                     {L"a:b:c.d", L"a:", L"", L"b:c", L".d"},
                     {L"ab\\c:d.e", L"", L"ab\\", L"c:d", L".e"},
                     {L"\\\\srv\\share\\f.txt", L"", L"\\\\srv\\share\\", L"f", L".txt"},
                     {L"\\\\?\\C:\\d\\f.e", L"", L"\\\\?\\C:\\d\\", L"f", L".e"},
                     {L"My Files\\File 1.txt", L"", L"My Files\\", L"File 1", L".txt"},
                     {L"C:\\d\\..", L"C:", L"\\d\\", L".", L"."},
                 });
}

TEST(PathSplit, PartsOf259CharactersFit) {
    const std::wstring name(259, L'n');
    const std::wstring directory = std::wstring(258, L'd') + L"/";
    const std::wstring extension = L"." + std::wstring(258, L'e');
    for (const Splitter split : {platform::SplitPathByPosixRules, platform::SplitPathByWindowsRules})
        ExpectSplits(split, {{name, L"", L"", name, L""},
                             {directory + name + extension, L"", directory, name, extension}});
}

TEST(PathSplit, APartOf260CharactersEmptiesAllFour) {
    const std::wstring name(260, L'n');
    const std::wstring directory = std::wstring(259, L'd') + L"/";
    const std::wstring extension = L"." + std::wstring(259, L'e');
    for (const Splitter split : {platform::SplitPathByPosixRules, platform::SplitPathByWindowsRules})
        ExpectSplits(split, {{L"d/" + name + L".e", L"", L"", L"", L""},
                             {directory + L"n.e", L"", L"", L"", L""},
                             {L"d/n" + extension, L"", L"", L"", L""}});
}

} // namespace
