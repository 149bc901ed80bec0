// SPDX-License-Identifier: MIT
// The rules as written here against the runtime's own function.
#include "platform/PathSplit.h"

#include <gtest/gtest.h>
#include <random>
#include <string>

namespace {

using platform::PathParts;

std::wstring Joined(const PathParts& parts) {
    return std::wstring(parts.drive) + L"|" + parts.directory + L"|" + parts.base + L"|" + parts.extension;
}

TEST(PathSplitWindows, TheRuntimeSplitsByTheRules) {
    constexpr unsigned seed = 20260802;
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    for (int round = 0; round < 20000; ++round) {
        std::wstring path(random() % 10, L'\0');
        for (wchar_t& character : path)
            character = L"ab..:/\\ *"[random() % 9];
        PathParts expected;
        PathParts actual;
        platform::SplitPathByWindowsRules(path.c_str(), expected);
        platform::SplitPath(path.c_str(), actual);
        ASSERT_EQ(Joined(actual), Joined(expected)) << testing::PrintToString(path);
    }
}

TEST(PathSplitWindows, TheRuntimeEmptiesAllPartsWhereOneDoesNotFit) {
    for (const std::size_t length : {259u, 260u}) {
        const std::wstring path = L"C:\\" + std::wstring(length, L'n') + L".e";
        PathParts expected;
        PathParts actual;
        platform::SplitPathByWindowsRules(path.c_str(), expected);
        platform::SplitPath(path.c_str(), actual);
        EXPECT_EQ(Joined(actual), Joined(expected)) << length;
    }
}

} // namespace
