// SPDX-License-Identifier: MIT
// The salt of MD6 is fed like any salt, and its first 64 bytes are the key.
#include "tests/crypto/Md6Support.h"
#include "tests/helpers/KnownAnswers.h"
#include "tests/helpers/VectorLines.h"

namespace {

using namespace md6_tests;

constexpr EnumSaltType placements[] = {EnumSaltType::None, EnumSaltType::Before, EnumSaltType::After,
                                       EnumSaltType::Both};

Bytes Salted(const Bytes& salt, const Bytes& file, EnumSaltType placement) {
    Bytes message;
    if (placement == EnumSaltType::Before || placement == EnumSaltType::Both)
        message = salt;
    message.insert(message.end(), file.begin(), file.end());
    if (placement == EnumSaltType::After || placement == EnumSaltType::Both)
        message.insert(message.end(), salt.begin(), salt.end());
    return message;
}

class Md6Salt : public testing::Test {
  protected:
    void ExpectSaltedDigests(const Bytes& salt, const Bytes& file, std::span<const unsigned short> sizes) {
        const std::wstring path = files_.Write("file", file);
        const std::wstring saltPath = files_.Write("salt", salt);
        for (const EnumSaltType placement : placements) {
            ASSERT_EQ(engine_.SetSalt_FromFile(saltPath.c_str(), placement), salt.size());
            for (const unsigned short d : sizes)
                EXPECT_EQ(Text(engine_, path.c_str(), d),
                          Expected(Salted(salt, file, placement), d, KeyOf(salt)))
                    << "salt of " << salt.size() << ", placement " << static_cast<int>(placement) << ", "
                    << d;
        }
    }

    helpers::ScratchFiles files_;
    CCrypto_Md6 engine_{nullptr};
};

TEST_F(Md6Salt, SaltsOf1To200Bytes) {
    const Bytes file = helpers::PseudoRandomBytes(600, 1);
    for (std::size_t length = 1; length <= 200; ++length)
        ExpectSaltedDigests(helpers::PseudoRandomBytes(length, length), file, digestSizes);
}

// Pieces that are no multiple of the node size, before and behind the read buffer.
TEST_F(Md6Salt, FilesAroundTheReadBuffer) {
    const unsigned short sizes[] = {160};
    for (const std::size_t length : {1'048'575u, 1'048'576u, 1'048'577u})
        ExpectSaltedDigests(helpers::PseudoRandomBytes(77, 1), helpers::PseudoRandomBytes(length, 2), sizes);
}

TEST_F(Md6Salt, ClearedSaltIsNeitherFedNorAKey) {
    const std::wstring path = files_.Write("file", std::string_view("abc"));
    engine_.SetSalt_FromFile(files_.Write("salt", std::string_view("NaCl")).c_str(), EnumSaltType::Both);
    engine_.ClearSalt();
    EXPECT_EQ(Text(engine_, path.c_str(), 256), Expected(helpers::BytesOf("abc"), 256));
}

TEST_F(Md6Salt, OnlyTheFirst64BytesAreTheKey) {
    Bytes salt = helpers::PseudoRandomBytes(65, 3);
    const std::wstring path = files_.Write("file", std::string_view("abc"));
    engine_.SetSalt_FromFile(files_.Write("salt", salt).c_str(), EnumSaltType::None);
    const std::string digest = Text(engine_, path.c_str(), 256);
    salt[64] ^= 1;
    engine_.SetSalt_FromFile(files_.Write("salt", salt).c_str(), EnumSaltType::None);
    EXPECT_EQ(Text(engine_, path.c_str(), 256), digest);
    salt[63] ^= 1;
    engine_.SetSalt_FromFile(files_.Write("salt", salt).c_str(), EnumSaltType::None);
    EXPECT_NE(Text(engine_, path.c_str(), 256), digest);
}

TEST_F(Md6Salt, AKeyRaisesTheRoundsToAtLeast80) {
    const Bytes salt = helpers::BytesOf("k");
    const Bytes file = helpers::BytesOf("abc");
    engine_.SetSalt_FromFile(files_.Write("salt", salt).c_str(), EnumSaltType::None);
    for (const auto& [d, rounds] : {std::pair<unsigned short, int>{128, 80}, {160, 80}, {164, 81}, {192, 88}})
        EXPECT_EQ(Text(engine_, Message(file), d),
                  helpers::ToHex(reference::Md6(file, 24, {.digestBits = d, .key = salt, .rounds = rounds})))
            << d;
}

// A salt that is not placed anywhere is the key alone.
TEST_F(Md6Salt, KeyedDigestsAreThoseOfAnotherImplementation) {
    engine_.SetSalt_FromFile(files_.Write("salt", helpers::BytesOf("abcde12345")).c_str(),
                             EnumSaltType::None);
    for (const auto& [function, message, digest] :
         helpers::KnownAnswers(helpers::VectorLines("md6_keyed.txt"))) {
        const auto d = static_cast<unsigned short>(std::stoi(function.substr(4)));
        EXPECT_EQ(Text(engine_, Message(message), d), digest) << function << ", " << message.size();
    }
}

TEST_F(Md6Salt, SaltThatIsGoneLeavesTheDigestUnkeyed) {
    const Bytes file = helpers::BytesOf("abc");
    engine_.SetSalt_FromFile(files_.Write("salt", helpers::BytesOf("k")).c_str(), EnumSaltType::Both);
    engine_.SetSalt_FromFile(files_.Path("missing").c_str(), EnumSaltType::Both);
    EXPECT_EQ(Text(engine_, Message(file), 128), Expected(file, 128));
}

} // namespace
