// SPDX-License-Identifier: MIT
// fyrn/fyrn.hpp: the C functions as classes.
#include "fyrn/fyrn.hpp"

#include "tests/helpers/Bytes.h"
#include "tests/helpers/ScratchFiles.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace {

constexpr const char* md5OfAbc = "900150983cd24fb0d6963f7d28e17f72";
constexpr const char* md5OfNothing = "d41d8cd98f00b204e9800998ecf8427e";

std::string Md5(std::string_view text) {
    return fyrn::ToHex(fyrn::Digest("MD5", text));
}

TEST(Classes, FunctionsAreFoundAndListed) {
    const std::optional<fyrn::Function> found = fyrn::Function::Find("sha256");
    ASSERT_TRUE(found);
    EXPECT_EQ(found->Name(), "SHA2-256");
    EXPECT_EQ(found->Tag(), "SHA256");
    EXPECT_EQ(found->DigestSize(), 32u);
    EXPECT_EQ(found->BlockSize(), 64u);
    EXPECT_EQ(found->Kernel(), fyrn_function_kernel(found->Row()));
    EXPECT_EQ(*found, fyrn::Function::Named("SHA-256"));
    EXPECT_NE(*found, fyrn::Function::Named("MD5"));
    EXPECT_FALSE(fyrn::Function::Find("sha257"));
    const std::vector<fyrn::Function> all = fyrn::Function::All();
    ASSERT_EQ(all.size(), fyrn_function_count());
    for (std::size_t i = 0; i < all.size(); ++i)
        EXPECT_EQ(all[i].Row(), fyrn_function_at(i));
}

TEST(Classes, UnknownNamesAndLengthsAreRefused) {
    EXPECT_THROW(fyrn::Hasher("sha257"), std::invalid_argument);
    EXPECT_THROW(fyrn::Function::Named(""), std::invalid_argument);
    EXPECT_THROW(fyrn::Digest("sha257", "abc"), std::invalid_argument);
    EXPECT_THROW(fyrn::Hasher(fyrn::Function::Named("MD5"), 15), std::invalid_argument);
    EXPECT_EQ(fyrn::Hasher(fyrn::Function::Named("SHAKE128"), 15).DigestSize(), 15u);
}

TEST(Classes, HashersTakePiecesAndBeginAnew) {
    fyrn::Hasher hasher("MD5");
    EXPECT_EQ(hasher.DigestSize(), 16u);
    EXPECT_EQ(fyrn::ToHex(hasher.Update("a").Update("bc").Finish()), md5OfAbc);
    EXPECT_EQ(fyrn::ToHex(hasher.Finish()), md5OfNothing);
    hasher.Update("abc").Reset();
    EXPECT_EQ(fyrn::ToHex(hasher.Finish()), md5OfNothing);
}

TEST(Classes, CopiesGoOnByThemselves) {
    fyrn::Hasher hasher("MD5");
    hasher.Update("a");
    fyrn::Hasher copy = hasher;
    fyrn::Hasher assigned("SHA1");
    assigned = hasher;
    const fyrn::Hasher& same = assigned;
    assigned = same;
    hasher.Update("x");
    fyrn::Hasher moved = std::move(hasher);
    EXPECT_EQ(fyrn::ToHex(copy.Update("bc").Finish()), md5OfAbc);
    EXPECT_EQ(fyrn::ToHex(assigned.Update("bc").Finish()), md5OfAbc);
    EXPECT_EQ(fyrn::ToHex(moved.Finish()), Md5("ax"));
    hasher = copy;
    EXPECT_EQ(fyrn::ToHex(hasher.Finish()), md5OfNothing);
}

TEST(Classes, ManyHashersTakeManyPieces) {
    fyrn::Hasher first("MD5"), second("MD5");
    const std::string texts[] = {"abc", ""};
    std::vector<std::span<const std::byte>> pieces;
    for (const std::string& text : texts)
        pieces.push_back(std::as_bytes(std::span(text)));
    std::vector<fyrn::Hasher*> hashers = {&first, &second};
    fyrn::Hasher::UpdateMany(hashers, pieces);
    EXPECT_EQ(fyrn::ToHex(first.Finish()), md5OfAbc);
    EXPECT_EQ(fyrn::ToHex(second.Finish()), md5OfNothing);
    hashers.pop_back();
    EXPECT_THROW(fyrn::Hasher::UpdateMany(hashers, pieces), std::invalid_argument);
}

TEST(Classes, FilesWithAnyNameAreHashed) {
    const helpers::ScratchFiles files;
    const std::filesystem::path folder =
        std::filesystem::path(files.Write("file", helpers::BytesOf("abc"))).parent_path();
    std::filesystem::copy_file(folder / "file", folder / std::filesystem::path(u8"\u00e9.txt"));
    EXPECT_EQ(fyrn::ToHex(fyrn::HashFile(folder / std::filesystem::path(u8"\u00e9.txt"), "MD5")), md5OfAbc);
    EXPECT_THROW(fyrn::HashFile(folder / "file", "sha257"), std::invalid_argument);
}

TEST(Classes, LongFilesAreHashedWhole) {
    const helpers::ScratchFiles files;
    for (const std::size_t length :
         {std::size_t{0}, std::size_t{262'143}, std::size_t{262'144}, std::size_t{700'001}}) {
        const helpers::Bytes content = helpers::PseudoRandomBytes(length, 17);
        EXPECT_EQ(fyrn::HashFile(files.Write("file", content), "SHA1"),
                  fyrn::Digest("SHA1", std::as_bytes(std::span(content))))
            << length;
    }
}

TEST(Classes, FilesThatCannotBeReadThrow) {
    const helpers::ScratchFiles files;
    const std::filesystem::path missing = files.Path("missing");
    try {
        fyrn::HashFile(missing, "MD5");
        FAIL();
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::errc::no_such_file_or_directory);
    }
    EXPECT_THROW(fyrn::HashFile(missing.parent_path(), "MD5"), std::system_error);
}

TEST(Classes, HexDigitsAreLowerCase) {
    EXPECT_EQ(fyrn::ToHex(std::vector{std::byte{0x00}, std::byte{0xaf}, std::byte{0x10}}), "00af10");
    EXPECT_EQ(fyrn::ToHex({}), "");
}

} // namespace
