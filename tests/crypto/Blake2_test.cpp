// SPDX-License-Identifier: MIT
#include "crypto/CCrypto_Blake2.h"

#include "hash/kernels/Blake2b.h"
#include "hash/kernels/ByteOrder.h"
#include "tests/helpers/EngineSuite.h"
#include "tests/reference/Blake2b.h"

namespace {

template <unsigned char digestLength>
struct Blake2Function {
    static constexpr const char* name = digestLength == 16   ? "128"
                                        : digestLength == 20 ? "160"
                                        : digestLength == 28 ? "224"
                                        : digestLength == 32 ? "256"
                                        : digestLength == 48 ? "384"
                                                             : "512";
    using Engine = CCrypto_Blake2;
    static constexpr std::size_t digestSize = digestLength;
    static constexpr std::size_t readBufferSize = 1'048'576;
    static constexpr const char* sourceFile = "crypto/CCrypto_Blake2.cpp";
    static constexpr const char* getFromFileSignature =
        "bool __cdecl CCrypto_Blake2::GetFromFile(const wchar_t *,unsigned char *,int,unsigned char,"
        "const void *,unsigned char)";
    static constexpr int getFromFileLine = 546;

    static bool GetFromFile(Engine& engine, const wchar_t* path, unsigned char* digest) {
        return engine.GetFromFile(path, digest, 0, digestLength, nullptr, 0);
    }
    static bool GetFromFileAsString(Engine& engine, const wchar_t* path, char* text) {
        return engine.GetFromFileAsString(path, text, 0, digestLength, nullptr, 0);
    }
    static helpers::Bytes Reference(std::span<const std::uint8_t> message) {
        return reference::Blake2b(message, digestLength);
    }
};

using Blake2Functions = testing::Types<Blake2Function<16>, Blake2Function<20>, Blake2Function<28>,
                                       Blake2Function<32>, Blake2Function<48>, Blake2Function<64>>;
INSTANTIATE_TYPED_TEST_SUITE_P(Blake2, EngineSuite, Blake2Functions, helpers::FamilyNames);
INSTANTIATE_TYPED_TEST_SUITE_P(Blake2, EngineLengthSuite, Blake2Functions, helpers::FamilyNames);

// RFC 7693, appendix E: messages and keys for its self-test.
helpers::Bytes SelfTestBytes(std::size_t length, std::uint32_t seed) {
    std::uint32_t a = 0xDEAD4BAD * seed;
    std::uint32_t b = 1;
    helpers::Bytes bytes(length);
    for (auto& byte : bytes) {
        const std::uint32_t t = a + b;
        a = b;
        b = t;
        byte = static_cast<std::uint8_t>(t >> 24);
    }
    return bytes;
}

TEST(Blake2Reference, PassesTheSelfTestOfRfc7693) {
    helpers::Bytes digests;
    for (const std::size_t digestLength : {20u, 32u, 48u, 64u}) {
        for (const std::size_t length : {0u, 3u, 128u, 129u, 255u, 1024u}) {
            const helpers::Bytes message = SelfTestBytes(length, static_cast<std::uint32_t>(length));
            const helpers::Bytes key = SelfTestBytes(digestLength, static_cast<std::uint32_t>(digestLength));
            digests = helpers::Joined(digests, reference::Blake2b(message, digestLength));
            digests = helpers::Joined(digests, reference::Blake2b(message, digestLength, key));
        }
    }
    EXPECT_EQ(helpers::ToHex(reference::Blake2b(digests, 32)),
              "c23a7800d98123bd10f506c61e29da5603d763b8bbad2e737f5e765a7bccd475");
}

TEST(Blake2, MembersGiveDigestsOfEveryLength) {
    const helpers::Bytes message = helpers::PseudoRandomBytes(300, 11);
    CCrypto_Blake2 engine(nullptr);
    for (unsigned char length = 1; length <= 64; ++length) {
        ASSERT_TRUE(engine.Blake2_Initialize(length));
        engine.Blake2_Update(nullptr, 0);
        engine.Blake2_Update(message.data(), 128);
        engine.Blake2_Update(message.data() + 128, 172);
        helpers::Bytes digest(length);
        EXPECT_TRUE(engine.Blake2_Final(digest.data(), length));
        EXPECT_EQ(digest, reference::Blake2b(message, length)) << int{length};
    }
}

TEST(Blake2, FinishesOnlyOnce) {
    CCrypto_Blake2 engine(nullptr);
    std::uint8_t digest[64] = {};
    engine.Blake2_Initialize(64);
    EXPECT_TRUE(engine.Blake2_Final(digest, 64));
    digest[0] = 0x5a;
    EXPECT_FALSE(engine.Blake2_Final(digest, 64));
    EXPECT_EQ(digest[0], 0x5a);
    EXPECT_TRUE(engine.Blake2_Initialize(64)) << "a new start is a new digest";
    EXPECT_TRUE(engine.Blake2_Final(digest, 64));
}

TEST(Blake2, TooSmallLengthCopiesNothingAndLeavesAWarning) {
    std::wstring log;
    CCrypto_Blake2 engine(nullptr);
    engine.SetDebugLog(&log);
    std::uint8_t digest[64] = {0x5a};
    engine.Blake2_Initialize(64);
    EXPECT_TRUE(engine.Blake2_Final(digest, 32));
    EXPECT_EQ(digest[0], 0x5a);
    EXPECT_EQ(log, L"Safe_memmove(pvDst, 32, pvSrc, 64) : Warning = dst size too small\n");
}

// The chaining value, as bytes, after the empty message.
std::string ChainAfterNothing(fyrn::kernels::Blake2bState state) {
    const std::uint8_t block[128] = {};
    state.flags[0] = ~std::uint64_t{0};
    fyrn::kernels::Blake2b_Compress_Portable(state, block, 1, 0);
    std::uint8_t bytes[64];
    for (std::size_t i = 0; i < 8; ++i)
        fyrn::kernels::StoreLittle(bytes + 8 * i, state.chain[i]);
    return helpers::ToHex(bytes);
}

TEST(Blake2, GreaterLengthCopiesUpToTheWholeState) {
    fyrn::kernels::Blake2bState start{};
    std::copy_n(fyrn::kernels::blake2bInitialValues, 8, start.chain);
    start.chain[0] ^= 0x01010014;
    std::wstring log;
    CCrypto_Blake2 engine(nullptr);
    engine.SetDebugLog(&log);
    std::uint8_t digest[65] = {};
    digest[64] = 0x5a;
    engine.Blake2_Initialize(20);
    EXPECT_TRUE(engine.Blake2_Final(digest, 255));
    EXPECT_EQ(helpers::ToHex(std::span(digest).first(20)), helpers::ToHex(reference::Blake2b({}, 20)));
    EXPECT_EQ(helpers::ToHex(std::span(digest).first(64)), ChainAfterNothing(start));
    EXPECT_EQ(digest[64], 0x5a);
    EXPECT_EQ(log, L"");
}

TEST(Blake2, NewEngineStartsFromZeros) {
    CCrypto_Blake2 engine(nullptr);
    std::uint8_t digest[64];
    EXPECT_TRUE(engine.Blake2_Final(digest, 64));
    EXPECT_EQ(helpers::ToHex(digest), ChainAfterNothing({}));
    EXPECT_FALSE(engine.Blake2_Final(digest, 64));
}

TEST(Blake2, NewEngineHasNoDebugLog) {
    std::wstring log;
    CCrypto_Blake2 engine(&log);
    std::uint8_t digest[64];
    engine.Blake2_Initialize(64);
    EXPECT_TRUE(engine.Blake2_Final(digest, 32));
    EXPECT_EQ(log, L"");
}

TEST(Blake2, KeyAndCapacityAreIgnored) {
    const helpers::ScratchFiles files;
    const std::wstring path = files.Write("file", "some bytes");
    CCrypto_Blake2 engine(nullptr);
    const std::string plain = helpers::EngineText<Blake2Function<64>>(engine, path.c_str());
    char text[1024];
    ASSERT_TRUE(engine.GetFromFileAsString(path.c_str(), text, 3, 64, "key", 3));
    EXPECT_EQ(text, plain);
}

// 65 is refused before the file is opened, 0 after; neither leaves it open.
TEST(Blake2, DigestLengthsOf0And65GiveFalse) {
    const helpers::ScratchFiles files;
    const std::wstring path = files.Write("file", "some bytes");
    CCrypto_Blake2 engine(nullptr);
    unsigned char digest[64] = {0x5a};
    char text[1024] = "as it was";
    for (const std::uint8_t length : helpers::FromHex("0041ff")) {
        EXPECT_FALSE(engine.Blake2_Initialize(length));
        EXPECT_FALSE(engine.GetFromFile(path.c_str(), digest, sizeof digest, length, nullptr, 0));
        EXPECT_FALSE(engine.GetFromFileAsString(path.c_str(), text, sizeof text, length, nullptr, 0));
    }
    EXPECT_EQ(digest[0], 0x5a);
    EXPECT_STREQ(text, "as it was");
    EXPECT_TRUE(platform::RemoveFile(path.c_str())) << "the file was left open";
}

TEST(Blake2, SecureZeroMemoryClearsExactlyTheMemory) {
    std::uint8_t bytes[10];
    std::fill(std::begin(bytes), std::end(bytes), std::uint8_t{0xff});
    CCrypto_Blake2 engine(nullptr);
    engine.Blake2_SecureZeroMemory(bytes + 1, 8);
    EXPECT_EQ(helpers::ToHex(bytes), "ff0000000000000000ff");
}

} // namespace
