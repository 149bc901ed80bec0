// SPDX-License-Identifier: MIT
// Salts of the SHA engine: hashed like bytes of the file by SHA-1 and SHA-2, as messages of their own by
// SHA-3 and KECCAK.
#include "tests/helpers/ScratchFiles.h"
#include "tests/helpers/ShaRows.h"
#include "tests/reference/Keccak.h"
#include "tests/reference/SaltedSponge.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using helpers::Bytes;
using helpers::ShaRow;

Bytes Joined(const std::vector<Bytes>& messages) {
    Bytes joined;
    for (const Bytes& message : messages)
        joined.insert(joined.end(), message.begin(), message.end());
    return joined;
}

std::string ExpectedText(const ShaRow& row, const std::vector<Bytes>& messages) {
    return row.rate == 0
               ? helpers::ExpectedText(row, Joined(messages))
               : helpers::ToHex(reference::SaltedSponge(row.rate, row.padding, messages, row.digestSize));
}

struct Placement {
    EnumSaltType type;
    bool before, after;
};

constexpr Placement placements[] = {{EnumSaltType::None, false, false},
                                    {EnumSaltType::Before, true, false},
                                    {EnumSaltType::After, false, true},
                                    {EnumSaltType::Both, true, true},
                                    {EnumSaltType{4}, false, false}};

class ShaSalt : public testing::Test {
  protected:
    void ExpectSaltedDigest(const ShaRow& row, const Bytes& salt, const Bytes& file,
                            const Placement& placement) {
        std::vector<Bytes> messages = {file};
        if (placement.before && !salt.empty())
            messages.insert(messages.begin(), salt);
        if (placement.after && !salt.empty())
            messages.push_back(salt);
        ASSERT_EQ(engine_.SetSalt_FromFile(files_.Write("salt", salt).c_str(), placement.type), salt.size());
        EXPECT_EQ(helpers::ShaText(row, engine_, files_.Write("file", file).c_str()),
                  ExpectedText(row, messages))
            << row.name << ", salt of " << salt.size() << " bytes, file of " << file.size() << ", placement "
            << static_cast<int>(placement.type);
    }

    helpers::ScratchFiles files_;
    CCrypto_Sha engine_{nullptr};
};

using ShaSaltSlow = ShaSalt;

TEST_F(ShaSaltSlow, EverySaltLengthTo200InEveryPlace) {
    for (const ShaRow& row : helpers::ShaRows())
        for (std::size_t length = 1; length <= 200; ++length)
            for (const Placement& placement : placements)
                ExpectSaltedDigest(row, helpers::PseudoRandomBytes(length, 1),
                                   helpers::PseudoRandomBytes(length * 7 % 311, 2), placement);
}

TEST_F(ShaSalt, FilesAroundTheRateWithALongSalt) {
    const Bytes salt = helpers::PseudoRandomBytes(1000, 1);
    for (const ShaRow& row : helpers::ShaRows())
        for (const std::size_t length : {0u, 71u, 72u, 73u, 103u, 104u, 135u, 136u, 137u, 143u, 144u, 145u})
            for (const Placement& placement : placements)
                ExpectSaltedDigest(row, salt, helpers::PseudoRandomBytes(length, 2), placement);
}

TEST_F(ShaSaltSlow, FileLongerThanTheReadBufferBetweenSalts) {
    const Bytes salt = helpers::PseudoRandomBytes(33, 1);
    for (const ShaRow& row : helpers::ShaRows())
        ExpectSaltedDigest(row, salt, helpers::PseudoRandomBytes(row.readBufferSize + 100, 2), placements[3]);
}

TEST_F(ShaSalt, EmptySaltLeavesEveryDigestUnsalted) {
    for (const ShaRow& row : helpers::ShaRows())
        for (const Placement& placement : placements)
            ExpectSaltedDigest(row, {}, helpers::BytesOf("some bytes"), placement);
}

TEST_F(ShaSalt, Sha2WithASaltBeforeEqualsAFileThatBeginsWithIt) {
    const ShaRow& row = helpers::ShaRows()[1];
    engine_.SetSalt_FromFile(files_.Write("salt", std::string_view("a")).c_str(), EnumSaltType::Before);
    EXPECT_EQ(helpers::ShaText(row, engine_, files_.Write("file", std::string_view("bc")).c_str()),
              "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
}

// SHA3-256, written out by hand: the salt's last block leaves its bytes 140..199 and its padding byte in
// the block of the file, and that of the file leaves nothing in the second salt's, which is as long as the
// first.
TEST_F(ShaSalt, StaleBytesOfTheSaltStayInTheBlockOfAShorterFile) {
    const Bytes salt = helpers::PseudoRandomBytes(200, 5);
    Bytes saltEnd(136);
    std::copy(salt.begin() + 136, salt.end(), saltEnd.begin());
    saltEnd[64] = 0x06;
    saltEnd[135] = 0x80;
    Bytes file(136);
    file[0] = 'a';
    file[1] = 'b';
    file[2] = 'c';
    file[3] = 0x06;
    std::copy(salt.begin() + 140, salt.end(), file.begin() + 4);
    file[64] = 0x06;
    file[135] = 0x80;
    reference::KeccakState state = {};
    for (const Bytes& block : {salt, saltEnd, file, salt, saltEnd})
        reference::KeccakAbsorb(state, block.data(), 17);
    Bytes expected;
    for (std::size_t i = 0; i < 32; ++i)
        expected.push_back(static_cast<std::uint8_t>(state[i / 8] >> 8 * (i % 8)));

    engine_.SetSalt_FromFile(files_.Write("salt", salt).c_str(), EnumSaltType::Both);
    const std::wstring path = files_.Write("file", std::string_view("abc"));
    unsigned char digest[32];
    ASSERT_TRUE(engine_.GetSha3_FromFile(path.c_str(), 256, digest, false));
    EXPECT_EQ(helpers::ToHex(digest), helpers::ToHex(expected));
}

// A departure from the standard's SHA-3 of salt and file: neither the joined bytes nor clean blocks.
TEST_F(ShaSalt, Sha3OfASaltedFileIsNotThatOfTheJoinedBytes) {
    const ShaRow& row = helpers::ShaRows()[5];
    const Bytes salt = helpers::PseudoRandomBytes(200, 5);
    engine_.SetSalt_FromFile(files_.Write("salt", salt).c_str(), EnumSaltType::Before);
    const std::string text =
        helpers::ShaText(row, engine_, files_.Write("file", std::string_view("abc")).c_str());
    EXPECT_NE(text, helpers::ExpectedText(row, Joined({salt, helpers::BytesOf("abc")})));
}

} // namespace
