// SPDX-License-Identifier: MIT
#include "crypto/CCrypto_Salt.h"

#include "platform/File.h"
#include "tests/fakes/FaultRecorder.h"
#include "tests/helpers/FailingNew.h"
#include "tests/helpers/ScratchFiles.h"

#include <gtest/gtest.h>

namespace {

class Salt : public testing::Test {
  protected:
    unsigned int Load(std::string_view content, EnumSaltType placement = EnumSaltType::Both) {
        return salt_.SetSalt_FromFile(files_.Write("salt", content).c_str(), placement);
    }
    unsigned int LoadMissing() {
        return salt_.SetSalt_FromFile(files_.Path("missing").c_str(), EnumSaltType::Both);
    }
    std::string Held() const {
        return {reinterpret_cast<const char*>(salt_.SaltBytes()), salt_.SaltLength()};
    }
    void ExpectNoSalt() const {
        EXPECT_EQ(salt_.SaltLength(), 0u);
        EXPECT_EQ(salt_.SaltBytes(), nullptr);
        EXPECT_FALSE(salt_.FeedsBefore());
        EXPECT_FALSE(salt_.FeedsAfter());
    }

    helpers::ScratchFiles files_;
    CCrypto_Salt salt_;
};

TEST_F(Salt, IsEmptyAtFirst) {
    ExpectNoSalt();
}

TEST_F(Salt, IsTheFileByteForByte) {
    EXPECT_EQ(Load("00ff\r\n"), 6u);
    EXPECT_EQ(Held(), "00ff\r\n");
    const std::string binary("\0\x1a\xff\n\0", 5);
    EXPECT_EQ(Load(binary), 5u);
    EXPECT_EQ(Held(), binary);
}

TEST_F(Salt, IsFedAsThePlacementSays) {
    Load("s", EnumSaltType::Before);
    EXPECT_TRUE(salt_.FeedsBefore());
    EXPECT_FALSE(salt_.FeedsAfter());
    Load("s", EnumSaltType::After);
    EXPECT_FALSE(salt_.FeedsBefore());
    EXPECT_TRUE(salt_.FeedsAfter());
    Load("s", EnumSaltType::Both);
    EXPECT_TRUE(salt_.FeedsBefore());
    EXPECT_TRUE(salt_.FeedsAfter());
}

TEST_F(Salt, WithPlacementNoneOrUnknownIsLoadedButNeverFed) {
    for (const EnumSaltType placement : {EnumSaltType::None, EnumSaltType{4}, EnumSaltType{0xffffffff}}) {
        EXPECT_EQ(Load("abc", placement), 3u);
        EXPECT_EQ(Held(), "abc");
        EXPECT_FALSE(salt_.FeedsBefore());
        EXPECT_FALSE(salt_.FeedsAfter());
    }
}

TEST_F(Salt, FileOfTenMillionBytesIsTaken) {
    const std::string largest(10'000'000, 'x');
    EXPECT_EQ(Load(largest), 10'000'000u);
    EXPECT_EQ(Held(), largest);
}

TEST_F(Salt, LargerFileLeavesNoSalt) {
    EXPECT_EQ(Load(std::string(10'000'001, 'x')), 0u);
    ExpectNoSalt();
}

TEST_F(Salt, FileOfMoreThan4GigabytesLeavesNoSalt) {
    const std::wstring path = files_.Write("huge", std::string_view("x"));
    std::filesystem::resize_file(files_.Directory() / "huge", (std::uintmax_t{1} << 32) + 6);
    EXPECT_EQ(salt_.SetSalt_FromFile(path.c_str(), EnumSaltType::Both), 0u);
    ExpectNoSalt();
}

TEST_F(Salt, EmptyFileLeavesNoSalt) {
    EXPECT_EQ(Load(""), 0u);
    ExpectNoSalt();
}

TEST_F(Salt, SecondFileReplacesTheFirst) {
    Load("first");
    EXPECT_EQ(Load("2nd"), 3u);
    EXPECT_EQ(Held(), "2nd");
}

TEST_F(Salt, FileThatCannotBeUsedDropsTheSaltHeldBefore) {
    Load("first");
    EXPECT_EQ(LoadMissing(), 0u);
    ExpectNoSalt();
    Load("first");
    EXPECT_EQ(Load(""), 0u);
    ExpectNoSalt();
    Load("first");
    EXPECT_EQ(salt_.SetSalt_FromFile(nullptr, EnumSaltType::Both), 0u);
    ExpectNoSalt();
}

TEST_F(Salt, DirectoryLeavesNoSalt) {
    EXPECT_EQ(salt_.SetSalt_FromFile(files_.Directory().wstring().c_str(), EnumSaltType::Both), 0u);
    ExpectNoSalt();
}

TEST_F(Salt, FailedAllocationIsReportedAndLeavesNoSaltAndTheFileOpen) {
    Load("first");
    const std::wstring path = files_.Write("large", std::string(54'321, 'x'));
    {
        const auto noMemory = helpers::FailingNew::OfSize(54'321);
        EXPECT_EQ(salt_.SetSalt_FromFile(path.c_str(), EnumSaltType::Both), 0u);
    }
    ExpectNoSalt();
    const auto records = fakes::TakeFaultRecords();
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].sourceFile, "crypto/CCrypto_Salt.cpp");
    EXPECT_EQ(records[0].signature,
              "unsigned int __cdecl CCrypto_Salt::SetSalt_FromFile(const wchar_t *,enum EnumSaltType)");
    EXPECT_FALSE(platform::RemoveFile(path.c_str())) << "the file was not left open";
    EXPECT_EQ(salt_.SetSalt_FromFile(path.c_str(), EnumSaltType::Both), 54'321u);
}

TEST_F(Salt, ClearFreesTheBytesAndMayBeRepeated) {
    Load("abc");
    salt_.ClearSalt();
    ExpectNoSalt();
    salt_.ClearSalt();
    ExpectNoSalt();
    EXPECT_EQ(Load("again"), 5u);
}

} // namespace
