// SPDX-License-Identifier: MIT
// Both engines through files.
#include "crypto/CCrypto_Md4.h"
#include "crypto/CCrypto_Md5.h"

#include "tests/helpers/Bytes.h"
#include "tests/helpers/DigestText.h"
#include "tests/helpers/VectorLines.h"
#include "tests/reference/Md4.h"
#include "tests/reference/Md5.h"

#include <gtest/gtest.h>

namespace {

using helpers::Bytes;
using Message = std::span<const std::uint8_t>;

struct Md4 {
    using Engine = CCrypto_Md4;
    static constexpr const char* suite = "md4_rfc1320.txt";
    static Bytes Reference(Message message) { return reference::Md4(message); }
};

struct Md5 {
    using Engine = CCrypto_Md5;
    static constexpr const char* suite = "md5_rfc1321.txt";
    static Bytes Reference(Message message) { return reference::Md5(message); }
};

template <class Family>
class Md4Md5 : public testing::Test {
  protected:
    std::string Text(const wchar_t* path) {
        return helpers::DigestText(path, [this](const wchar_t* file, char* text) {
            return engine_.GetFromFileAsString(file, text);
        });
    }
    std::string Text(Message message) { return Text(files_.Write("file", message).c_str()); }
    std::string Expected(Message message) { return helpers::ToHex(Family::Reference(message)); }

    helpers::ScratchFiles files_;
    typename Family::Engine engine_{nullptr};
};

class Names {
  public:
    template <class Family>
    static std::string GetName(int) {
        return std::is_same_v<Family, Md4> ? "Md4" : "Md5";
    }
};

using Families = testing::Types<Md4, Md5>;
TYPED_TEST_SUITE(Md4Md5, Families, Names);

TYPED_TEST(Md4Md5, TestSuiteOfTheRfcHolds) {
    const std::vector<std::string> lines = helpers::VectorLines(TypeParam::suite);
    ASSERT_EQ(lines.size(), 7u);
    for (const std::string& line : lines) {
        const std::string message = line.substr(34, line.size() - 35); // between the quotes behind the digest
        EXPECT_EQ(this->Text(helpers::BytesOf(message)), line.substr(0, 32)) << message;
    }
}

// 55, 56 and 64 bytes are among them: one byte of padding, 64, and a whole block before it.
TYPED_TEST(Md4Md5, EveryLengthTo300AgreesWithTheReference) {
    const Bytes message = helpers::PseudoRandomBytes(300, 300);
    for (std::size_t length = 0; length <= message.size(); ++length) {
        const Message head(message.data(), length);
        EXPECT_EQ(this->Text(head), this->Expected(head)) << length << " bytes";
    }
}

TYPED_TEST(Md4Md5, FilesAroundTheReadBufferAgreeWithTheReference) {
    const Bytes message = helpers::PseudoRandomBytes(2'097'153, 1048576);
    for (const std::size_t length : {1'048'575u, 1'048'576u, 1'048'577u, 2'097'152u, 2'097'153u}) {
        const Message head(message.data(), length);
        EXPECT_EQ(this->Text(head), this->Expected(head)) << length << " bytes";
    }
}

TYPED_TEST(Md4Md5, SaltIsHashedAsIfTheFileHeldIt) {
    const Bytes salt = helpers::PseudoRandomBytes(75, 1);
    const Bytes file = helpers::PseudoRandomBytes(1'048'576 + 30, 2);
    Bytes before = salt;
    before.insert(before.end(), file.begin(), file.end());
    Bytes after = file;
    after.insert(after.end(), salt.begin(), salt.end());
    Bytes both = before;
    both.insert(both.end(), salt.begin(), salt.end());

    const std::wstring saltPath = this->files_.Write("salt", salt);
    this->engine_.SetSalt_FromFile(saltPath.c_str(), EnumSaltType::Before);
    EXPECT_EQ(this->Text(file), this->Expected(before));
    this->engine_.SetSalt_FromFile(saltPath.c_str(), EnumSaltType::After);
    EXPECT_EQ(this->Text(file), this->Expected(after));
    this->engine_.SetSalt_FromFile(saltPath.c_str(), EnumSaltType::Both);
    EXPECT_EQ(this->Text(file), this->Expected(both));
    this->engine_.SetSalt_FromFile(saltPath.c_str(), EnumSaltType::None);
    EXPECT_EQ(this->Text(file), this->Expected(file));
}

TYPED_TEST(Md4Md5, GetFromFileWritesTheSixteenBytesAndNoMore) {
    const std::wstring path = this->files_.Write("file", std::string_view("abc"));
    unsigned char digest[18];
    std::fill(std::begin(digest), std::end(digest), static_cast<unsigned char>(0xee));
    EXPECT_TRUE(this->engine_.GetFromFile(path.c_str(), digest));
    EXPECT_EQ(helpers::ToHex(digest), this->Expected(helpers::BytesOf("abc")) + "eeee");
}

TYPED_TEST(Md4Md5, NullPointersAndMissingFilesFailAndWriteNothing) {
    const std::wstring path = this->files_.Write("file", std::string_view("abc"));
    const std::wstring missing = this->files_.Path("missing");
    char text[] = "untouched";
    unsigned char digest[16] = {1};
    EXPECT_FALSE(this->engine_.GetFromFileAsString(nullptr, text));
    EXPECT_FALSE(this->engine_.GetFromFileAsString(path.c_str(), nullptr));
    EXPECT_FALSE(this->engine_.GetFromFileAsString(missing.c_str(), text));
    EXPECT_FALSE(this->engine_.GetFromFile(nullptr, digest));
    EXPECT_FALSE(this->engine_.GetFromFile(path.c_str(), nullptr));
    EXPECT_FALSE(this->engine_.GetFromFile(missing.c_str(), digest));
    EXPECT_STREQ(text, "untouched");
    EXPECT_EQ(digest[0], 1);
}

// The incremental members are public; whatever was left in them, the next file starts afresh.
TYPED_TEST(Md4Md5, LeftoversOfIncrementalCallsDoNotReachTheNextFile) {
    const Bytes bytes = helpers::PseudoRandomBytes(100, 3);
    this->engine_.DoBlock(bytes.data(), 100);
    this->engine_.Transform(bytes.data());
    EXPECT_EQ(this->Text(bytes), this->Expected(bytes));
    this->engine_.Finalize();
    this->engine_.DoBlock(bytes.data(), 7);
    EXPECT_EQ(this->Text(bytes), this->Expected(bytes));
}

} // namespace
