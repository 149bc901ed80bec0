// SPDX-License-Identifier: MIT
// Both engines through files.
#include "crypto/CCrypto_Md4.h"
#include "crypto/CCrypto_Md5.h"

#include "tests/helpers/EngineSuite.h"
#include "tests/reference/Md4.h"
#include "tests/reference/Md5.h"

namespace {

using helpers::Bytes;
using Message = std::span<const std::uint8_t>;

template <class EngineType>
struct Function {
    using Engine = EngineType;
    static constexpr std::size_t digestSize = 16;
    static constexpr std::size_t readBufferSize = 1'048'576;
    static constexpr int getFromFileLine = 0; // not fixed
    static bool GetFromFile(Engine& engine, const wchar_t* path, unsigned char* digest) {
        return engine.GetFromFile(path, digest);
    }
    static bool GetFromFileAsString(Engine& engine, const wchar_t* path, char* text) {
        return engine.GetFromFileAsString(path, text);
    }
};

struct Md4 : Function<CCrypto_Md4> {
    static constexpr const char* name = "Md4";
    static constexpr const char* sourceFile = "crypto/CCrypto_Md4.cpp";
    static constexpr const char* getFromFileSignature =
        "bool __cdecl CCrypto_Md4::GetFromFile(const wchar_t *,unsigned char [])";
    static Bytes Reference(Message message) { return reference::Md4(message); }
};

struct Md5 : Function<CCrypto_Md5> {
    static constexpr const char* name = "Md5";
    static constexpr const char* sourceFile = "crypto/CCrypto_Md5.cpp";
    static constexpr const char* getFromFileSignature =
        "bool __cdecl CCrypto_Md5::GetFromFile(const wchar_t *,unsigned char [])";
    static Bytes Reference(Message message) { return reference::Md5(message); }
};

using Functions = testing::Types<Md4, Md5>;
INSTANTIATE_TYPED_TEST_SUITE_P(Md4Md5, EngineSuite, Functions, helpers::FamilyNames);
INSTANTIATE_TYPED_TEST_SUITE_P(Md4Md5, EngineLengthSuite, Functions, helpers::FamilyNames);

template <class Family>
class Md4Md5 : public testing::Test {
  protected:
    std::string Text(Message message) { return helpers::EngineText<Family>(engine_, message); }
    std::string Expected(Message message) { return helpers::ToHex(Family::Reference(message)); }

    typename Family::Engine engine_{nullptr};
};

TYPED_TEST_SUITE(Md4Md5, Functions, helpers::FamilyNames);

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
