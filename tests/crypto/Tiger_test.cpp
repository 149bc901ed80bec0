// SPDX-License-Identifier: MIT
#include "crypto/CCrypto_Tiger.h"

#include "tests/helpers/DigestText.h"
#include "tests/helpers/KnownRuns.h"
#include "tests/reference/Tiger.h"

#include <gtest/gtest.h>

namespace {

using helpers::Bytes;
using Message = std::span<const std::uint8_t>;

constexpr unsigned short digestSizes[] = {128, 160, 192};

class Tiger : public testing::Test {
  protected:
    // The engine's text for a path or a message.
    template <class File>
    std::string Text(const File& file, unsigned short bits, bool tiger2) {
        return helpers::DigestText(file, [&](const wchar_t* path, char* text) {
            return engine_.GetFromFileAsString(path, text, 1024, bits, tiger2, 3);
        });
    }

    // Whether all six functions give the standard's digest of a message.
    void ExpectStandardDigests(Message message) {
        const std::wstring path = files_.Write("file", message);
        for (const bool tiger2 : {false, true}) {
            const std::string expected = helpers::ToHex(reference::Tiger(
                message, tiger2 ? reference::tiger2Padding : reference::tiger1Padding, message.size()));
            for (const unsigned short bits : digestSizes)
                EXPECT_EQ(Text(path.c_str(), bits, tiger2), expected.substr(0, bits / 4u))
                    << message.size() << " bytes, Tiger" << tiger2 + 1 << "-" << bits;
        }
    }

