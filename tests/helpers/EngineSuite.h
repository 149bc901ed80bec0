// SPDX-License-Identifier: MIT
// One test suite for the way from a file to a digest that all engines share. An engine, or one of its functions,
// takes part with a family type:
//
//   struct WhirlpoolFunction {
//       static constexpr const char* name = "Whirlpool";
//       using Engine = CCrypto_Whirlpool;
//       static constexpr std::size_t digestSize = 64;
//       static constexpr std::size_t readBufferSize = 1'000'000;
//       static constexpr const char* sourceFile = "crypto/CCrypto_Whirlpool.cpp";
//       static constexpr const char* getFromFileSignature = "bool __cdecl ...";
//       static constexpr int getFromFileLine = 0; // of its catch site; 0 when it is not fixed
//       static bool GetFromFile(Engine& engine, const wchar_t* path, unsigned char* digest);
//       static bool GetFromFileAsString(Engine& engine, const wchar_t* path, char* text);
//       static helpers::Bytes Reference(std::span<const std::uint8_t> message);
//   };
//   INSTANTIATE_TYPED_TEST_SUITE_P(Whirlpool, EngineSuite, WhirlpoolFunction, helpers::FamilyNames);
#pragma once

#include "crypto/CCrypto_Salt.h"
#include "platform/File.h"
#include "tests/fakes/FaultRecorder.h"
#include "tests/helpers/Bytes.h"
#include "tests/helpers/DigestText.h"
#include "tests/helpers/FailingNew.h"
#include "tests/helpers/FamilyNames.h"
#include "tests/helpers/ScratchFiles.h"

#include <gtest/gtest.h>

#include <string>

namespace helpers {

inline constexpr std::uint64_t engineSuiteSeed = 77;

inline Bytes Joined(std::span<const std::uint8_t> a, std::span<const std::uint8_t> b) {
    Bytes joined(a.begin(), a.end());
    joined.insert(joined.end(), b.begin(), b.end());
    return joined;
}

// The text that the engine gives for a file, "failed" when it gives none.
template <class Function, class File>
std::string EngineText(typename Function::Engine& engine, File&& file) {
    return DigestText(file, [&](const wchar_t* path, char* text) {
        return Function::GetFromFileAsString(engine, path, text);
    });
}

template <class Function>
void ExpectReferenceDigest(typename Function::Engine& engine, std::size_t length, std::uint64_t seed) {
    const Bytes message = PseudoRandomBytes(length, seed);
    EXPECT_EQ(EngineText<Function>(engine, message), ToHex(Function::Reference(message)))
        << length << " bytes, seed " << seed;
}

} // namespace helpers

template <class Function>
class EngineSuite : public testing::Test {
  protected:
    typename Function::Engine engine{nullptr};
    helpers::ScratchFiles files;
};

TYPED_TEST_SUITE_P(EngineSuite);

TYPED_TEST_P(EngineSuite, EveryLengthTo300AgreesWithTheReference) {
    for (std::size_t length = 0; length <= 300; ++length)
        helpers::ExpectReferenceDigest<TypeParam>(this->engine, length, helpers::engineSuiteSeed);
}

TYPED_TEST_P(EngineSuite, BytesAndTextAreTheSameDigest) {
    const std::wstring path = this->files.Write("file", "some bytes");
    unsigned char digest[TypeParam::digestSize + 1] = {};
    digest[TypeParam::digestSize] = 0xa5;
    ASSERT_TRUE(TypeParam::GetFromFile(this->engine, path.c_str(), digest));
    EXPECT_EQ(helpers::ToHex(std::span(digest).first(TypeParam::digestSize)),
              helpers::EngineText<TypeParam>(this->engine, path.c_str()));
    EXPECT_EQ(digest[TypeParam::digestSize], 0xa5) << "more than the digest was written";
}

TYPED_TEST_P(EngineSuite, NoFileAndNullPointersGiveFalseAndNoText) {
    const std::wstring path = this->files.Write("file", "some bytes");
    const std::wstring missing = this->files.Path("missing");
    unsigned char digest[TypeParam::digestSize] = {0x5a};
    char text[1024] = "as it was";
    EXPECT_FALSE(TypeParam::GetFromFile(this->engine, nullptr, digest));
    EXPECT_FALSE(TypeParam::GetFromFile(this->engine, missing.c_str(), digest));
    EXPECT_FALSE(TypeParam::GetFromFile(this->engine, path.c_str(), nullptr));
    EXPECT_FALSE(TypeParam::GetFromFileAsString(this->engine, nullptr, text));
    EXPECT_FALSE(TypeParam::GetFromFileAsString(this->engine, missing.c_str(), text));
    EXPECT_FALSE(TypeParam::GetFromFileAsString(this->engine, path.c_str(), nullptr));
    EXPECT_EQ(digest[0], 0x5a);
    EXPECT_STREQ(text, "as it was");
    EXPECT_TRUE(fakes::TakeFaultRecords().empty());
}

