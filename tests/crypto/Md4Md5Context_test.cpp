// SPDX-License-Identifier: MIT
#include "crypto/Md4Md5Context.h"

#include "hash/kernels/KernelSelect.h"
#include "tests/helpers/Bytes.h"
#include "tests/reference/Md4.h"
#include "tests/reference/Md5.h"

#include <gtest/gtest.h>

namespace {

using helpers::Bytes;

Md4Md5Context Started() {
    Md4Md5Context context;
    context.Reset();
    context.SetInitialState();
    return context;
}

TEST(Md4Md5Context, ResetZeroesEverything) {
    Md4Md5Context context = Started();
    context.Absorb(helpers::PseudoRandomBytes(100, 1).data(), 100, fyrn::kernels::Kernels().md5);
    context.Finish(fyrn::kernels::Kernels().md5);
    context.Reset();
    EXPECT_EQ(context.bitCountLow, 0u);
    EXPECT_EQ(context.bitCountHigh, 0u);
    EXPECT_EQ(helpers::ToHex(context.buffer), std::string(128, '0'));
    EXPECT_EQ(helpers::ToHex(context.digest), std::string(32, '0'));
    for (const std::uint32_t word : context.state)
        EXPECT_EQ(word, 0u);
}

TEST(Md4Md5Context, EverySplitIntoTwoUpdatesGivesTheDigestOfTheWhole) {
    const Bytes message = helpers::PseudoRandomBytes(260, 260);
    for (unsigned int length = 0; length <= 260; ++length) {
        const std::span<const std::uint8_t> whole(message.data(), length);
        const std::string md4 = helpers::ToHex(reference::Md4(whole));
        const std::string md5 = helpers::ToHex(reference::Md5(whole));
        for (unsigned int first = 0; first <= length; ++first) {
            for (auto* compress : {fyrn::kernels::Kernels().md4, fyrn::kernels::Kernels().md5}) {
                Md4Md5Context context = Started();
                context.Absorb(message.data(), first, compress);
                context.Absorb(message.data() + first, length - first, compress);
                context.Finish(compress);
                ASSERT_EQ(helpers::ToHex(context.digest),
                          compress == fyrn::kernels::Kernels().md4 ? md4 : md5)
                    << first << " of " << length << " bytes first";
            }
        }
    }
}

TEST(Md4Md5Context, AbsorbingNothingChangesNothing) {
    Md4Md5Context context = Started();
    context.Absorb(nullptr, 0, fyrn::kernels::Kernels().md5);
    context.Finish(fyrn::kernels::Kernels().md5);
    EXPECT_EQ(helpers::ToHex(context.digest), "d41d8cd98f00b204e9800998ecf8427e");
}

// Keeps the last 64 bytes that were compressed, where the length stands.
Bytes lastBlock;

void RecordLastBlock(std::uint32_t[4], const std::uint8_t* blocks, std::size_t count) {
    if (count != 0)
        lastBlock.assign(blocks + 64 * (count - 1), blocks + 64 * count);
}

// The length that is appended to a message of `low` + 2^32 * `high` bits and `count` more bytes.
std::string AppendedLength(std::uint32_t low, std::uint32_t high, unsigned int count) {
    Md4Md5Context context = Started();
    context.bitCountLow = low;
    context.bitCountHigh = high;
    context.Absorb(helpers::PseudoRandomBytes(count, 1).data(), count, RecordLastBlock);
    context.Finish(RecordLastBlock);
    return helpers::ToHex({lastBlock.data() + 56, 8});
}

TEST(Md4Md5Context, BitCountCarriesIntoItsHighWord) {
    EXPECT_EQ(AppendedLength(0xfffffdf8, 0, 64), "f8ffffff00000000"); // one byte below the carry
    EXPECT_EQ(AppendedLength(0xfffffdf8, 0, 65), "0000000001000000");
    EXPECT_EQ(AppendedLength(0xfffffdf8, 6, 66), "0800000007000000");
}

TEST(Md4Md5Context, BitCountIsTakenModulo2To64) {
    EXPECT_EQ(AppendedLength(0xfffffff8, 0xffffffff, 1), "0000000000000000");
    EXPECT_EQ(AppendedLength(0xfffffff8, 0xffffffff, 2), "0800000000000000");
}

} // namespace
