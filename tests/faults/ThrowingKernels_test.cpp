// SPDX-License-Identifier: MIT
// Catch sites that no file and no salt can reach: here every kernel throws, since this program brings its own
// choice of kernels.
#include "crypto/CCrypto_Blake2.h"
#include "crypto/CCrypto_Md4.h"
#include "crypto/CCrypto_Md5.h"
#include "crypto/CCrypto_Md6.h"
#include "crypto/CCrypto_Skein.h"
#include "crypto/CCrypto_Tiger.h"
#include "crypto/CCrypto_Whirlpool.h"
#include "hash/kernels/KernelSelect.h"
#include "tests/fakes/FaultRecorder.h"
#include "tests/helpers/Bytes.h"
#include "tests/helpers/FailingNew.h"
#include "tests/helpers/ScratchFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include <stdexcept>
#include <string>

namespace {

std::array<std::uint32_t, 4> md4Md5State; // what the kernel of MD4 or MD5 was last given

} // namespace

namespace fyrn::kernels {

const KernelSet& Kernels() {
    static const KernelSet throwing = [] {
        const auto skein = [](std::uint64_t*, std::uint64_t*, const std::uint8_t*, std::size_t,
                              std::uint64_t) { throw std::runtime_error("Skein"); };
        KernelSet set{};
        set.blake2b = [](Blake2bState&, const std::uint8_t*, std::size_t, std::uint64_t) {
            throw std::runtime_error("BLAKE2b");
        };
        const auto md4Md5 = [](std::uint32_t* state, const std::uint8_t*, std::size_t) {
            std::copy_n(state, 4, md4Md5State.begin());
            throw std::runtime_error("MD4 or MD5");
        };
        set.md4 = md4Md5;
        set.md5 = md4Md5;
        set.skein256 = skein;
        set.skein512 = skein;
        set.skein1024 = skein;
        set.md6 = [](std::uint8_t*, const std::uint8_t*, std::size_t, const Md6Batch&) {
            throw std::runtime_error("MD6");
        };
        set.tiger = [](std::uint64_t*, const std::uint8_t*, std::size_t) {
            throw std::runtime_error("Tiger");
        };
        set.whirlpool = [](std::uint64_t*, const std::uint8_t*, std::size_t) {
            throw std::runtime_error("Whirlpool");
        };
        return set;
    }();
    return throwing;
}

} // namespace fyrn::kernels

