// SPDX-License-Identifier: MIT
// A message in pieces has the digest of the whole.
#include "tests/hash/Functions.h"

#include <algorithm>

namespace {

using hash_tests::AllFunctions;
using hash_tests::Block;
using hash_tests::Bytes;
using hash_tests::Hash;
using hash_tests::Message;
using hash_tests::Name;
using hash_tests::Random;

class Pieces : public testing::Test {
  protected:
    // A function with an object that has no message yet.
    struct Subject {
        const fyrn_function* function;
        Hash hash;

        std::string Digest(std::initializer_list<Message> pieces) const {
            for (const Message piece : pieces)
                hash_tests::Update(hash, piece);
            return hash_tests::Finish(hash);
        }
    };

    static std::vector<Subject> Subjects() {
        std::vector<Subject> subjects;
        for (const fyrn_function* function : AllFunctions())
            subjects.push_back({function, hash_tests::New(function)});
        return subjects;
    }

    const Bytes bytes_ = helpers::PseudoRandomBytes(40'000, 3);

    Message First(std::size_t length) const { return Message(bytes_).first(length); }
};

TEST_F(Pieces, EverySplitInTwoOfMessagesUpToTwoBlocks) {
    for (const Subject& subject : Subjects()) {
        const std::size_t block = Block(subject.function);
        for (const std::size_t length : {std::size_t{1}, std::size_t{23}, block - 1, block, block + 1,
                                         2 * block - 1, 2 * block, 2 * block + 1, 2 * block + 17}) {
            const Message message = First(length);
            const std::string expected = hash_tests::Expected(subject.function, message);
            for (std::size_t split = 0; split <= length; ++split)
                ASSERT_EQ(subject.Digest({message.first(split), message.subspan(split)}), expected)
                    << Name(subject.function) << ", " << length << " bytes at " << split;
        }
    }
}

// Cuts the last bytes of a message in all ways; bit i of `cuts` is a cut behind byte i.
void UpdateInPieces(const Hash& hash, Message bytes, unsigned int cuts) {
    std::size_t begin = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i)
        if ((cuts >> i & 1) != 0 || i + 1 == bytes.size()) {
            hash_tests::Update(hash, bytes.subspan(begin, i + 1 - begin));
            begin = i + 1;
        }
}

TEST_F(Pieces, EveryWayToCutTheBytesAroundABorder) {
    constexpr std::size_t cutBytes = 9;
    for (const Subject& subject : Subjects())
        for (const std::size_t blocks : {0u, 1u, 2u}) {
            const std::size_t whole = blocks == 0 ? 0 : blocks * Block(subject.function) - 5;
            const std::string expected = hash_tests::Expected(subject.function, First(whole + cutBytes));
            for (unsigned int cuts = 0; cuts < 1u << (cutBytes - 1); ++cuts) {
                hash_tests::Update(subject.hash, First(whole));
                UpdateInPieces(subject.hash, Message(bytes_).subspan(whole, cutBytes), cuts);
                ASSERT_EQ(hash_tests::Finish(subject.hash), expected)
                    << Name(subject.function) << ", " << whole << " bytes and cuts " << cuts;
            }
        }
}

TEST_F(Pieces, ByteForByte) {
    for (const Subject& subject : Subjects()) {
        const Message message = First(9 * Block(subject.function) + 1);
        for (const std::uint8_t& byte : message)
            hash_tests::Update(subject.hash, {&byte, 1});
        EXPECT_EQ(hash_tests::Finish(subject.hash), hash_tests::Expected(subject.function, message))
            << Name(subject.function);
    }
}

// Whatever waits in buffers and trees when the message ends.
TEST_F(Pieces, MessagesOfManyLengthsInPieces) {
    for (const Subject& subject : Subjects())
        for (const std::size_t piece : {333u, 1024u})
            for (std::size_t length = 0; length <= 9000; length += 128) {
                for (const std::size_t end : {length, length + 1}) {
                    for (std::size_t at = 0; at < end; at += piece)
                        hash_tests::Update(subject.hash, First(end).subspan(at, std::min(piece, end - at)));
                    ASSERT_EQ(hash_tests::Finish(subject.hash),
                              hash_tests::Digest(subject.function, First(end)))
                        << Name(subject.function) << ", " << end << " bytes by " << piece;
                }
            }
}

TEST_F(Pieces, RandomPiecesOfALongMessage) {
    Random random(1);
    for (const Subject& subject : Subjects()) {
        const std::string expected = hash_tests::Expected(subject.function, bytes_);
        for (int run = 0; run < 20; ++run) {
            std::string lengths;
            for (Message left = bytes_; !left.empty();) {
                const std::size_t length =
                    std::min(left.size(), hash_tests::AwkwardLength(random, Block(subject.function), 10'000));
                hash_tests::Update(subject.hash, left.first(length));
                left = left.subspan(length);
                lengths += ' ' + std::to_string(length);
            }
            ASSERT_EQ(hash_tests::Finish(subject.hash), expected) << Name(subject.function) << lengths;
        }
    }
}

TEST_F(Pieces, NoBytesAtNoAddressChangeNothing) {
    for (const Subject& subject : Subjects()) {
        const Message message = First(100);
        EXPECT_EQ(subject.Digest({{}, message.first(40), {}, message.subspan(40), {}}),
                  hash_tests::Expected(subject.function, message))
            << Name(subject.function);
        EXPECT_EQ(subject.Digest({}), hash_tests::Expected(subject.function, {})) << Name(subject.function);
        EXPECT_EQ(hash_tests::Digest(subject.function, {}), hash_tests::Expected(subject.function, {}));
    }
}

} // namespace
