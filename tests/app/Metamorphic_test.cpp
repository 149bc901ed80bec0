// SPDX-License-Identifier: MIT
// What must hold between the digests of related files, whatever the digests are, for every row of the hash table.
#include "app/HashTable.h"
#include "tests/helpers/RowName.h"
#include "tests/helpers/RowReference.h"
#include "tests/helpers/ScratchFiles.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>

namespace {

using helpers::Bytes;
using helpers::RowName;

constexpr std::uint64_t seed = 4343;

class EveryRow : public testing::Test {
  protected:
    std::string Digest(const HashRow& row, std::span<const std::uint8_t> message) {
        const std::wstring path = files_.Write("file", message);
        return row.hash(*context_, path.c_str()) ? context_->hashText : "failed";
    }

    helpers::ScratchFiles files_;
    std::unique_ptr<RunContext> context_ = std::make_unique<RunContext>();
};

TEST_F(EveryRow, AgreesWithTheReferences) {
    for (const std::size_t length : {0u, 1u, 31u, 64u, 111u, 137u, 200u, 600u}) {
        const Bytes message = helpers::PseudoRandomBytes(length, seed);
        for (const HashRow& row : hashTable)
            EXPECT_EQ(Digest(row, message), helpers::RowReference(RowName(row), message))
                << RowName(row) << ", " << length << " bytes, seed " << seed;
    }
}

TEST_F(EveryRow, FlippingAnySingleBitChangesTheDigest) {
    Bytes message = helpers::PseudoRandomBytes(75, seed);
    for (const HashRow& row : hashTable) {
        const std::string whole = Digest(row, message);
        for (std::size_t bit = 0; bit < 8 * message.size(); ++bit) {
            message[bit / 8] ^= static_cast<std::uint8_t>(1 << bit % 8);
            EXPECT_NE(Digest(row, message), whole) << RowName(row) << ", bit " << bit << ", seed " << seed;
            message[bit / 8] ^= static_cast<std::uint8_t>(1 << bit % 8);
        }
    }
}

// Zeros, because they are what padding is made of.
TEST_F(EveryRow, AppendingAByteChangesTheDigest) {
    for (const HashRow& row : hashTable) {
        Bytes message;
        std::string before = Digest(row, message);
        while (message.size() < 290) {
            message.push_back(0);
            std::string now = Digest(row, message);
            EXPECT_NE(now, before) << RowName(row) << ", " << message.size() << " bytes";
            before = std::move(now);
        }
    }
}

TEST_F(EveryRow, EveryValueOfAnAppendedByteGivesAnotherDigest) {
    Bytes message = helpers::PseudoRandomBytes(64, seed);
    for (const HashRow& row : hashTable) {
        std::set<std::string> digests = {Digest(row, message)};
        message.push_back(0);
        for (int value = 0; value < 256; ++value) {
            message.back() = static_cast<std::uint8_t>(value);
            digests.insert(Digest(row, message));
        }
        message.pop_back();
        EXPECT_EQ(digests.size(), 257u) << RowName(row) << ", seed " << seed;
    }
}

TEST_F(EveryRow, DependsOnNothingButTheContent) {
    const Bytes message = helpers::PseudoRandomBytes(500, seed);
    const std::wstring other = files_.Write("another name.txt", message);
    for (const HashRow& row : hashTable) {
        const std::string first = Digest(row, message);
        Digest(row, helpers::PseudoRandomBytes(501, seed + 1));
        EXPECT_EQ(Digest(row, message), first) << RowName(row);
        ASSERT_TRUE(row.hash(*context_, other.c_str()));
        EXPECT_EQ(context_->hashText, first) << RowName(row);
    }
}

// Rows that take salt and file as one message: wherever the message is cut into the two, the digest is the same. The
// departures of SHA-3, KECCAK, MD6 and Tiger have tests of their own.
TEST_F(EveryRow, WithAPlainSaltIsTheSameForEverySplit) {
    const Bytes message = helpers::PseudoRandomBytes(260, seed);
    std::size_t rows = 0;
    for (const HashRow& row : hashTable) {
        const std::string name = RowName(row);
        if (row.saltedEngine == nullptr || name.starts_with("SHA3") || name.starts_with("MD6") ||
            name.starts_with("TIGER"))
            continue;
        ++rows;
        const std::string whole = Digest(row, message);
        CCrypto_Salt& engine = row.saltedEngine(*context_);
        for (std::ptrdiff_t cut = 1; cut <= std::ssize(message); ++cut) {
            const Bytes salt(message.begin(), message.begin() + cut);
            const Bytes file(message.begin() + cut, message.end());
            engine.SetSalt_FromFile(files_.Write("salt", salt).c_str(), EnumSaltType::Before);
            EXPECT_EQ(Digest(row, file), whole) << name << ", salt of " << cut << " bytes in front";
            engine.SetSalt_FromFile(files_.Write("salt", file).c_str(), EnumSaltType::After);
            EXPECT_EQ(Digest(row, salt), whole) << name << ", file of " << cut << " bytes in front";
        }
        engine.SetSalt_FromFile(L"", EnumSaltType::None);
    }
    EXPECT_GE(rows, 13u);
}

TEST_F(EveryRow, AShorterRowOfAFamilyIsNotTheStartOfALonger) {
    const Bytes message = helpers::PseudoRandomBytes(100, seed);
    for (std::size_t i = 1; i < hashRowCount; ++i) {
        const std::string name = RowName(hashTable[i]);
        if (name.starts_with("TIGER") || name.starts_with("CRC"))
            continue; // Tiger's are just that, and CRCs have nothing in common
        const std::string shorter = Digest(hashTable[i - 1], message);
        EXPECT_FALSE(Digest(hashTable[i], message).starts_with(shorter)) << name;
    }
}

} // namespace
