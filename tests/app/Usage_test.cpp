// SPDX-License-Identifier: MIT
#include "app/Usage.h"

#include "support/BuildStamp.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

namespace {

std::string Printed(const wchar_t* invocation) {
    testing::internal::CaptureStdout();
    PrintUsage(invocation);
    return testing::internal::GetCapturedStdout();
}

// The text on file, which was written independently of the program's, with the name filled in.
std::string TextOnFile(const std::string& invocation) {
    std::ifstream file(FYRN_SOURCE_DIR "/tests/data/usage.txt");
    std::string text{std::istreambuf_iterator<char>(file), {}};
    const std::size_t place = text.find("%s");
    return text.replace(place, 2, invocation);
}

std::string Narrow(const wchar_t* text) {
    const std::wstring wide = text;
    return std::string(wide.begin(), wide.end());
}

TEST(Usage, IsTheTextOnFileAndTheBanner) {
    const std::string banner =
        "\nfyrn " + Narrow(build_stamp::version) + " (" + Narrow(build_stamp::date) + ")\n";
    EXPECT_EQ(Printed(L"some/name"), TextOnFile("some/name") + banner);
}

TEST(Usage, TakesAnyInvocationName) {
    EXPECT_NE(Printed(L"%s%d%n").find("Usage: %s%d%n <-hash>"), std::string::npos);
    EXPECT_NE(Printed(L"").find("Usage:  <-hash>"), std::string::npos);
    EXPECT_NE(Printed(std::wstring(100'000, L'x').c_str()).find(std::string(100'000, 'x')),
              std::string::npos);
}

} // namespace
