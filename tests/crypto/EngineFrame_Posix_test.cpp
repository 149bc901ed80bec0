// SPDX-License-Identifier: MIT
#include "crypto/EngineFrame.h"

#include "crypto/CCrypto_Md5.h"
#include "tests/helpers/DigestText.h"
#include "tests/helpers/OpenDescriptors_Posix.h"

#include <gtest/gtest.h>

namespace {

bool Hash(const wchar_t* path) {
    int output;
    return engine_frame::HashFile(
        path, &output, 4, CCrypto_Salt(), [] {}, [](const unsigned char*, std::size_t) {}, [] {});
}

TEST(EngineFramePosix, ClosesTheFile) {
    const helpers::ScratchFiles files;
    const std::wstring path = files.Write("file", std::string_view("abcdef"));
    const std::size_t before = OpenDescriptors();
    EXPECT_TRUE(Hash(path.c_str()));
    EXPECT_FALSE(Hash(files.Path("missing").c_str()));
    EXPECT_EQ(OpenDescriptors(), before);
}

// The address 0 of this process cannot be read.
TEST(EngineFramePosix, ReadErrorEndsTheFileAndTheBytesBeforeItCount) {
    CCrypto_Md5 engine(nullptr);
    EXPECT_EQ(
        helpers::DigestText(L"/proc/self/mem",
                            [&](auto path, char* text) { return engine.GetFromFileAsString(path, text); }),
        "d41d8cd98f00b204e9800998ecf8427e");
}

TEST(EngineFramePosix, FilesOfTheKernelThatSaySizeZeroAreReadToTheirEnd) {
    CCrypto_Md5 engine(nullptr);
    EXPECT_NE(
        helpers::DigestText(L"/proc/version",
                            [&](auto path, char* text) { return engine.GetFromFileAsString(path, text); }),
        "d41d8cd98f00b204e9800998ecf8427e");
}

} // namespace