    helpers::ScratchFiles files_;
    CCrypto_Tiger engine_{nullptr};
};

// Both paddings and all three sizes; every length and its digest are the rows' (tests/oracle).
TEST_F(Tiger, LengthsAroundTheBlockGiveTheStandardDigests) {
    const Bytes message = helpers::PseudoRandomBytes(130, 1);
    for (const std::size_t length : {0u, 1u, 55u, 56u, 63u, 64u, 65u, 119u, 120u, 127u, 128u, 130u})
        ExpectStandardDigests(Message(message).first(length));
}

TEST_F(Tiger, FilesAroundTheReadBufferAgreeWithTheReference) {
    const Bytes message = helpers::PseudoRandomBytes(2'097'153, 2);
    for (const std::size_t length : {1'048'575u, 1'048'576u, 1'048'577u, 1'048'632u, 2'097'152u, 2'097'153u})
        ExpectStandardDigests(Message(message).first(length));
}

TEST_F(Tiger, KnownRunsAreReproduced) {
    std::size_t count = 0;
    for (const bool tiger2 : {false, true})
        for (const unsigned short bits : digestSizes)
            for (const helpers::KnownRun& run :
                 helpers::KnownRunsOf("TIGER" + std::to_string(tiger2 + 1) + "-" + std::to_string(bits))) {
                if (run.salt.size >= 10'000'000)
                    continue; // slow to make; the command-line tests run these
                CCrypto_Tiger engine(nullptr);
                if (!run.salt.label.empty())
                    engine.SetSalt_FromFile(files_.Write("salt", run.salt.Content()).c_str(), run.placement);
                EXPECT_EQ(helpers::DigestText(Message(run.file.Content()),
                                              [&](const wchar_t* path, char* text) {
                                                  return engine.GetFromFileAsString(path, text, 0, bits,
                                                                                    tiger2, 0);
                                              }),
                          run.digest)
                    << run.file.label << " " << run.salt.label << " " << static_cast<int>(run.placement);
                ++count;
            }
    EXPECT_EQ(count, 53u);
}

TEST_F(Tiger, EverySplitOf260BytesIntoTwoCallsIsTheSameUpToTheCountedBytes) {
    const Bytes message = helpers::PseudoRandomBytes(260, 3);
    for (std::size_t length = 0; length <= message.size(); ++length)
        for (std::size_t first = 0; first <= length; ++first) {
            engine_.Tiger_Initialize();
            engine_.Tiger_Transform(message.data(), first);
            engine_.Tiger_Transform(message.data() + first, length - first);
            engine_.Tiger_Finalize();
            const std::size_t left = first % 64;
            const std::size_t lost = left + length - first >= 64 ? left : 0;
            Bytes digest;
            for (std::size_t i = 0; i < 24; ++i)
                digest.push_back(static_cast<std::uint8_t>(engine_.State()[i / 8] >> 8 * (i % 8)));
            EXPECT_EQ(helpers::ToHex(digest),
                      helpers::ToHex(reference::Tiger(Message(message).first(length),
                                                      reference::tiger2Padding, length - lost)))
                << first << " of " << length;
        }
}

TEST_F(Tiger, NeverWritesMoreThanTheWantedBytes) {
    const std::wstring path = files_.Write("file", std::string_view("abc"));
    const std::string whole = Text(path.c_str(), 192, false);
    for (unsigned short bits = 0; bits <= 192; ++bits) {
        Bytes digest(25, 0xee);
        EXPECT_TRUE(engine_.GetFromFile(path.c_str(), digest.data(), 0, bits, false, 9));
        const std::size_t bytes = bits / 8u;
        EXPECT_EQ(helpers::ToHex(Message(digest).first(bytes)), whole.substr(0, 2 * bytes)) << bits;
        EXPECT_EQ(digest[bytes], 0xee) << bits;
        EXPECT_EQ(Text(path.c_str(), bits, false), whole.substr(0, 2 * bytes)) << bits;
    }
}

TEST_F(Tiger, MoreThan192BitsAreRefused) {
    const std::wstring path = files_.Write("file", std::string_view("abc"));
    unsigned char digest[64] = {1};
    for (const unsigned short bits : std::initializer_list<unsigned short>{193, 200, 65535}) {
        EXPECT_FALSE(engine_.GetFromFile(path.c_str(), digest, 64, bits, true, 3)) << bits;
        EXPECT_EQ(Text(path.c_str(), bits, true), "failed") << bits;
    }
    EXPECT_EQ(digest[0], 1);
}

// The digest of the empty message, with the padding that the engine was last told to use.
std::string EmptyMessage(CCrypto_Tiger& engine) {
    engine.Tiger_Initialize();
    engine.Tiger_Transform(nullptr, 0);
    engine.Tiger_Finalize();
    Bytes digest;
    for (std::size_t i = 0; i < 24; ++i)
        digest.push_back(static_cast<std::uint8_t>(engine.State()[i / 8] >> 8 * (i % 8)));
    return helpers::ToHex(digest);
}

TEST_F(Tiger, ThePaddingIsSetWhenTheArgumentsWereChecked) {
    const std::string tiger1 = "3293ac630c13f0245f92bbb1766e16167a4e58492dde73f3";
    const std::string tiger2 = "4441be75f6018773c206c22745374b924aa8313fef919f41";
    const std::wstring path = files_.Write("file", std::string_view("abc"));
    unsigned char digest[24];
    EXPECT_EQ(EmptyMessage(engine_), tiger2) << "a new engine";
    EXPECT_FALSE(engine_.GetFromFile(nullptr, digest, 24, 192, false, 3));
    EXPECT_EQ(EmptyMessage(engine_), tiger2) << "no path";
    EXPECT_FALSE(engine_.GetFromFile(path.c_str(), nullptr, 24, 192, false, 3));
    EXPECT_EQ(EmptyMessage(engine_), tiger2) << "no output";
    EXPECT_FALSE(engine_.GetFromFile(path.c_str(), digest, 24, 193, false, 3));
    EXPECT_EQ(EmptyMessage(engine_), tiger2) << "too many bits";
    EXPECT_FALSE(engine_.GetFromFile(files_.Path("missing").c_str(), digest, 24, 192, false, 3));
    EXPECT_EQ(EmptyMessage(engine_), tiger1) << "a missing file comes to light later";
}

TEST_F(Tiger, NullPointersAndMissingFilesFailAndWriteNothing) {
    const std::wstring path = files_.Write("file", std::string_view("abc"));
    const std::wstring missing = files_.Path("missing");
    unsigned char digest[24] = {1};
    char text[] = "untouched";
    EXPECT_FALSE(engine_.GetFromFile(nullptr, digest, 24, 192, true, 3));
    EXPECT_FALSE(engine_.GetFromFile(path.c_str(), nullptr, 24, 192, true, 3));
    EXPECT_FALSE(engine_.GetFromFile(missing.c_str(), digest, 24, 192, true, 3));
    EXPECT_FALSE(engine_.GetFromFileAsString(nullptr, text, 1024, 192, true, 3));
    EXPECT_FALSE(engine_.GetFromFileAsString(path.c_str(), nullptr, 1024, 192, true, 3));
    EXPECT_FALSE(engine_.GetFromFileAsString(missing.c_str(), text, 1024, 192, true, 3));
    EXPECT_EQ(digest[0], 1);
    EXPECT_STREQ(text, "untouched");
}

} // namespace
