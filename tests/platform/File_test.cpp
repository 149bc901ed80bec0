// SPDX-License-Identifier: MIT
#include "platform/File.h"

#include "tests/helpers/Bytes.h"
#include "tests/helpers/ScratchFiles.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sstream>

namespace {

using platform::InputFile;

std::string Content(const std::filesystem::path& path) {
    std::ifstream file(path); // as text: line ends are the system's
    return {std::istreambuf_iterator<char>(file), {}};
}

class File : public testing::Test {
  protected:
    helpers::ScratchFiles scratch;
};

TEST_F(File, WholeContentIsReadInPiecesOfAnySize) {
    const helpers::Bytes bytes = helpers::PseudoRandomBytes(100000, 1);
    const std::wstring path = scratch.Write("a.bin", bytes);
    for (const std::size_t capacity : {1u, 7u, 4096u, 99999u, 100000u, 100001u, 1048576u}) {
        InputFile file = platform::OpenForReading(path.c_str());
        ASSERT_TRUE(file);
        helpers::Bytes piece(capacity);
        helpers::Bytes whole;
        while (const std::size_t count = platform::ReadFully(file, piece.data(), capacity)) {
            ASSERT_TRUE(count == capacity || whole.size() + count == bytes.size());
            whole.insert(whole.end(), piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(count));
        }
        EXPECT_EQ(whole, bytes) << capacity;
        platform::Close(file);
    }
}

TEST_F(File, ControlCharactersAndLineEndsAreNotTranslated) {
    const std::string text("a\r\nb\nc\x1A"
                           "d\0e",
                           9);
    const std::wstring path = scratch.Write("a.bin", text);
    InputFile file = platform::OpenForReading(path.c_str());
    char buffer[16];
    const std::size_t count =
        platform::ReadFully(file, reinterpret_cast<unsigned char*>(buffer), sizeof buffer);
    EXPECT_EQ(std::string(buffer, count), text);
    platform::Close(file);
}

TEST_F(File, AnEmptyFileIsOpenedAndHoldsNothing) {
    const std::wstring path = scratch.Write("empty", "");
    InputFile file = platform::OpenForReading(path.c_str());
    ASSERT_TRUE(file);
    unsigned char byte;
    EXPECT_EQ(platform::SizeOf(file), 0);
    EXPECT_EQ(platform::ReadFully(file, &byte, 1), 0u);
    platform::Close(file);
}

TEST_F(File, ReadingNothingLeavesTheFileWhereItIs) {
    const std::wstring path = scratch.Write("a", "x");
    InputFile file = platform::OpenForReading(path.c_str());
    unsigned char byte = 0;
    EXPECT_EQ(platform::ReadFully(file, &byte, 0), 0u);
    EXPECT_EQ(platform::ReadFully(file, &byte, 1), 1u);
    EXPECT_EQ(byte, 'x');
    platform::Close(file);
}

TEST_F(File, NothingIsReadAfterTheEndEvenIfTheFileGrows) {
    const std::wstring path = scratch.Write("a", "xy");
    InputFile file = platform::OpenForReading(path.c_str());
    unsigned char buffer[8];
    EXPECT_EQ(platform::ReadFully(file, buffer, sizeof buffer), 2u);
    ASSERT_TRUE(platform::AppendText(path.c_str(), L"more"));
    EXPECT_EQ(platform::ReadFully(file, buffer, sizeof buffer), 0u);
    platform::Close(file);
}

TEST_F(File, WhatWasAddedSinceTheFileWasOpenedIsRead) {
    const std::wstring path = scratch.Write("a", "xy");
    InputFile file = platform::OpenForReading(path.c_str());
    ASSERT_TRUE(platform::AppendText(path.c_str(), L"more"));
    unsigned char buffer[8];
    EXPECT_EQ(platform::ReadFully(file, buffer, sizeof buffer), 6u);
    platform::Close(file);
}

TEST_F(File, AFullBufferAtTheSizeAtOpeningIsNotTakenForTheEnd) {
    const std::wstring path = scratch.Write("a", "xy");
    InputFile file = platform::OpenForReading(path.c_str());
    unsigned char buffer[2];
    EXPECT_EQ(platform::ReadFully(file, buffer, sizeof buffer), 2u);
    ASSERT_TRUE(platform::AppendText(path.c_str(), L"z"));
    EXPECT_EQ(platform::ReadFully(file, buffer, sizeof buffer), 1u);
    EXPECT_EQ(buffer[0], 'z');
    platform::Close(file);
}

TEST_F(File, TellingTheSizeStartsReadingOver) {
    const std::wstring path = scratch.Write("a", "xyz");
    InputFile file = platform::OpenForReading(path.c_str());
    unsigned char buffer[8];
    EXPECT_EQ(platform::ReadFully(file, buffer, sizeof buffer), 3u);
    EXPECT_EQ(platform::SizeOf(file), 3);
    EXPECT_EQ(platform::ReadFully(file, buffer, sizeof buffer), 3u);
    EXPECT_EQ(buffer[0], 'x');
    platform::Close(file);
}

TEST_F(File, MoreThanFourGigabytesAreTold) {
    const std::wstring path = scratch.Write("big", "");
    const std::int64_t size = 0x100000001;
    std::filesystem::resize_file(path, static_cast<std::uintmax_t>(size)); // without content on the disk
    InputFile file = platform::OpenForReading(path.c_str());
    EXPECT_EQ(platform::SizeOf(file), size);
    platform::Close(file);
}

TEST_F(File, AClosedHandleIsFalse) {
    const std::wstring path = scratch.Write("a", "x");
    InputFile file = platform::OpenForReading(path.c_str());
    EXPECT_TRUE(platform::IsRegular(file));
    platform::Close(file);
    EXPECT_FALSE(file);
    EXPECT_FALSE(InputFile());
}

TEST_F(File, WhatIsNoFileCannotBeOpened) {
    std::filesystem::create_directory(scratch.Directory() / "d");
    EXPECT_FALSE(platform::OpenForReading(scratch.Path("missing").c_str()));
    EXPECT_FALSE(platform::OpenForReading(scratch.Path("d").c_str()));
    EXPECT_FALSE(platform::OpenForReading(scratch.Path("missing/a").c_str()));
    EXPECT_FALSE(platform::OpenForReading(L""));
}

TEST_F(File, TextIsAppendedAndTheFileCreated) {
    const std::wstring path = scratch.Path("log");
    EXPECT_TRUE(platform::AppendText(path.c_str(), L"one\n"));
    EXPECT_TRUE(platform::AppendText(path.c_str(), L"two\n"));
    EXPECT_EQ(Content(path), "one\ntwo\n");
}

TEST_F(File, ALongTextIsAppendedWhole) {
    const std::wstring path = scratch.Path("log");
    std::wstring text;
    std::string expected;
    for (int i = 0; i < 5000; ++i) {
        text += static_cast<wchar_t>(L'a' + i % 26);
        expected += static_cast<char>('a' + i % 26);
    }
    EXPECT_TRUE(platform::AppendText(path.c_str(), text.c_str()));
    EXPECT_EQ(Content(path), expected);
}

TEST_F(File, AppendingWhereNoFileCanBeFails) {
    EXPECT_FALSE(platform::AppendText(scratch.Path("missing/log").c_str(), L"x"));
    EXPECT_FALSE(platform::AppendText(scratch.Directory().wstring().c_str(), L"x"));
}

} // namespace