namespace {

const std::uint8_t bytes[300] = {};
std::uint8_t digest[128] = {0x5a};

// Whether exactly this fault was reported since the last call. Line 0 stands for one that is not fixed.
void ExpectReport(const char* sourceFile, int line, const char* signature) {
    const auto records = fakes::TakeFaultRecords();
    ASSERT_EQ(records.size(), 1u) << signature;
    EXPECT_EQ(records[0].sourceFile, sourceFile);
    EXPECT_EQ(records[0].signature, signature);
    EXPECT_TRUE(line == 0 || records[0].line == line) << signature << ", line " << records[0].line;
    EXPECT_FALSE(records[0].hasInfo);
    EXPECT_EQ(digest[0], 0x5a) << "the output was touched";
}

TEST(ThrowingKernels, Blake2ReportsAndGoesOn) {
    constexpr const char* source = "crypto/CCrypto_Blake2.cpp";
    CCrypto_Blake2 engine(nullptr);
    ASSERT_TRUE(engine.Blake2_Initialize(64));
    engine.Blake2_Update(bytes, sizeof bytes);
    ExpectReport(source, 373,
                 "void __cdecl CCrypto_Blake2::Blake2_Update(const unsigned char *,unsigned __int64)");
    EXPECT_FALSE(engine.Blake2_Final(digest, 64));
    ExpectReport(source, 176, "bool __cdecl CCrypto_Blake2::Blake2_Final(unsigned char *,unsigned char)");
}

// Transform's own site catches, wherever the block comes from, and the member above goes on. The block that waits passes
// through the buffer, the others are one run.
template <class Engine>
void ExpectBlockReports(const std::string& name) {
    const std::string source = "crypto/" + name + ".cpp";
    const std::string transform = "void __cdecl " + name + "::Transform(const unsigned char *)";
    Engine engine(nullptr);
    engine.DoBlock(bytes, 64);
    ExpectReport(source.c_str(), 0, transform.c_str());
    engine.DoBlock(bytes, 60);
    EXPECT_TRUE(fakes::TakeFaultRecords().empty()) << "nothing to compress";
    engine.DoBlock(bytes, 236);
    const auto records = fakes::TakeFaultRecords();
    ASSERT_EQ(records.size(), 2u) << name;
    EXPECT_EQ(records[0].signature, transform);
    EXPECT_EQ(records[1].signature, transform);
    engine.Transform(bytes);
    ExpectReport(source.c_str(), 0, transform.c_str());
    engine.Finalize();
    ExpectReport(source.c_str(), 0, transform.c_str());
}

TEST(ThrowingKernels, Md4AndMd5ReportAndGoOn) {
    ExpectBlockReports<CCrypto_Md4>("CCrypto_Md4");
    ExpectBlockReports<CCrypto_Md5>("CCrypto_Md5");
}

// ResetContext zeroes the chaining value that a file begins with.
template <class Engine>
void ExpectResetToZero() {
    const helpers::ScratchFiles files;
    Engine engine(nullptr);
    engine.GetFromFile(files.Write("file", "abc").c_str(), digest);
    engine.Transform(bytes);
    EXPECT_EQ(md4Md5State, (std::array<std::uint32_t, 4>{0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476}));
    engine.ResetContext();
    engine.Transform(bytes);
    EXPECT_EQ(md4Md5State, (std::array<std::uint32_t, 4>{}));
    fakes::TakeFaultRecords();
    digest[0] = 0x5a;
}

TEST(ThrowingKernels, Md4AndMd5AreResetToZero) {
    ExpectResetToZero<CCrypto_Md4>();
    ExpectResetToZero<CCrypto_Md5>();
}

// What results is the chaining value that the functions begin with.
template <class Engine>
void ExpectADigestInSpiteOfFaults() {
    const helpers::ScratchFiles files;
    Engine engine(nullptr);
    char text[33] = "";
    EXPECT_TRUE(engine.GetFromFileAsString(files.Write("file", std::string(100, 'x')).c_str(), text));
    EXPECT_STREQ(text, "0123456789abcdeffedcba9876543210");
    EXPECT_EQ(fakes::TakeFaultRecords().size(), 2u) << "one in DoBlock, one in Finalize";
}

TEST(ThrowingKernels, Md4AndMd5GiveADigestInSpiteOfFaults) {
    ExpectADigestInSpiteOfFaults<CCrypto_Md4>();
    ExpectADigestInSpiteOfFaults<CCrypto_Md5>();
}

// Sets up a context, then lets both of its operations meet the kernel.
template <class Context>
void ExpectSkeinReports(bool (CCrypto_Skein::*init)(Context*),
                        bool (CCrypto_Skein::*update)(Context*, const unsigned char*, unsigned int),
                        bool (CCrypto_Skein::*final)(Context*, unsigned char*), int updateLine, int finalLine,
                        const std::string& bits) {
    constexpr const char* source = "crypto/CCrypto_Skein.cpp";
    const std::string member = "bool __cdecl CCrypto_Skein::Skein_" + bits;
    const std::string context = "(struct CCrypto_Skein::SKEIN_" + bits + "_CONTEXT *,";
    CCrypto_Skein engine(nullptr);
    Context message{};
    ASSERT_TRUE((engine.*init)(&message));
    EXPECT_FALSE((engine.*update)(&message, bytes, sizeof bytes));
    ExpectReport(source, updateLine,
                 (member + "_Update" + context + "const unsigned char *,unsigned int)").c_str());
    EXPECT_FALSE((engine.*final)(&message, digest));
    ExpectReport(source, finalLine, (member + "_Final" + context + "unsigned char *)").c_str());
}

TEST(ThrowingKernels, SkeinReportsAndGivesFalse) {
    ExpectSkeinReports(&CCrypto_Skein::Skein_256_Init, &CCrypto_Skein::Skein_256_Update,
                       &CCrypto_Skein::Skein_256_Final, 707, 509, "256");
    ExpectSkeinReports(&CCrypto_Skein::Skein_512_Init, &CCrypto_Skein::Skein_512_Update,
                       &CCrypto_Skein::Skein_512_Final, 982, 762, "512");
    ExpectSkeinReports(&CCrypto_Skein::Skein_1024_Init, &CCrypto_Skein::Skein_1024_Update,
                       &CCrypto_Skein::Skein_1024_Final, 1302, 1037, "1024");
}

TEST(ThrowingKernels, WhirlpoolReportsAndGoesOn) {
    constexpr const char* source = "crypto/CCrypto_Whirlpool.cpp";
    for (const int first : {0, 60}) { // whole blocks alone; one in the buffer
        CCrypto_Whirlpool engine(nullptr);
        engine.AddDataBlock(bytes, first);
        engine.AddDataBlock(bytes, 200);
        ExpectReport(source, 0, "void __cdecl CCrypto_Whirlpool::AddDataBlock(const unsigned char *,int)");
        engine.Finalize();
        ExpectReport(source, 0, "void __cdecl CCrypto_Whirlpool::Finalize(void)");
    }
}

// What comes behind a block that could not be compressed is written inside the buffer.
TEST(ThrowingKernels, TigerReportsAndGoesOn) {
    constexpr const char* source = "crypto/CCrypto_Tiger.cpp";
    for (const std::uint64_t first : {0u, 60u}) {
        CCrypto_Tiger engine(nullptr);
        engine.Tiger_Initialize();
        engine.Tiger_Transform(bytes, first);
        engine.Tiger_Transform(bytes, 200);
        ExpectReport(source, 0,
                     "void __cdecl CCrypto_Tiger::Tiger_Transform(const unsigned char *,unsigned __int64)");
        engine.Tiger_Finalize();
        ExpectReport(source, 0, "void __cdecl CCrypto_Tiger::Tiger_Finalize(void)");
    }
}

// Which members report, in their order, while a file is hashed with a salt before it and no memory for its bytes.
template <class Engine, class GetFromFile>
std::vector<std::string> ReportsWithoutBuffer(Engine& engine, std::size_t readBufferSize, bool expected,
                                              GetFromFile getFromFile) {
    const helpers::ScratchFiles files;
    const std::wstring path = files.Write("file", std::string(100, 'x'));
    const std::wstring salt = files.Write("salt", std::string(10'000, 'x'));
    EXPECT_EQ(engine.SetSalt_FromFile(salt.c_str(), EnumSaltType::Before), 10'000u);
    {
        const auto noBuffer = helpers::FailingNew::OfSize(readBufferSize);
        EXPECT_EQ(getFromFile(engine, path.c_str()), expected);
    }
    std::vector<std::string> members;
    for (const fakes::FaultRecord& record : fakes::TakeFaultRecords())
        members.push_back(record.signature.substr(0, record.signature.find('(')));
    return members;
}

// The buffer comes first, so nothing is fed when it is refused.
TEST(ThrowingKernels, TheBufferIsAllocatedBeforeTheSaltIsFed) {
    using Members = std::vector<std::string>;
    CCrypto_Md4 md4(nullptr);
    EXPECT_EQ(ReportsWithoutBuffer(
                  md4, 1'048'576, false,
                  [](auto& engine, const wchar_t* path) { return engine.GetFromFile(path, digest); }),
              Members{"bool __cdecl CCrypto_Md4::GetFromFile"});
    CCrypto_Md5 md5(nullptr);
    EXPECT_EQ(ReportsWithoutBuffer(
                  md5, 1'048'576, false,
                  [](auto& engine, const wchar_t* path) { return engine.GetFromFile(path, digest); }),
              Members{"bool __cdecl CCrypto_Md5::GetFromFile"});
    CCrypto_Blake2 blake2(nullptr);
    EXPECT_EQ(ReportsWithoutBuffer(blake2, 1'048'576, false,
                                   [](auto& engine, const wchar_t* path) {
                                       return engine.GetFromFile(path, digest, 64, 64, nullptr, 0);
                                   }),
              Members{"bool __cdecl CCrypto_Blake2::GetFromFile"});
    CCrypto_Skein skein(nullptr);
    EXPECT_EQ(ReportsWithoutBuffer(skein, 1'048'576, false,
                                   [](auto& engine, const wchar_t* path) {
                                       return engine.GetFromFile(path, digest, 64, 512);
                                   }),
              Members{"bool __cdecl CCrypto_Skein::GetFromFile"});
    CCrypto_Tiger tiger(nullptr);
    EXPECT_EQ(ReportsWithoutBuffer(tiger, 1'048'576, false,
                                   [](auto& engine, const wchar_t* path) {
                                       return engine.GetFromFile(path, digest, 24, 192, true, 3);
                                   }),
              Members{"bool __cdecl CCrypto_Tiger::GetFromFile"});
    CCrypto_Whirlpool whirlpool(nullptr);
    EXPECT_EQ(ReportsWithoutBuffer(
                  whirlpool, 1'000'000, false,
                  [](auto& engine, const wchar_t* path) { return engine.GetFromFile(path, digest); }),
              Members{"bool __cdecl CCrypto_Whirlpool::GetFromFile"});
}

// MD6 feeds its salt first, and a fault there ends the work: no buffer is asked for.
TEST(ThrowingKernels, Md6FeedsItsSaltBeforeTheBufferIsAllocated) {
    CCrypto_Md6 md6(nullptr);
    EXPECT_EQ(ReportsWithoutBuffer(md6, 1'048'576, true,
                                   [](auto& engine, const wchar_t* path) {
                                       return engine.GetFromFile(path, digest, 64, 512, 0);
                                   }),
              std::vector<std::string>{"int __cdecl CCrypto_Md6::Md6_Update"});
}

// MD4, MD5 and Tiger are initialised behind the allocation: without memory they stay as they were.
template <class Engine>
void ExpectNoInitialState() {
    Engine engine(nullptr);
    ReportsWithoutBuffer(engine, 1'048'576, false,
                         [](auto& hash, const wchar_t* path) { return hash.GetFromFile(path, digest); });
    engine.Transform(bytes);
    fakes::TakeFaultRecords();
    EXPECT_EQ(md4Md5State, (std::array<std::uint32_t, 4>{}));
}

TEST(ThrowingKernels, WithoutMemoryTheContextStaysAsItWas) {
    ExpectNoInitialState<CCrypto_Md4>();
    ExpectNoInitialState<CCrypto_Md5>();
    CCrypto_Tiger tiger(nullptr);
    ReportsWithoutBuffer(tiger, 1'048'576, false, [](auto& engine, const wchar_t* path) {
        return engine.GetFromFile(path, digest, 24, 192, true, 3);
    });
    EXPECT_EQ(tiger.State()[0], 0u);
}

} // namespace
