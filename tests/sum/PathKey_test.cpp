// SPDX-License-Identifier: MIT
#include "sum/PathKey.h"

#include <gtest/gtest.h>

namespace sum {
namespace {

Name Key(const Name& name) {
    Name buffer;
    return Name(KeyOf(name, buffer));
}

TEST(PathKeys, SpellingsOfOnePathAreTheSame) {
    for (const char* name : {"a/b", "./a/b", "././a//b", "a/./b", "a/b/", "a//b/.", ".//a/b//"})
        EXPECT_EQ(Key(name), "a/b") << name;
    for (const char* name : {".", "./", "", "././/"})
        EXPECT_EQ(Key(name), "") << name;
    for (const char* name : {"/", "/.", "/./"})
        EXPECT_EQ(Key(name), "/") << name;
    EXPECT_EQ(Key("/a//b"), "/a/b");
}

TEST(PathKeys, WhatIsAnotherPathStaysAnother) {
    for (const char* name : {"..", "a/../b", "../a", ".a/b", "a/.b", "a./b", "a/..b", "-", " a"})
        EXPECT_EQ(Key(name), name);
}

TEST(PathKeys, LieWithinTheirDirectories) {
    EXPECT_TRUE(IsWithin("a/b", "a"));
    EXPECT_TRUE(IsWithin("a", "a"));
    EXPECT_FALSE(IsWithin("ab", "a"));
    EXPECT_FALSE(IsWithin("a", "a/b"));
    EXPECT_TRUE(IsWithin("a/b", ""));
    EXPECT_TRUE(IsWithin("..a", ""));
    for (const char* outside : {"/a", "..", "../a"})
        EXPECT_FALSE(IsWithin(outside, "")) << outside;
    EXPECT_TRUE(IsWithin("/a", "/"));
}

TEST(PathKeys, EndInALastComponent) {
    EXPECT_EQ(BaseOf("a/b"), "b");
    EXPECT_EQ(BaseOf("b"), "b");
}

} // namespace
} // namespace sum
