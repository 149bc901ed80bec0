// SPDX-License-Identifier: MIT
// Tiger's length field with a salt: every call that completes a block loses the bytes that waited for it.
#include "crypto/CCrypto_Tiger.h"

#include "tests/helpers/DigestText.h"
#include "tests/reference/Tiger.h"

#include <gtest/gtest.h>

#include <numeric>

namespace {

using helpers::Bytes;
using Message = std::span<const std::uint8_t>;

constexpr unsigned short digestSizes[] = {128, 160, 192};

constexpr EnumSaltType placements[] = {EnumSaltType::Before, EnumSaltType::After, EnumSaltType::Both};
constexpr std::size_t readBufferSize = 1'048'576;

// The sizes of the pieces in which the engine is given salt and file.
std::vector<std::size_t> Pieces(std::size_t salt, EnumSaltType placement, std::size_t file) {
    std::vector<std::size_t> pieces;
    if (placement != EnumSaltType::After)
        pieces.push_back(salt);
    for (; file > readBufferSize; file -= readBufferSize)
        pieces.push_back(readBufferSize);
    pieces.push_back(file);
    if (placement != EnumSaltType::Before)
        pieces.push_back(salt);
    return pieces;
}

// The bytes that the length field encodes, from the sizes alone.
std::size_t CountedBytes(const std::vector<std::size_t>& pieces) {
    std::size_t fed = 0;
    std::size_t lost = 0;
    for (const std::size_t piece : pieces) {
        if (fed / 64 != (fed + piece) / 64)
            lost += fed % 64;
        fed += piece;
    }
    return fed - lost;
}

class TigerSalt : public testing::Test {
  protected:
    void ExpectSaltedDigests(const Bytes& salt, const Bytes& file) {
        const std::wstring path = files_.Write("file", file);
        const std::wstring saltPath = files_.Write("salt", salt);
        for (const EnumSaltType placement : placements) {
            Bytes message;
            if (placement != EnumSaltType::After)
                message = salt;
            message.insert(message.end(), file.begin(), file.end());
            if (placement != EnumSaltType::Before)
                message.insert(message.end(), salt.begin(), salt.end());
            ASSERT_EQ(engine_.SetSalt_FromFile(saltPath.c_str(), placement), salt.size());
            ExpectDigests(path, message, CountedBytes(Pieces(salt.size(), placement, file.size())));
        }
    }

    void ExpectDigests(const std::wstring& path, const Bytes& message, std::size_t counted) {
        for (const bool tiger2 : {false, true}) {
            const std::string expected = helpers::ToHex(reference::Tiger(
                message, tiger2 ? reference::tiger2Padding : reference::tiger1Padding, counted));
            for (const unsigned short bits : digestSizes)
                EXPECT_EQ(Text(path, bits, tiger2), expected.substr(0, bits / 4u))
                    << message.size() << " bytes in all, counted " << counted << ", " << bits << " bits";
        }
    }

    std::string Text(const std::wstring& path, unsigned short bits, bool tiger2) {
        return helpers::DigestText(path.c_str(), [&](const wchar_t* file, char* text) {
            return engine_.GetFromFileAsString(file, text, 1024, bits, tiger2, 3);
        });
    }

    helpers::ScratchFiles files_;
    CCrypto_Tiger engine_{nullptr};
};

TEST_F(TigerSalt, SaltsOf1To200BytesWithShortFiles) {
    for (std::size_t salt = 1; salt <= 200; ++salt)
        for (const std::size_t file :
             {std::size_t{0}, std::size_t{3}, std::size_t{64}, std::size_t{100}, salt})
            ExpectSaltedDigests(helpers::PseudoRandomBytes(salt, salt),
                                helpers::PseudoRandomBytes(file, file));
}

// A salt of 10 bytes in front: two reads complete a block each, so the field falls short by 20 bytes.
TEST_F(TigerSalt, EveryReadThatCompletesABlockLosesTheLeftoverAgain) {
    EXPECT_EQ(CountedBytes({10, readBufferSize, 100}), 10 + readBufferSize + 100 - 20);
    EXPECT_EQ(CountedBytes({10, readBufferSize, 20}), 10 + readBufferSize + 20 - 10);
    EXPECT_EQ(CountedBytes({100, 10}), 110u);
    EXPECT_EQ(CountedBytes({100, 64}), 164u - 36);
    for (const std::size_t file : {readBufferSize - 1, readBufferSize, readBufferSize + 1,
                                   readBufferSize + 100, 2 * readBufferSize + 60})
        for (const std::size_t salt : {10u, 64u, 65u})
            ExpectSaltedDigests(helpers::PseudoRandomBytes(salt, 1), helpers::PseudoRandomBytes(file, 2));
}

TEST_F(TigerSalt, SaltOfWholeBlocksInFrontGivesTheStandardDigest) {
    EXPECT_EQ(CountedBytes({64, 100}), 164u);
    const std::wstring saltPath = files_.Write("salt", helpers::PseudoRandomBytes(64, 1));
    engine_.SetSalt_FromFile(saltPath.c_str(), EnumSaltType::Before);
    const Bytes message = helpers::PseudoRandomBytes(164, 1);
    const Bytes file(message.begin() + 64, message.end());
    EXPECT_EQ(Text(files_.Write("file", file), 192, true),
              helpers::ToHex(reference::Tiger(message, reference::tiger2Padding, message.size())));
}

TEST_F(TigerSalt, OneEngineServesAThousandFilesInSequence) {
    const Bytes salt = helpers::PseudoRandomBytes(37, 1);
    const std::wstring saltPath = files_.Write("salt", salt);
    const Bytes bytes = helpers::PseudoRandomBytes(1000, 2);
    for (std::size_t length = 0; length < 1000; ++length) {
        const EnumSaltType placement = length % 2 == 0 ? EnumSaltType::None : EnumSaltType::Before;
        engine_.SetSalt_FromFile(saltPath.c_str(), placement);
        const Bytes file(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length));
        Bytes message = placement == EnumSaltType::None ? Bytes() : salt;
        const std::size_t counted =
            placement == EnumSaltType::None ? length : CountedBytes({salt.size(), length});
        message.insert(message.end(), file.begin(), file.end());
        EXPECT_EQ(Text(files_.Write("file", file), 192, false),
                  helpers::ToHex(reference::Tiger(message, reference::tiger1Padding, counted)))
            << length;
    }
}

} // namespace
