// SPDX-License-Identifier: MIT
#include "crypto/CCrypto_Md4.h"
#include "crypto/CCrypto_Md5.h"
#include "hash/kernels/KernelSelect.h"

#include "tests/helpers/DigestText.h"
#include "tests/helpers/GuardedBuffer.h"
#include "tests/oracle/Libgcrypt.h"

#include <gtest/gtest.h>

namespace {

using Message = std::span<const std::uint8_t>;

template <class Engine>
void ExpectAgreement(Engine& engine, int algorithm, Message message) {
    const std::string text = helpers::DigestText(
        message, [&](const wchar_t* path, char* output) { return engine.GetFromFileAsString(path, output); });
    EXPECT_EQ(text, helpers::ToHex(oracle::Digest(algorithm, message))) << message.size() << " bytes";
}

void ExpectAgreementOfBoth(Message message) {
    CCrypto_Md4 md4(nullptr);
    ExpectAgreement(md4, GCRY_MD_MD4, message);
    CCrypto_Md5 md5(nullptr);
    ExpectAgreement(md5, GCRY_MD_MD5, message);
}

TEST(Md4Md5Oracle, EveryLengthTo300Agrees) {
    const helpers::Bytes message = helpers::PseudoRandomBytes(300, 5);
    for (std::size_t length = 0; length <= message.size(); ++length)
        ExpectAgreementOfBoth({message.data(), length});
}

TEST(Md4Md5Oracle, FilesAroundTheReadBufferAgree) {
    const helpers::Bytes message = helpers::PseudoRandomBytes(2'097'153, 6);
    for (const std::size_t length : {1'048'575u, 1'048'576u, 1'048'577u, 2'097'152u, 2'097'153u})
        ExpectAgreementOfBoth({message.data(), length});
}

// The bit count passes 2^32 eight times, and the update's own count is as high as it can be.
TEST(Md4Md5OracleSlow, UpdateOfNearly4GigabytesAfterAPartialBlockAgrees) {
    const unsigned int first = 50;
    const unsigned int second = 0xffffffff;
    const helpers::GuardedBuffer memory(std::size_t{first} + second);
    const Message message(memory.Front(), std::size_t{first} + second);
    memory.Front()[first] = 1;
    memory.Front()[message.size() - 1] = 2;
    const fyrn::kernels::KernelSet& kernels = fyrn::kernels::Kernels();
    for (const auto& [compress, algorithm] :
         {std::pair(kernels.md4, GCRY_MD_MD4), {kernels.md5, GCRY_MD_MD5}}) {
        Md4Md5Context context;
        context.Reset();
        context.SetInitialState();
        context.Absorb(message.data(), first, compress);
        context.Absorb(message.data() + first, second, compress);
        context.Finish(compress);
        EXPECT_EQ(helpers::ToHex(context.digest), helpers::ToHex(oracle::Digest(algorithm, message)));
    }
}

} // namespace
