// SPDX-License-Identifier: MIT
// Result codes, limits, and the compression members of MD6.
#include "tests/crypto/Md6Support.h"

#include "platform/File.h"
#include "tests/fakes/FaultRecorder.h"
#include "tests/helpers/FailingNew.h"

namespace {

using namespace md6_tests;

using Words = std::vector<std::uint64_t>;

// A call of Md6_CompressStandard with arguments that are right, to be spoilt one by one.
struct Call {
    std::uint64_t value[16] = {};
    Words q = reference::Md6Q();
    Words key = Words(8, 1);
    Words block = Words(64, 2);
    std::uint64_t* C = value;
    const std::uint64_t* Q = q.data();
    const std::uint64_t* K = key.data();
    const std::uint64_t* B = block.data();
    int ell = 1;
    std::uint64_t i = 5;
    int r = 3;
    int L = 64;
    bool z = false;
    int p = 0;
    int keylen = 8;
    int d = 256;

    int Run() {
        CCrypto_Md6 engine(nullptr);
        return engine.Md6_CompressStandard(C, Q, K, ell, i, r, L, z, p, keylen, d, B);
    }
};

TEST(Md6Members, CompressionRefusesBadArguments) {
    EXPECT_EQ(Call().Run(), 0);
    const auto refused = [](auto spoil) {
        Call call;
        spoil(call);
        EXPECT_EQ(call.value[0], 0u);
        return call.Run();
    };
    EXPECT_EQ(refused([](Call& call) { call.C = nullptr; }), md6NullOutput);
    EXPECT_EQ(refused([](Call& call) { call.B = nullptr; }), md6NullInput);
    EXPECT_EQ(refused([](Call& call) { call.Q = nullptr; }), md6NullConstant);
    EXPECT_EQ(refused([](Call& call) { call.K = nullptr; }), md6NullKey);
    EXPECT_EQ(refused([](Call& call) { call.ell = -1; }), md6BadLevel);
    EXPECT_EQ(refused([](Call& call) { call.ell = 256; }), md6BadLevel);
    EXPECT_EQ(refused([](Call& call) { call.r = -1; }), md6BadRounds);
    EXPECT_EQ(refused([](Call& call) { call.r = 256; }), md6BadRounds);
    EXPECT_EQ(refused([](Call& call) { call.L = -1; }), md6BadMode);
    EXPECT_EQ(refused([](Call& call) { call.L = 256; }), md6BadMode);
    EXPECT_EQ(refused([](Call& call) { call.p = -1; }), md6BadPadding);
    EXPECT_EQ(refused([](Call& call) { call.p = 4097; }), md6BadPadding);
    EXPECT_EQ(refused([](Call& call) { call.keylen = -1; }), md6BadKeyLength);
    EXPECT_EQ(refused([](Call& call) { call.keylen = 65; }), md6BadKeyLength);
    EXPECT_EQ(refused([](Call& call) { call.d = 0; }), md6BadDigestLength);
    EXPECT_EQ(refused([](Call& call) { call.d = 513; }), md6BadDigestLength);
}

TEST(Md6Members, CompressionTakesTheLimitsOfItsArguments) {
    for (const int high : {0, 1}) {
        Call call;
        call.ell = 255 * high;
        call.r = 255 * high;
        call.L = 255 * high;
        call.z = high != 0;
        call.p = 4096 * high;
        call.keylen = 64 * high;
        call.d = 1 + 511 * high;
        ASSERT_EQ(call.Run(), 0);
        Words input = call.q;
        input.insert(input.end(), call.key.begin(), call.key.end());
        input.push_back(high != 0 ? 0xff00000000000005 : 5);
        input.push_back(high != 0 ? 0x00ffff1100040200 | 0x0000000000000000 : 1);
        if (high != 0)
            input.back() =
                (255ull << 48) + (255ull << 40) + (1ull << 36) + (4096ull << 20) + (64ull << 12) + 512;
        input.insert(input.end(), call.block.begin(), call.block.end());
        EXPECT_EQ(Words(call.value, call.value + 16), reference::Md6Compress(input, call.r));
    }
}

TEST(Md6Members, CompressRefusesNullPointersAndBadRounds) {
    CCrypto_Md6 engine(nullptr);
    std::uint64_t value[16];
    const Words input(89, 3);
    EXPECT_EQ(engine.Md6_Compress(nullptr, input.data(), 5), md6NullOutput);
    EXPECT_EQ(engine.Md6_Compress(value, nullptr, 5), md6NullInput);
    EXPECT_EQ(engine.Md6_Compress(value, input.data(), -1), md6BadRounds);
    EXPECT_EQ(engine.Md6_Compress(value, input.data(), 256), md6BadRounds);
    for (const int rounds : {0, 1, 5, 104, 255}) {
        EXPECT_EQ(engine.Md6_Compress(value, input.data(), rounds), 0);
        EXPECT_EQ(Words(value, value + 16), reference::Md6Compress(input, rounds)) << rounds;
    }
}

// The examples of the report with 5 rounds: "abc" as one node, 600 keyed bytes as two nodes and a root.
TEST(Md6Members, ExamplesOfTheReportHold) {
    const auto lastBytes = [](const std::uint64_t* value, std::size_t count) {
        Bytes bytes;
        for (std::size_t i = 0; i < 128; ++i)
            bytes.push_back(static_cast<std::uint8_t>(value[i / 8] >> (56 - 8 * (i % 8))));
        return helpers::ToHex(Message(bytes).last(count));
    };
    Call abc;
    abc.key = Words(8, 0);
    abc.K = abc.key.data();
    abc.block = Words(64, 0);
    abc.block[0] = 0x6162630000000000;
    abc.B = abc.block.data();
    abc.i = 0;
    abc.r = 5;
    abc.z = true;
    abc.p = 4096 - 24;
    abc.keylen = 0;
    ASSERT_EQ(abc.Run(), 0);
    EXPECT_EQ(lastBytes(abc.value, 32), "8854c14dc284f840ed71ad7ba542855ce189633e48c797a55121a746be48cec8");

    Bytes message;
    for (std::size_t i = 0; i < 1024; ++i)
        message.push_back(static_cast<std::uint8_t>(i < 600 ? 0x11 * (i % 7 + 1) : 0));
    Call node;
    node.key = {0x6162636465313233, 0x3435000000000000, 0, 0, 0, 0, 0, 0};
    node.K = node.key.data();
    node.keylen = 10;
    node.r = 5;
    node.d = 224;
    Words values;
    for (node.i = 0; node.i < 2; ++node.i) {
        for (std::size_t i = 0; i < 512; ++i)
            node.block[i / 8] = node.block[i / 8] << 8 | message[512 * static_cast<std::size_t>(node.i) + i];
        node.p = node.i == 0 ? 0 : 4096 - 88 * 8;
        ASSERT_EQ(node.Run(), 0);
        values.insert(values.end(), node.value, node.value + 16);
    }
    values.resize(64, 0);
    node.block = values;
    node.B = node.block.data();
    node.ell = 2;
    node.i = 0;
    node.z = true;
    node.p = 2048;
    ASSERT_EQ(node.Run(), 0);
    EXPECT_EQ(lastBytes(node.value, 28), "894cf0598ad3288ed4bb5ac5df23eba0ac388a11b7ed2e3dd5ec5131");
}

TEST(Md6Members, InitializeRefusesBadDigestLengthsAndChangesNothing) {
    CCrypto_Md6 engine(nullptr);
    const Bytes message = helpers::BytesOf("abc");
    ASSERT_EQ(engine.Initialize(160, 0), 0);
    ASSERT_EQ(engine.Md6_Update(message.data(), 8), 0);
    for (const unsigned short d : std::initializer_list<unsigned short>{0, 513, 65535})
        EXPECT_EQ(engine.Initialize(d, 7), md6BadDigestLength) << d;
    ASSERT_EQ(engine.Md6_Update(message.data() + 1, 16), 0);
    ASSERT_EQ(engine.Md6_Final(), 0);
    EXPECT_EQ(Digest(engine, 160), Expected(message, 160));
}

TEST(Md6Members, ANewEngineIsReadyFor512Bits) {
    CCrypto_Md6 engine(nullptr);
    ASSERT_EQ(engine.Md6_Final(), 0);
    EXPECT_EQ(Digest(engine, 512), Expected({}, 512));
}

TEST(Md6Members, FinalLeavesZerosBehindTheDigest) {
    CCrypto_Md6 engine(nullptr);
    for (const unsigned short d : std::initializer_list<unsigned short>{1, 7, 8, 9, 224, 512}) {
        engine.Initialize(d, 0);
        ASSERT_EQ(engine.Md6_Final(), 0);
        EXPECT_EQ(helpers::ToHex(Message(engine.HashValue(), 128)),
                  Expected({}, d) + std::string(256 - 2 * ((d + 7u) / 8), '0'));
    }
}

TEST(Md6Members, UpdateRefusesNoDataAndTakesNoBits) {
    CCrypto_Md6 engine(nullptr);
    engine.Initialize(256, 0);
    const unsigned char byte = 0xff;
    EXPECT_EQ(engine.Md6_Update(nullptr, 8), md6NullData);
    EXPECT_EQ(engine.Md6_Update(&byte, 0), 0);
    EXPECT_EQ(engine.Md6_Final(), 0);
    EXPECT_EQ(Digest(engine, 256), Expected({}, 256));
}

TEST(Md6Members, LevelsBelow0AndFrom28OnAreNotCompressed) {
    CCrypto_Md6 engine(nullptr);
    std::uint64_t value[16];
    for (const int level : {-1, -100}) {
        EXPECT_EQ(engine.Md6_CompressBlock(value, level, false), 3) << level;
        EXPECT_EQ(engine.Md6_Process(level, true), 3) << level;
        EXPECT_EQ(engine.Md6_Process(level, false), 3) << level;
    }
    for (const int level : {28, 29, 64, 1000}) {
        EXPECT_EQ(engine.Md6_CompressBlock(value, level, false), 4) << level;
        EXPECT_EQ(engine.Md6_Process(level, true), 4) << level;
    }
    EXPECT_EQ(engine.Md6_Process(28, false), 0) << "not full";
    EXPECT_EQ(engine.Md6_Process(29, false), 4);
    for (const int level : {0, 1, 27})
        EXPECT_EQ(engine.Md6_CompressBlock(value, level, false), 0) << level;
    EXPECT_EQ(engine.Md6_CompressBlock(nullptr, 1, false), md6NullOutput);
}

// The highest level that can be held gives an error when its block is to be compressed, and Md6_Final
// passes it on.
TEST(Md6Members, TheTreeEndsAtLevel28) {
    CCrypto_Md6 engine(nullptr);
    engine.Initialize(256, 0);
    EXPECT_EQ(engine.Md6_Process(27, true), 0) << "a single chaining value on the top level is left alone";
    for (int child = 1; child < 4; ++child)
        EXPECT_EQ(engine.Md6_Process(27, true), 4);
    EXPECT_EQ(engine.Md6_Process(28, false), 4);
    EXPECT_EQ(engine.Md6_Final(), 4);
}

TEST(Md6Members, FailedAllocationIsReportedAndGivesFalse) {
    const helpers::ScratchFiles files;
    const std::wstring path = files.Write("file", std::string_view("some bytes"));
    CCrypto_Md6 engine(nullptr);
    unsigned char digest[64] = {1};
    char text[1024] = "as it was";
    {
        const auto noBuffer = helpers::FailingNew::OfSize(1'048'576);
        EXPECT_FALSE(engine.GetFromFile(path.c_str(), digest, 64, 256, 0));
        EXPECT_FALSE(engine.GetFromFileAsString(path.c_str(), text, 1024, 256, 0));
    }
    EXPECT_EQ(digest[0], 1);
    EXPECT_STREQ(text, "as it was");
    const auto records = fakes::TakeFaultRecords();
    ASSERT_EQ(records.size(), 2u);
    EXPECT_EQ(
        records[0].signature,
        "bool __cdecl CCrypto_Md6::GetFromFile(const wchar_t *,unsigned char *,int,unsigned short,int)");
    EXPECT_EQ(records[0].sourceFile, "crypto/CCrypto_Md6.cpp");
    EXPECT_FALSE(platform::RemoveFile(path.c_str())) << "a file whose reading was interrupted is kept";
    EXPECT_EQ(Text(engine, path.c_str(), 256), Expected(helpers::BytesOf("some bytes"), 256));
}

} // namespace
