// SPDX-License-Identifier: MIT
#include "crypto/CCrypto_Crc.h"

#include "tests/helpers/EngineSuite.h"
#include "tests/reference/Crc.h"

#include <bit>
#include <cstring>
#include <iomanip>
#include <sstream>

namespace {

using helpers::Bytes;

std::string Digits(std::uint64_t crc, int count) {
    std::ostringstream text;
    text << std::hex << std::setfill('0') << std::setw(count) << crc;
    return text.str();
}

template <unsigned int crcWidth, class Word, std::uint64_t polynomial, auto getFromFile,
          auto getFromFileAsString>
struct Function {
    using Engine = CCrypto_Crc;
    static constexpr std::size_t digestSize = sizeof(Word);
    static constexpr std::size_t readBufferSize = 1'000'000;
    static constexpr const char* sourceFile = "crypto/CCrypto_Crc.cpp";
    static constexpr int getFromFileLine = 0; // not fixed

    static bool GetFromFile(Engine& engine, const wchar_t* path, unsigned char* digest) {
        Word crc = 0;
        if (!(engine.*getFromFile)(path, digest != nullptr ? &crc : nullptr))
            return false;
        std::memcpy(digest, &crc, sizeof crc);
        return true;
    }
    static bool GetFromFileAsString(Engine& engine, const wchar_t* path, char* text) {
        return (engine.*getFromFileAsString)(path, text);
    }
    static Bytes Reference(std::span<const std::uint8_t> message) {
        const std::uint64_t ones = ~std::uint64_t{0} >> (64 - crcWidth);
        return helpers::FromHex(Digits(reference::Crc(crcWidth, polynomial, ones, message), crcWidth / 4));
    }
};

struct Crc16 : Function<16, std::uint16_t, 0xa001, &CCrypto_Crc::Crc16_GetFromFile,
                        &CCrypto_Crc::Crc16_GetFromFileAsString> {
    static constexpr const char* name = "Crc16";
    static constexpr const char* getFromFileSignature =
        "bool __cdecl CCrypto_Crc::Crc16_GetFromFile(const wchar_t *,unsigned short *)";
};

struct Crc32 : Function<32, std::uint32_t, 0xedb88320, &CCrypto_Crc::Crc32_GetFromFile,
                        &CCrypto_Crc::Crc32_GetFromFileAsString> {
    static constexpr const char* name = "Crc32";
    static constexpr const char* getFromFileSignature =
        "bool __cdecl CCrypto_Crc::Crc32_GetFromFile(const wchar_t *,unsigned int *)";
};

struct Crc64 : Function<64, std::uint64_t, 0xd800000000000000, &CCrypto_Crc::Crc64_GetFromFile,
                        &CCrypto_Crc::Crc64_GetFromFileAsString> {
    static constexpr const char* name = "Crc64";
    static constexpr const char* getFromFileSignature =
        "bool __cdecl CCrypto_Crc::Crc64_GetFromFile(const wchar_t *,unsigned __int64 *)";
};

using Functions = testing::Types<Crc16, Crc32, Crc64>;
INSTANTIATE_TYPED_TEST_SUITE_P(Crc, EngineSuite, Functions, helpers::FamilyNames);
INSTANTIATE_TYPED_TEST_SUITE_P(Crc, EngineLengthSuite, Functions, helpers::FamilyNames);

// The texts of one file.
struct Texts {
    std::string crc16, crc32, crc64;
};

class Crc : public testing::Test {
  protected:
    Texts Of(std::span<const std::uint8_t> message) {
        return {helpers::EngineText<Crc16>(engine_, message), helpers::EngineText<Crc32>(engine_, message),
                helpers::EngineText<Crc64>(engine_, message)};
    }
    Texts OfDigits() { return Of(helpers::BytesOf("123456789")); }
    void Salt(std::string_view bytes, EnumSaltType placement) {
        ASSERT_EQ(engine_.SetSalt_FromFile(files_.Write("salt", bytes).c_str(), placement), bytes.size());
    }

