// SPDX-License-Identifier: MIT
// Catch sites that no file and no salt can reach: here every kernel throws, since this program brings its own
// choice of kernels.
#include "crypto/CCrypto_Blake2.h"
#include "crypto/CCrypto_Md4.h"
#include "crypto/CCrypto_Md5.h"
#include "crypto/CCrypto_Skein.h"
#include "crypto/CCrypto_Whirlpool.h"
#include "hash/kernels/KernelSelect.h"
#include "tests/fakes/FaultRecorder.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace fyrn::kernels {

const KernelSet& Kernels() {
    static const KernelSet throwing = [] {
        const auto skein = [](std::uint64_t*, std::uint64_t*, const std::uint8_t*, std::size_t,
                              std::uint64_t) { throw std::runtime_error("Skein"); };
        KernelSet set{};
        set.blake2b = [](Blake2bState&, const std::uint8_t*, std::size_t, std::uint64_t) {
            throw std::runtime_error("BLAKE2b");
        };
        const auto md4Md5 = [](std::uint32_t*, const std::uint8_t*, std::size_t) {
            throw std::runtime_error("MD4 or MD5");
        };
        set.md4 = md4Md5;
        set.md5 = md4Md5;
        set.skein256 = skein;
        set.skein512 = skein;
        set.skein1024 = skein;
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

template <class Engine>
void ExpectBlockReports(const std::string& name) {
    const std::string source = "crypto/" + name + ".cpp";
    const std::string member = "void __cdecl " + name + "::";
    Engine engine(nullptr);
    engine.DoBlock(bytes, sizeof bytes);
    ExpectReport(source.c_str(), 0, (member + "DoBlock(const unsigned char *,unsigned int)").c_str());
    engine.Transform(bytes);
    ExpectReport(source.c_str(), 0, (member + "Transform(const unsigned char *)").c_str());
    engine.Finalize();
    ExpectReport(source.c_str(), 0, (member + "Finalize(void)").c_str());
}

TEST(ThrowingKernels, Md4AndMd5ReportAndGoOn) {
    ExpectBlockReports<CCrypto_Md4>("CCrypto_Md4");
    ExpectBlockReports<CCrypto_Md5>("CCrypto_Md5");
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
    CCrypto_Whirlpool engine(nullptr);
    engine.AddDataBlock(bytes, sizeof bytes);
    ExpectReport(source, 0, "void __cdecl CCrypto_Whirlpool::AddDataBlock(const unsigned char *,int)");
    engine.Finalize();
    ExpectReport(source, 0, "void __cdecl CCrypto_Whirlpool::Finalize(void)");
}

} // namespace
