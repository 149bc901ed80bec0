// SPDX-License-Identifier: MIT
#include "platform/File.h"

#include "platform/Text.h"
#include "tests/helpers/FailingNew.h"
#include "tests/helpers/OpenDescriptors_Posix.h"
#include "tests/helpers/ScratchFiles.h"
#include "tests/platform/EndChild_Posix.h"

#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <new>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

namespace {

using platform::InputFile;

class FilePosix : public testing::Test {
  protected:
    ~FilePosix() override { platform::AllowSpecialFiles(true); }

    std::string Bytes(const char* name) const { return (scratch.Directory() / name).string(); }

    // The path of a new pipe. It stays to the end of the run: a later pipe with its number would count as read.
    static std::string MakePipe() {
        static helpers::ScratchFiles pipes;
        static int count = 0;
        const std::string path = (pipes.Directory() / std::to_string(++count)).string();
        EXPECT_EQ(mkfifo(path.c_str(), 0600), 0);
        return path;
    }

    static InputFile Open(const std::string& path) {
        return platform::OpenForReading(platform::DecodeName(path).c_str());
    }

    std::string ReadAll(InputFile& file) const {
        unsigned char buffer[100];
        return std::string(reinterpret_cast<char*>(buffer), platform::ReadFully(file, buffer, sizeof buffer));
    }

    helpers::ScratchFiles scratch;
};

TEST_F(FilePosix, AFileThatShrankSinceItWasOpenedEndsWhereItNowDoes) {
    const std::string path = Bytes("a");
    std::ofstream(path) << "content";
    InputFile file = Open(path);
    ASSERT_EQ(truncate(path.c_str(), 4), 0);
    EXPECT_EQ(ReadAll(file), "cont");
    platform::Close(file);
}

TEST_F(FilePosix, AFileOfTheSystemThatTellsNoSizeIsReadToItsEnd) {
    InputFile file = Open("/proc/self/cmdline");
    ASSERT_TRUE(file);
    EXPECT_EQ(platform::SizeOf(file), 0);
    EXPECT_NE(ReadAll(file), "");
    platform::Close(file);
}

// Two texts that one read does not find together.
void WriteWithAPause(const std::string& path, const char* first, const char* second) {
    std::ofstream pipe(path);
    pipe << first << std::flush;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    pipe << second;
}

TEST_F(FilePosix, APipeIsReadUntilItsWriterIsDone) {
    const std::string path = MakePipe();
    std::thread writer(WriteWithAPause, path, "one", "two");
    InputFile file = Open(path);
    ASSERT_TRUE(file);
    EXPECT_FALSE(platform::IsRegular(file));
    EXPECT_EQ(platform::SizeOf(file), 0);
    EXPECT_EQ(ReadAll(file), "onetwo");
    platform::Close(file);
    writer.join();
}

TEST_F(FilePosix, NothingIsReadBehindTheBufferAfterAShortRead) {
    const std::string path = MakePipe();
    std::thread writer(WriteWithAPause, path, "one", "twothree");
    InputFile file = Open(path);
    unsigned char buffer[] = "####################";
    EXPECT_EQ(platform::ReadFully(file, buffer, 5), 5u);
    EXPECT_STREQ(reinterpret_cast<char*>(buffer), "onetw###############");
    EXPECT_EQ(ReadAll(file), "othree");
    platform::Close(file);
    writer.join();
}

TEST_F(FilePosix, APipeIsOpenedOnceInARunUnderWhateverName) {
    const std::string path = MakePipe();
    ASSERT_EQ(symlink(path.c_str(), Bytes("link").c_str()), 0);
    const int bothEnds = open(path.c_str(), O_RDWR | O_NONBLOCK); // lets opening go on at once
    InputFile file = Open(path);
    EXPECT_TRUE(file);
    platform::Close(file);
    EXPECT_FALSE(Open(path));
    EXPECT_FALSE(Open(Bytes("link")));
    close(bothEnds);
}

TEST_F(FilePosix, TwoPipesAreTwoFiles) {
    for (int i = 0; i < 2; ++i) {
        const std::string path = MakePipe();
        const int bothEnds = open(path.c_str(), O_RDWR | O_NONBLOCK);
        InputFile file = Open(path);
        EXPECT_TRUE(file) << i;
        platform::Close(file);
        close(bothEnds);
    }
}

TEST_F(FilePosix, NamesAreUtf8WhateverTheLocaleAndOtherBytesAreKept) {
    const std::string path = Bytes("\xC3\xA4\xE2\x82\xAC\xFF");
    std::ofstream(path) << "x";
    InputFile file = platform::OpenForReading((scratch.Path("") + L"\x00E4\x20AC\xDCFF").c_str());
    EXPECT_TRUE(file);
    platform::Close(file);
}

TEST_F(FilePosix, ADeviceIsReadAsOftenAsAsked) {
    for (int i = 0; i < 2; ++i) {
        InputFile file = platform::OpenForReading(L"/dev/null");
        ASSERT_TRUE(file);
        EXPECT_FALSE(platform::IsRegular(file));
        EXPECT_EQ(ReadAll(file), "");
        platform::Close(file);
    }
}

TEST_F(FilePosix, ForbiddenPipesAndDevicesAreRefusedWithoutWaiting) {
    const std::string path = MakePipe();
    platform::AllowSpecialFiles(false);
    EXPECT_FALSE(Open(path)); // would wait for a writer for ever
    EXPECT_FALSE(platform::OpenForReading(L"/dev/null"));
    InputFile file = platform::OpenForReading(scratch.Write("a", "x").c_str());
    EXPECT_TRUE(file);
    platform::Close(file);
}

TEST_F(FilePosix, WhatIsRefusedLeavesNoDescriptorOpen) {
    const std::string pipe = MakePipe();
    const std::size_t before = OpenDescriptors();
    for (const bool allow : {true, false}) {
        platform::AllowSpecialFiles(allow);
        EXPECT_FALSE(Open(scratch.Directory().string()));
        EXPECT_FALSE(Open(Bytes("missing")));
    }
    EXPECT_FALSE(Open(pipe)); // forbidden now
    EXPECT_FALSE(Open("/dev/null"));
    EXPECT_EQ(OpenDescriptors(), before);
}

TEST_F(FilePosix, ASocketIsRefusedWhetherSpecialFilesAreAllowedOrNot) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    Bytes("socket").copy(address.sun_path, sizeof address.sun_path - 1);
    const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    for (const bool allow : {true, false}) {
        platform::AllowSpecialFiles(allow);
        EXPECT_FALSE(platform::OpenForReading(scratch.Path("socket").c_str()));
    }
    close(listener);
}