    helpers::ScratchFiles files_;
    CCrypto_Crc engine_{nullptr};
};

TEST_F(Crc, Polynomial0x8005IsUsedAsARightShiftingConstant) {
    engine_.Crc16_SetPolynomial(0x8005);
    EXPECT_EQ(OfDigits().crc16, "c284");
}

TEST_F(Crc, StartAndFinalValueOfTheWiderCrcsIsChosenWithThePolynomial) {
    engine_.Crc32_SetPolynomial(0xedb88320, 0x0000ffff);
    engine_.Crc64_SetPolynomial(0xd800000000000000, 0xffff);
    const Texts texts = OfDigits();
    EXPECT_EQ(texts.crc32, "42f9d8da");
    EXPECT_EQ(texts.crc64, "4666a9388a5b1091");
}

TEST_F(Crc, SettingOneWidthLeavesTheOthersAlone) {
    engine_.Crc32_SetPolynomial(0x82f63b78, 0xffffffff);
    const Texts texts = OfDigits();
    EXPECT_EQ(texts.crc16, "b4c8");
    EXPECT_EQ(texts.crc32, "e3069283"); // CRC-32/ISCSI of the catalogue
    EXPECT_EQ(texts.crc64, "b90956c775a41001");
}

TEST_F(Crc, APolynomialSetAfterAFileWasHashedHoldsForTheNext) {
    OfDigits();
    engine_.Crc64_SetPolynomial(0xc96c5795d7870f42, ~std::uint64_t{0});
    EXPECT_EQ(OfDigits().crc64, "995dc9bbdf1939fa"); // CRC-64/XZ of the catalogue
}

TEST_F(Crc, EmptyFileGivesZeroForEveryPolynomialAndStartValue) {
    for (const std::uint64_t bits : {0x0ull, 0x1ull, 0xa001ull, 0x123456789abcdef0ull, ~0ull}) {
        engine_.Crc16_SetPolynomial(static_cast<std::uint16_t>(bits));
        engine_.Crc32_SetPolynomial(static_cast<std::uint32_t>(bits), static_cast<std::uint32_t>(~bits));
        engine_.Crc64_SetPolynomial(bits, ~bits);
        const Texts texts = Of({});
        EXPECT_EQ(texts.crc16, "0000");
        EXPECT_EQ(texts.crc32, "00000000");
        EXPECT_EQ(texts.crc64, "0000000000000000");
    }
}

TEST_F(Crc, SaltIsHashedBeforeOrOnBothSides) {
    Salt("ab", EnumSaltType::Before);
    EXPECT_EQ(OfDigits().crc32, "023201d1"); // with its leading zero
    Salt("ab", EnumSaltType::Both);
    EXPECT_EQ(OfDigits().crc32, "71a78e97");
    Salt("ab", EnumSaltType::After);
    EXPECT_EQ(OfDigits().crc32,
              Digits(reference::Crc(32, 0xedb88320, 0xffffffff, helpers::BytesOf("123456789ab")), 8));
}

TEST_F(Crc, IntegerLiesInMemoryHighestByteFirst) {
    const std::wstring path = files_.Write("file", std::string_view("123456789"));
    std::uint16_t crc16 = 0;
    std::uint32_t crc32 = 0;
    std::uint64_t crc64 = 0;
    EXPECT_TRUE(engine_.Crc16_GetFromFile(path.c_str(), &crc16));
    EXPECT_TRUE(engine_.Crc32_GetFromFile(path.c_str(), &crc32));
    EXPECT_TRUE(engine_.Crc64_GetFromFile(path.c_str(), &crc64));
    if (std::endian::native == std::endian::little) {
        EXPECT_EQ(crc16, 0xc8b4);
        EXPECT_EQ(crc32, 0x2639f4cbu);
        EXPECT_EQ(crc64, 0x0110a475c75609b9u);
    }
}

// A polynomial of every kind: random, with a zero top bit (no constant term), 0 and 1.
TEST_F(Crc, RandomPolynomialsAgreeWithTheBitwiseReference) {
    const std::uint64_t seed = 6416;
    for (std::uint64_t round = 0; round < 60; ++round) {
        const Bytes message = helpers::PseudoRandomBytes(17 * static_cast<std::size_t>(round), seed + round);
        std::uint64_t polynomial = round;
        std::uint64_t value = 0;
        const Bytes random = helpers::PseudoRandomBytes(16, seed + 1000 + round);
        if (round > 1)
            std::memcpy(&polynomial, random.data(), 8);
        std::memcpy(&value, random.data() + 8, 8);
        if (round % 2 == 0)
            polynomial &= 0x7fffffff7fff7fff;
        const auto low16 = static_cast<std::uint16_t>(polynomial);
        const auto low32 = static_cast<std::uint32_t>(polynomial);
        const auto value32 = static_cast<std::uint32_t>(value);
        engine_.Crc16_SetPolynomial(low16);
        engine_.Crc32_SetPolynomial(low32, value32);
        engine_.Crc64_SetPolynomial(polynomial, value);
        SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
        const Texts texts = Of(message);
        EXPECT_EQ(texts.crc16, Digits(reference::Crc(16, low16, 0xffff, message), 4));
        EXPECT_EQ(texts.crc32, Digits(reference::Crc(32, low32, value32, message), 8));
        EXPECT_EQ(texts.crc64, Digits(reference::Crc(64, polynomial, value, message), 16));
    }
}

} // namespace
