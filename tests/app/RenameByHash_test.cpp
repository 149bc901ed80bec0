// SPDX-License-Identifier: MIT
#include "app/RenameByHash.h"

#include "tests/helpers/ScratchFiles.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <set>
#include <string>

namespace {

// Makes a scratch directory current, since new names have no directory part.
class RenameByHashTest : public testing::Test {
  protected:
    RenameByHashTest() : start_(std::filesystem::current_path()) {
        std::filesystem::current_path(files_.Directory());
    }
    ~RenameByHashTest() override { std::filesystem::current_path(start_); }

    void Rename(const char* digest, const std::wstring& path, const wchar_t* extension) {
        std::snprintf(context_.hashText, sizeof context_.hashText, "%s", digest);
        RenameByHash(context_, path.c_str(), extension);
    }

    std::set<std::string> Names() const {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(files_.Directory()))
            names.insert(entry.path().filename().string());
        return names;
    }

    RunContext context_;
    helpers::ScratchFiles files_;

  private:
    std::filesystem::path start_;
};

using Names = std::set<std::string>;

TEST_F(RenameByHashTest, JoinsDigestAndExtension) {
    Rename("0123abcd", files_.Write("a.txt", "x"), L".txt");
    EXPECT_EQ(Names(), (::Names{"0123abcd.txt"}));
}

TEST_F(RenameByHashTest, UsesTheBareDigestWithoutExtension) {
    Rename("0123abcd", files_.Write("a", "x"), L"");
    EXPECT_EQ(Names(), (::Names{"0123abcd"}));
}

TEST_F(RenameByHashTest, UsesTheBareExtensionBeforeTheFirstDigest) {
    Rename("", files_.Write("a.txt", "x"), L".txt");
    EXPECT_EQ(Names(), (::Names{".txt"}));
}

TEST_F(RenameByHashTest, NumbersCollidingFilesWithTwoDigits) {
    files_.Write("d.x", "taken");
    for (int number = 0; number < 10; ++number)
        Rename("d", files_.Write("a.x", "x"), L".x");
    Rename("d", files_.Write("a.x", "x"), L".x");
    EXPECT_EQ(Names(), (::Names{"d.x", "d_00.x", "d_01.x", "d_02.x", "d_03.x", "d_04.x", "d_05.x", "d_06.x",
                                "d_07.x", "d_08.x", "d_09.x", "d_10.x"}));
}

TEST_F(RenameByHashTest, KeepsTheNameAfterAHundredNumbers) {
    for (int number = 0; number < 101; ++number)
        Rename("d", files_.Write("a", "x"), L"");
    EXPECT_EQ(Names().size(), 101u);
    EXPECT_TRUE(Names().contains("d_99"));
    Rename("d", files_.Write("a", "last"), L"");
    EXPECT_TRUE(Names().contains("a"));
    EXPECT_EQ(Names().size(), 102u);
}

TEST_F(RenameByHashTest, DeletesCollidingFilesWhenAsked) {
    context_.deleteOnCollision = true;
    files_.Write("d.x", "taken");
    Rename("d", files_.Write("a.x", "x"), L".x");
    EXPECT_EQ(Names(), (::Names{"d.x"}));
}

TEST_F(RenameByHashTest, LeavesAFileThatBearsTheNameAlone) {
    for (const bool deletes : {false, true}) {
        context_.deleteOnCollision = deletes;
        Rename("d", files_.Write("d.x", "x"), L".x");
        EXPECT_EQ(Names(), (::Names{"d.x"})) << deletes;
    }
}

TEST_F(RenameByHashTest, LeavesAFileWhoseNewNameIsTooLong) {
    const std::wstring extension = L"." + std::wstring(300, L'e');
    Rename("d", files_.Write("a", "x"), extension.c_str());
    EXPECT_EQ(Names(), (::Names{"a"}));
}

TEST_F(RenameByHashTest, MovesIntoTheCurrentDirectory) {
    std::filesystem::create_directory(files_.Directory() / "elsewhere");
    Rename("d", files_.Write("elsewhere/a.x", "x"), L".x");
    EXPECT_EQ(Names(), (::Names{"d.x", "elsewhere"}));
}

} // namespace