TEST_F(FilePosix, ALinkIsOpenedAsWhatItLeadsTo) {
    scratch.Write("a", "x");
    ASSERT_EQ(symlink("a", Bytes("link").c_str()), 0);
    ASSERT_EQ(symlink("missing", Bytes("dangling").c_str()), 0);
    ASSERT_EQ(symlink(".", Bytes("directory").c_str()), 0);
    InputFile file = platform::OpenForReading(scratch.Path("link").c_str());
    EXPECT_TRUE(file);
    platform::Close(file);
    EXPECT_FALSE(platform::OpenForReading(scratch.Path("dangling").c_str()));
    EXPECT_FALSE(platform::OpenForReading(scratch.Path("directory").c_str()));
}

TEST_F(FilePosix, DescriptorsAreClosedAtAnExec) {
    InputFile file = platform::OpenForReading(scratch.Write("a", "x").c_str());
    EXPECT_EQ(fcntl(static_cast<int>(file.native), F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
    platform::Close(file);
}

TEST_F(FilePosix, AReadErrorEndsTheFileForGood) {
    InputFile file = platform::OpenForReading(scratch.Write("a", "x").c_str());
    const int kept = dup(static_cast<int>(file.native));
    const int directory = open("/", O_RDONLY);
    dup2(directory, static_cast<int>(file.native)); // reading a directory fails
    EXPECT_EQ(ReadAll(file), "");
    dup2(kept, static_cast<int>(file.native));
    EXPECT_EQ(ReadAll(file), "");
    platform::Close(file);
    close(directory);
    close(kept);
}

TEST_F(FilePosix, ASignalInterruptsNeitherOpeningNorReading) {
    struct sigaction action = {};
    action.sa_handler = [](int) {}; // without SA_RESTART
    struct sigaction before;
    sigaction(SIGUSR1, &action, &before);
    const std::string path = MakePipe();
    const pthread_t reader = pthread_self();
    std::thread writer([&] {
        const auto interrupt = [&] {
            std::this_thread::sleep_for(std::chrono::milliseconds(30));
            pthread_kill(reader, SIGUSR1);
            std::this_thread::sleep_for(std::chrono::milliseconds(30));
        };
        interrupt();
        std::ofstream pipe(path);
        interrupt();
        pipe << "x";
    });
    InputFile file = Open(path);
    EXPECT_TRUE(file);
    EXPECT_EQ(ReadAll(file), "x");
    platform::Close(file);
    writer.join();
    sigaction(SIGUSR1, &before, nullptr);
}

// A file server holds such leases; the kernel asks for them back when somebody else opens the file.
TEST_F(FilePosix, AFileUnderLeaseIsOpenedWhenTheLeaseIsGivenUp) {
    const std::wstring path = scratch.Write("a", "x");
    static int leased;
    leased = open(Bytes("a").c_str(), O_RDWR);
    struct sigaction action = {};
    action.sa_handler = [](int) { fcntl(leased, F_SETLEASE, F_UNLCK); };
    action.sa_flags = SA_RESTART;
    struct sigaction before;
    sigaction(SIGIO, &action, &before);
    if (fcntl(leased, F_SETLEASE, F_WRLCK) != 0)
        GTEST_SKIP() << "this file system grants no leases";
    InputFile file = platform::OpenForReading(path.c_str());
    EXPECT_EQ(ReadAll(file), "x");
    platform::Close(file);
    close(leased);
    sigaction(SIGIO, &before, nullptr);
}

TEST_F(FilePosix, AFileThatIsHeldOpenIsNeitherMovedNorRemoved) {
    const std::wstring path = scratch.Write("a", "x");
    ASSERT_EQ(link(Bytes("a").c_str(), Bytes("hard").c_str()), 0);
    ASSERT_EQ(symlink("a", Bytes("soft").c_str()), 0);
    InputFile file = platform::OpenForReading(path.c_str());
    for (const char* const name : {"a", "hard", "soft"}) {
        EXPECT_EQ(platform::MoveWithoutReplacing(scratch.Path(name).c_str(), scratch.Path("b").c_str()),
                  platform::MoveResult::stays);
        EXPECT_FALSE(platform::RemoveFile(scratch.Path(name).c_str()));
    }
    platform::Close(file);
    EXPECT_EQ(platform::MoveWithoutReplacing(path.c_str(), scratch.Path("b").c_str()),
              platform::MoveResult::moved);
    EXPECT_TRUE(platform::RemoveFile(scratch.Path("hard").c_str()));
}

TEST_F(FilePosix, OneOfTwoHandlesStillHoldsAFile) {
    const std::wstring path = scratch.Write("a", "x");
    InputFile first = platform::OpenForReading(path.c_str());
    InputFile second = platform::OpenForReading(path.c_str());
    platform::Close(first);
    EXPECT_FALSE(platform::RemoveFile(path.c_str()));
    platform::Close(second);
    EXPECT_TRUE(platform::RemoveFile(path.c_str()));
}

// Whether files stay that could not be opened for want of descriptors, and only those.
bool StaysWithoutDescriptors(const std::wstring& wanted, const std::wstring& missing,
                             const std::wstring& other) {
    rlimit before;
    getrlimit(RLIMIT_NOFILE, &before);
    const rlimit none = {0, before.rlim_max};
    setrlimit(RLIMIT_NOFILE, &none);
    const bool opened = platform::OpenForReading(wanted.c_str()) ||
                        platform::OpenForReading(wanted.c_str()) || platform::OpenForReading(missing.c_str());
    setrlimit(RLIMIT_NOFILE, &before);
    return !opened && !platform::RemoveFile(wanted.c_str()) && platform::RemoveFile(other.c_str());
}

// In a process of its own: the file counts as open to the end of the run, and so would a later one that gets its
// number.
TEST_F(FilePosix, AFileForWhichNoDescriptorIsLeftIsNeitherMovedNorRemoved) {
    const std::wstring wanted = scratch.Write("a", "x");
    const std::wstring other = scratch.Write("b", "x");
    EXPECT_EXIT(EndChild(StaysWithoutDescriptors(wanted, scratch.Path("missing"), other) ? 7 : 1),
                testing::ExitedWithCode(7), "");
}

TEST_F(FilePosix, TextIsAppendedAsUtf8WithPlainLineEnds) {
    const std::wstring path = scratch.Path("log");
    EXPECT_TRUE(platform::AppendText(path.c_str(), L"\x00E4\x1F600\xDCFF\n"));
    std::ifstream file(scratch.Directory() / "log", std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), "\xC3\xA4\xF0\x9F\x98\x80\xFF\n");
}

TEST_F(FilePosix, AppendingToAPipeThatNobodyReadsFailsWithoutWaiting) {
    EXPECT_FALSE(platform::AppendText(platform::DecodeName(MakePipe()).c_str(), L"x"));
}

TEST_F(FilePosix, AppendingToAFullDeviceFails) {
    EXPECT_FALSE(platform::AppendText(L"/dev/full", L"x"));
}

TEST_F(FilePosix, WhereMemoryRunsOutNoFileStaysOpen) {
    constexpr std::size_t most = 500;
    const std::wstring path = scratch.Write("a", "x");
    std::vector<InputFile> files;
    files.reserve(most);
    const std::size_t before = OpenDescriptors();
    try {
        const auto failing = helpers::FailingNew::Always();
        while (files.size() < most)
            files.push_back(platform::OpenForReading(path.c_str()));
    } catch (const std::bad_alloc&) {
    }
    EXPECT_LT(files.size(), most);
    EXPECT_EQ(OpenDescriptors(), before + files.size());
    for (InputFile& file : files)
        platform::Close(file);
}

TEST_F(FilePosix, WhereMemoryRunsOutNoPipeStaysOpen) {
    InputFile file =
        platform::OpenForReading(scratch.Write("a", "x").c_str()); // room for files is there from now on
    platform::Close(file);
    std::vector<std::wstring> paths;
    std::vector<int> writers;
    for (int i = 0; i < 3; ++i) {
        const std::string path = MakePipe();
        paths.push_back(platform::DecodeName(path));
        writers.push_back(open(path.c_str(), O_RDWR));
    }
    const std::size_t before = OpenDescriptors();
    std::size_t opened = 0;
    try {
        const auto failing = helpers::FailingNew::Always();
        for (; opened < paths.size(); ++opened) {
            InputFile pipe = platform::OpenForReading(paths[opened].c_str());
            platform::Close(pipe);
        }
    } catch (const std::bad_alloc&) {
    }
    EXPECT_LT(opened, paths.size());
    EXPECT_EQ(OpenDescriptors(), before);
    for (const int writer : writers)
        close(writer);
}

} // namespace
