// SPDX-License-Identifier: MIT
#include "platform/Startup.h"

#include "platform/File.h"
#include "tests/helpers/ScratchFiles.h"
#include "tests/platform/EndChild_Posix.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <utility>

namespace {

bool IsNullDevice(int descriptor) {
    struct stat status;
    struct stat null;
    return fstat(descriptor, &status) == 0 && stat("/dev/null", &null) == 0 && status.st_rdev == null.st_rdev;
}

// Prepares a process in which the descriptors named are closed; true when just these lead to the null device.
bool OnlyTheClosedAreReplaced(const std::string& closed) {
    const int other = open("/dev/zero", O_RDWR);
    for (int descriptor = 0; descriptor <= 2; ++descriptor)
        dup2(other, descriptor);
    close(other);
    for (const char digit : closed)
        close(digit - '0');
    platform::PrepareStandardStreams();
    for (int descriptor = 0; descriptor <= 2; ++descriptor)
        if (IsNullDevice(descriptor) != (closed.find(static_cast<char>('0' + descriptor)) != closed.npos))
            return false;
    return true;
}

TEST(StartupPosix, ClosedStandardDescriptorsAreOpenedOnTheNullDevice) {
    for (const char* const closed : {"", "0", "1", "2", "01", "02", "12", "012"})
        EXPECT_EXIT(EndChild(OnlyTheClosedAreReplaced(closed) ? 7 : 1), testing::ExitedWithCode(7), "")
            << closed;
}

bool FirstFileIsNoStandardStream(const std::wstring& path) {
    for (const int descriptor : {0, 1, 2})
        close(descriptor);
    platform::PrepareStandardStreams();
    return platform::OpenForReading(path.c_str()).native > 2;
}

TEST(StartupPosix, NoFileOpenedLaterBecomesAStandardStream) {
    const helpers::ScratchFiles scratch;
    const std::wstring path = scratch.Write("a", "x");
    EXPECT_EXIT(EndChild(FirstFileIsNoStandardStream(path) ? 7 : 1), testing::ExitedWithCode(7), "");
}

bool SurvivesAClosedPipe() {
    platform::PrepareStandardStreams();
    int ends[2];
    return pipe(ends) == 0 && close(ends[0]) == 0 && write(ends[1], "x", 1) == -1 && errno == EPIPE;
}

TEST(StartupPosix, WritingToAClosedPipeFailsInsteadOfEndingTheProcess) {
    EXPECT_EXIT(EndChild(SurvivesAClosedPipe() ? 7 : 1), testing::ExitedWithCode(7), "");
}

TEST(StartupPosix, ArgumentsAreWidened) {
    const char* const arguments[] = {"fyrn", "", "\xC3\xA4\xFF", "a long argument that is stored elsewhere"};
    platform::WideArguments wide = platform::WidenArguments(4, arguments);
    ASSERT_EQ(wide.pointers.size(), 5u);
    EXPECT_STREQ(wide.pointers[0], L"fyrn");
    EXPECT_STREQ(wide.pointers[1], L"");
    EXPECT_STREQ(wide.pointers[2], L"\x00E4\xDCFF");
    EXPECT_STREQ(wide.pointers[3], L"a long argument that is stored elsewhere");
    EXPECT_EQ(wide.pointers[4], nullptr);
}

TEST(StartupPosix, WidenedArgumentsMayBeMovedAndChanged) {
    const char* const arguments[] = {"fyrn", "-hash=MD5"};
    platform::WideArguments wide = platform::WidenArguments(2, arguments);
    const platform::WideArguments moved = std::move(wide);
    moved.pointers[1][0] = L'\0';
    EXPECT_STREQ(moved.pointers[0], L"fyrn");
    EXPECT_STREQ(moved.pointers[1], L"");
}

TEST(StartupPosix, NoArgumentsAtAllAreWidenedToo) {
    const platform::WideArguments wide = platform::WidenArguments(0, nullptr);
    ASSERT_EQ(wide.pointers.size(), 1u);
    EXPECT_EQ(wide.pointers[0], nullptr);
}

} // namespace
