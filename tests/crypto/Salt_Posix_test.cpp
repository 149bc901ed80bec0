// SPDX-License-Identifier: MIT
#include "crypto/CCrypto_Salt.h"

#include "tests/helpers/ScratchFiles.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// A salt is read again for each engine, which a pipe does not allow.
TEST(SaltPosix, PipeLeavesNoSalt) {
    const helpers::ScratchFiles files;
    const std::string name = files.Directory() / "pipe";
    ASSERT_EQ(mkfifo(name.c_str(), 0600), 0);
    const int writer = open(name.c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_EQ(write(writer, "abc", 3), 3);
    CCrypto_Salt salt;
    EXPECT_EQ(salt.SetSalt_FromFile(files.Path("pipe").c_str(), EnumSaltType::Both), 0u);
    EXPECT_EQ(salt.SaltBytes(), nullptr);
    close(writer);
}

TEST(SaltPosix, DeviceLeavesNoSalt) {
    CCrypto_Salt salt;
    EXPECT_EQ(salt.SetSalt_FromFile(L"/dev/zero", EnumSaltType::Both), 0u);
    EXPECT_EQ(salt.SaltBytes(), nullptr);
}

// Files of the kernel say 4,096 bytes and hold less.
TEST(SaltPosix, FileThatEndsEarlyLeavesNoSalt) {
    const char* const name = "/sys/devices/system/cpu/online";
    struct stat status;
    if (stat(name, &status) != 0 || status.st_size < 1000)
        GTEST_SKIP() << "this system has no " << name << " that says more than it holds";
    CCrypto_Salt salt;
    EXPECT_EQ(salt.SetSalt_FromFile(L"/sys/devices/system/cpu/online", EnumSaltType::Both), 0u);
    EXPECT_EQ(salt.SaltLength(), 0u);
    EXPECT_EQ(salt.SaltBytes(), nullptr);
}

} // namespace
