// SPDX-License-Identifier: MIT
#include "crypto/EngineFrame.h"

#include "tests/helpers/FailingNew.h"
#include "tests/helpers/ScratchFiles.h"

#include <gtest/gtest.h>

#include <new>
#include <string>
#include <vector>

namespace {

class EngineFrame : public testing::Test {
  protected:
    // Runs the frame with a buffer of four bytes and notes what it calls.
    bool Hash(const wchar_t* path) {
        calls_.clear();
        return engine_frame::HashFile(
            path, &output_, 4, salt_, [this] { calls_.push_back("<reset>"); },
            [this](const unsigned char* bytes, std::size_t count) {
                calls_.emplace_back(reinterpret_cast<const char*>(bytes), count);
            },
            [this] { calls_.push_back("<finish>"); });
    }
    bool HashContent(std::string_view content) { return Hash(files_.Write("file", content).c_str()); }
    void SetSalt(EnumSaltType placement) {
        ASSERT_EQ(salt_.SetSalt_FromFile(files_.Write("salt", std::string_view("NaCl.")).c_str(), placement),
                  5u);
    }

    using Calls = std::vector<std::string>;
    helpers::ScratchFiles files_;
    CCrypto_Salt salt_;
    Calls calls_;
    int output_ = 0;
};

TEST_F(EngineFrame, FeedsPiecesOfTheBufferSizeOfWhichTheLastIsShorter) {
    EXPECT_TRUE(HashContent("abcdefghij"));
    EXPECT_EQ(calls_, (Calls{"<reset>", "abcd", "efgh", "ij", "<finish>"}));
    EXPECT_TRUE(HashContent("abcdefgh"));
    EXPECT_EQ(calls_, (Calls{"<reset>", "abcd", "efgh", "<finish>"}));
}

TEST_F(EngineFrame, EmptyFileIsTheEmptyMessage) {
    EXPECT_TRUE(HashContent(""));
    EXPECT_EQ(calls_, (Calls{"<reset>", "<finish>"}));
}

TEST_F(EngineFrame, FeedsTheSaltInOnePieceWhereItsPlacementSays) {
    SetSalt(EnumSaltType::Before);
    HashContent("abcde");
    EXPECT_EQ(calls_, (Calls{"<reset>", "NaCl.", "abcd", "e", "<finish>"}));
    SetSalt(EnumSaltType::After);
    HashContent("abcde");
    EXPECT_EQ(calls_, (Calls{"<reset>", "abcd", "e", "NaCl.", "<finish>"}));
    SetSalt(EnumSaltType::Both);
    HashContent("abcde");
    EXPECT_EQ(calls_, (Calls{"<reset>", "NaCl.", "abcd", "e", "NaCl.", "<finish>"}));
    SetSalt(EnumSaltType::None);
    HashContent("abcde");
    EXPECT_EQ(calls_, (Calls{"<reset>", "abcd", "e", "<finish>"}));
}

TEST_F(EngineFrame, EmptyFileWithASaltIsTheSalt) {
    SetSalt(EnumSaltType::Both);
    EXPECT_TRUE(HashContent(""));
    EXPECT_EQ(calls_, (Calls{"<reset>", "NaCl.", "NaCl.", "<finish>"}));
}

TEST_F(EngineFrame, SaltOfNoBytesIsNeverFed) {
    salt_.SetSalt_FromFile(files_.Write("salt", std::string_view()).c_str(), EnumSaltType::Both);
    EXPECT_TRUE(HashContent("abc"));
    EXPECT_EQ(calls_, (Calls{"<reset>", "abc", "<finish>"}));
}

TEST_F(EngineFrame, NullPointersAndMissingFilesFailBeforeAnythingIsCalled) {
    EXPECT_FALSE(Hash(nullptr));
    EXPECT_FALSE(Hash(files_.Path("missing").c_str()));
    EXPECT_FALSE(Hash(files_.Directory().wstring().c_str()));
    const std::wstring path = files_.Write("file", std::string_view("abc"));
    EXPECT_FALSE(engine_frame::HashFile(
        path.c_str(), nullptr, 4, salt_, [] { FAIL(); }, [](const unsigned char*, std::size_t) { FAIL(); },
        [] { FAIL(); }));
    EXPECT_EQ(calls_, Calls{});
}

TEST_F(EngineFrame, CleansesAsMuchOfTheBufferAsWasEverFilled) {
    const std::pair<std::string_view, std::size_t> cases[] = {
        {"", 0}, {"abc", 3}, {"abcd", 4}, {"abcdef", 4}, {"abcdefgh", 4}};
    for (const auto& [content, filled] : cases) {
        platform::InputFile file = platform::OpenForReading(files_.Write("file", content).c_str());
        std::vector<std::size_t> cleansed;
        engine_frame::FeedFile(
            file, engine_frame::MakeReadBuffer(4), [](const unsigned char*, std::size_t) {},
            [&](const unsigned char*, std::size_t count) { cleansed.push_back(count); });
        platform::Close(file);
        EXPECT_EQ(cleansed, std::vector{filled}) << content;
    }
}

// An engine that finds no memory has been reset, but has been fed nothing.
TEST_F(EngineFrame, TheBufferIsAllocatedBeforeTheSaltIsFed) {
    SetSalt(EnumSaltType::Before);
    const std::wstring path = files_.Write("file", std::string_view("abc"));
    {
        const auto noBuffer = helpers::FailingNew::OfSize(4);
        EXPECT_THROW(Hash(path.c_str()), std::bad_alloc);
    }
    EXPECT_EQ(calls_, Calls{"<reset>"});
}

// The digest of such a file is not known, so the file must not be renamed by it.
TEST_F(EngineFrame, FileWhoseReadingWasInterruptedStaysOpen) {
    const std::wstring path = files_.Write("file", std::string_view("abcdef"));
    struct Interruption {};
    EXPECT_THROW(engine_frame::HashFile(
                     path.c_str(), &output_, 8, salt_, [] {}, [](const unsigned char*, std::size_t) {},
                     [] { throw Interruption(); }),
                 Interruption);
    EXPECT_FALSE(platform::RemoveFile(path.c_str()));
}

} // namespace