TYPED_TEST_P(EngineSuite, SaltsGoBeforeTheFileBehindItOrBoth) {
    const helpers::Bytes message = helpers::PseudoRandomBytes(100, 1);
    const std::wstring path = this->files.Write("file", message);
    for (std::size_t length = 1; length <= 200; ++length) {
        const helpers::Bytes salt = helpers::PseudoRandomBytes(length, 2);
        const std::wstring saltPath = this->files.Write("salt", salt);
        const helpers::Bytes before = helpers::Joined(salt, message);
        const std::pair<EnumSaltType, helpers::Bytes> cases[] = {
            {EnumSaltType::None, message},
            {EnumSaltType::Before, before},
            {EnumSaltType::After, helpers::Joined(message, salt)},
            {EnumSaltType::Both, helpers::Joined(before, salt)},
        };
        for (const auto& [placement, hashed] : cases) {
            ASSERT_EQ(this->engine.SetSalt_FromFile(saltPath.c_str(), placement), length);
            EXPECT_EQ(helpers::EngineText<TypeParam>(this->engine, path.c_str()),
                      helpers::ToHex(TypeParam::Reference(hashed)))
                << "salt of " << length << " bytes, placement " << static_cast<int>(placement);
        }
    }
}

TYPED_TEST_P(EngineSuite, EmptySaltAndMissingSaltLeaveTheDigestUnsalted) {
    const std::wstring path = this->files.Write("file", "some bytes");
    const std::string unsalted = helpers::EngineText<TypeParam>(this->engine, path.c_str());
    EXPECT_EQ(this->engine.SetSalt_FromFile(this->files.Write("salt", "").c_str(), EnumSaltType::Both), 0u);
    EXPECT_EQ(helpers::EngineText<TypeParam>(this->engine, path.c_str()), unsalted);
    EXPECT_EQ(this->engine.SetSalt_FromFile(this->files.Path("missing").c_str(), EnumSaltType::Both), 0u);
    EXPECT_EQ(helpers::EngineText<TypeParam>(this->engine, path.c_str()), unsalted);
}

TYPED_TEST_P(EngineSuite, ClearedSaltLeavesTheDigestUnsalted) {
    if constexpr (requires { this->engine.ClearSalt(); }) {
        const std::wstring path = this->files.Write("file", "some bytes");
        const std::string unsalted = helpers::EngineText<TypeParam>(this->engine, path.c_str());
        this->engine.SetSalt_FromFile(this->files.Write("salt", "NaCl").c_str(), EnumSaltType::Both);
        this->engine.ClearSalt();
        EXPECT_EQ(helpers::EngineText<TypeParam>(this->engine, path.c_str()), unsalted);
    }
}

TYPED_TEST_P(EngineSuite, OneEngineServesAThousandFiles) {
    for (std::size_t i = 0; i < 1000; ++i)
        helpers::ExpectReferenceDigest<TypeParam>(this->engine, i * 37 % 331, i);
}

TYPED_TEST_P(EngineSuite, FailedAllocationIsReportedAndGivesFalse) {
    const std::wstring path = this->files.Write("file", "some bytes");
    const std::string expected = helpers::EngineText<TypeParam>(this->engine, path.c_str());
    char text[1024] = "as it was";
    {
        const auto noBuffer = helpers::FailingNew::OfSize(TypeParam::readBufferSize);
        EXPECT_FALSE(TypeParam::GetFromFileAsString(this->engine, path.c_str(), text));
    }
    EXPECT_STREQ(text, "as it was");
    const auto records = fakes::TakeFaultRecords();
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].signature, TypeParam::getFromFileSignature);
    EXPECT_EQ(records[0].sourceFile, TypeParam::sourceFile);
    EXPECT_EQ(records[0].timeStamp.size(), 24u);
    EXPECT_FALSE(records[0].hasInfo);
    EXPECT_TRUE(TypeParam::getFromFileLine == 0 || records[0].line == TypeParam::getFromFileLine);

    EXPECT_FALSE(platform::RemoveFile(path.c_str())) << "a file whose reading was interrupted is kept";
    EXPECT_EQ(helpers::EngineText<TypeParam>(this->engine, path.c_str()), expected);
}

REGISTER_TYPED_TEST_SUITE_P(EngineSuite, EveryLengthTo300AgreesWithTheReference, BytesAndTextAreTheSameDigest,
                            NoFileAndNullPointersGiveFalseAndNoText, SaltsGoBeforeTheFileBehindItOrBoth,
                            EmptySaltAndMissingSaltLeaveTheDigestUnsalted, ClearedSaltLeavesTheDigestUnsalted,
                            OneEngineServesAThousandFiles, FailedAllocationIsReportedAndGivesFalse);

// Files around the ends of read buffers, for functions whose references are fast enough. The comparison with libgcrypt
// has every length to 4,200.
template <class Function>
class EngineLengthSuite : public testing::Test {
  protected:
    typename Function::Engine engine{nullptr};
};

TYPED_TEST_SUITE_P(EngineLengthSuite);

TYPED_TEST_P(EngineLengthSuite, LengthsAroundTheReadBuffersAgreeWithTheReference) {
    for (const std::size_t border : {1'000'000u, 1'048'576u, 2'097'152u})
        for (std::size_t length = border - 1; length <= border + 1; ++length)
            helpers::ExpectReferenceDigest<TypeParam>(this->engine, length, helpers::engineSuiteSeed);
}

REGISTER_TYPED_TEST_SUITE_P(EngineLengthSuite, LengthsAroundTheReadBuffersAgreeWithTheReference);
