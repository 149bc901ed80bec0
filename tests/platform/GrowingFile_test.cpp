// SPDX-License-Identifier: MIT
#include "platform/GrowingFile.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace {

TEST(GrowingFiles, GrowAtTheirEndAndGo) {
    const std::string name = (std::filesystem::temp_directory_path() / "fyrn-test-growing").string();
    std::filesystem::remove(name);
    for (const char* text : {"one\n", "two"}) {
        platform::GrowingFile file;
        ASSERT_EQ(file.Open(name), 0);
        EXPECT_EQ(file.Write(text), 0);
    }
    std::stringstream content;
    content << std::ifstream(name, std::ios::binary).rdbuf();
    EXPECT_EQ(content.str(), "one\ntwo");
    EXPECT_EQ(platform::RemoveFile(name), 0);
    EXPECT_EQ(platform::RemoveFile(name), ENOENT);
    EXPECT_NE(platform::GrowingFile().Open(name + "/below"), 0);
}

} // namespace
