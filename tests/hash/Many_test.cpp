// SPDX-License-Identifier: MIT
// Many messages in one call have the digests that they have one after another, whatever their number, their lengths and
// their functions.
#include "tests/hash/Functions.h"
#include "tests/helpers/GuardedBuffer.h"

#include <algorithm>
#include <functional>

namespace {

using hash_tests::AllFunctions;
using hash_tests::Block;
using hash_tests::Bytes;
using hash_tests::DigestSpace;
using hash_tests::Hash;
using hash_tests::Message;
using hash_tests::Name;
using hash_tests::Random;

constexpr std::size_t maxMessage = 20'000;
constexpr std::size_t maxCount = 100;

// Around the numbers of lanes that processors have.
constexpr std::size_t counts[] = {0, 1, 2, 3, 4, 5, 7, 8, 9, 13, 15, 16, 17, 31, 32, 33, 64, maxCount};

// Places for messages that end where memory does.
class Places {
  public:
    Places() {
        for (std::size_t i = 0; i < maxCount; ++i)
            places_.push_back(std::make_unique<helpers::GuardedBuffer>(maxMessage));
    }

    // Bytes of this length in place i, which differ from those of every other place. None have no address.
    Message Write(std::size_t i, std::size_t length) {
        if (length == 0)
            return {};
        std::uint8_t* const copy = places_[i]->Rear(length);
        std::copy_n(random_.begin() + static_cast<std::ptrdiff_t>(17 * i), length, copy);
        return {copy, length};
    }

  private:
    std::vector<std::unique_ptr<helpers::GuardedBuffer>> places_;
    const Bytes random_ = helpers::PseudoRandomBytes(maxMessage + 17 * maxCount, 6);
};

// Pairs of objects: one is fed with others in one call, its twin by itself.
class Twins {
  public:
    void Add(Hash hash) {
        twins_.emplace_back(fyrn_hash_clone(hash.get()));
        hashes_.push_back(std::move(hash));
    }

    std::size_t Count() const { return hashes_.size(); }

    void UpdateAlone(std::size_t i, Message piece) {
        hash_tests::Update(hashes_[i], piece);
        hash_tests::Update(twins_[i], piece);
    }

    void UpdateMany(const std::vector<Message>& pieces) {
        std::vector<fyrn_hash*> hashes;
        std::vector<const void*> data;
        std::vector<std::size_t> sizes;
        for (std::size_t i = 0; i < Count(); ++i) {
            hashes.push_back(hashes_[i].get());
            data.push_back(pieces[i].data());
            sizes.push_back(pieces[i].size());
            hash_tests::Update(twins_[i], pieces[i]);
        }
        fyrn_hash_update_many(Count(), hashes.data(), data.data(), sizes.data());
    }

    void ExpectSameDigests(const std::string& what) const {
        for (std::size_t i = 0; i < Count(); ++i)
            EXPECT_EQ(hash_tests::Finish(hashes_[i]), hash_tests::Finish(twins_[i]))
                << what << ", object " << i << " of " << Count();
    }

  private:
    std::vector<Hash> hashes_, twins_;
};

class Many : public testing::Test {
  protected:
    Twins NewTwins(const fyrn_function* function, std::size_t count) {
        Twins twins;
        for (std::size_t i = 0; i < count; ++i)
            twins.Add(hash_tests::New(function));
        return twins;
    }

    std::vector<Message> Write(std::size_t count, const std::function<std::size_t(std::size_t)>& length) {
        std::vector<Message> pieces;
        for (std::size_t i = 0; i < count; ++i)
            pieces.push_back(places_.Write(i, length(i)));
        return pieces;
    }

    // The digests of messages in one call.
    std::vector<std::string> Digests(const fyrn_function* function, const std::vector<Message>& messages) {
        std::vector<DigestSpace> spaces(messages.size(), DigestSpace(fyrn_function_digest_size(function)));
        std::vector<unsigned char*> digests;
        std::vector<const void*> data;
        std::vector<std::size_t> sizes;
        for (std::size_t i = 0; i < messages.size(); ++i) {
            digests.push_back(spaces[i].Begin());
            data.push_back(messages[i].data());
            sizes.push_back(messages[i].size());
        }
        EXPECT_EQ(fyrn_digest_many(function, messages.size(), data.data(), sizes.data(), digests.data()), 0);
        std::vector<std::string> texts;
        for (const DigestSpace& space : spaces)
            texts.push_back(helpers::ToHex(space.Digest()));
        return texts;
    }

    void ExpectOwnDigests(const fyrn_function* function, const std::vector<Message>& messages) {
        const std::vector<std::string> digests = Digests(function, messages);
        for (std::size_t i = 0; i < messages.size(); ++i)
            EXPECT_EQ(digests[i], hash_tests::Digest(function, messages[i]))
                << Name(function) << ", message " << i << " of " << messages.size() << ", "
                << messages[i].size() << " bytes";
    }

    Places places_;
    Random random_{2};
};

// Objects that are in the middle of a block, or not, get pieces of any length several times.
TEST_F(Many, UpdatesOfUnevenLengths) {
    for (const fyrn_function* function : AllFunctions())
        for (const std::size_t count : counts) {
            Twins twins = NewTwins(function, count);
            const auto length = [&](std::size_t) {
                return hash_tests::AwkwardLength(random_, Block(function), 1500);
            };
            const std::vector<Message> starts = Write(count, length);
            for (std::size_t i = 0; i < count; i += 1 + random_() % 3)
                twins.UpdateAlone(i, starts[i]);
            for (int turn = 0; turn < 3; ++turn)
                twins.UpdateMany(Write(count, length));
            twins.ExpectSameDigests(Name(function));
        }
}

TEST_F(Many, UpdatesOfOneLength) {
    for (const fyrn_function* function : AllFunctions())
        for (const std::size_t size :
             {std::size_t{1}, Block(function) - 1, Block(function), 8 * Block(function) + 1}) {
            Twins twins = NewTwins(function, 33);
            for (int turn = 0; turn < 3; ++turn)
                twins.UpdateMany(Write(33, [&](std::size_t) { return size; }));
            twins.ExpectSameDigests(Name(function) + ", pieces of " + std::to_string(size));
        }
}

// A lane that goes on when all others have ended, in every position.
TEST_F(Many, UpdatesWithOneLongPieceAmongShortOnes) {
    for (const fyrn_function* function : AllFunctions())
        for (const std::size_t count : {2u, 4u, 5u, 8u, 16u, 17u}) {
            Twins twins = NewTwins(function, count);
            for (std::size_t position = 0; position < count; ++position)
                twins.UpdateMany(
                    Write(count, [&](std::size_t i) { return i == position ? 5000 + i : 3 * i; }));
            twins.ExpectSameDigests(Name(function));
        }
}

// Clones, resets and updates of single objects between calls.
TEST_F(Many, UpdatesOfObjectsThatAreAlsoUsedAlone) {
    for (const fyrn_function* function : AllFunctions()) {
        Twins twins = NewTwins(function, 20);
        for (int turn = 0; turn < 4; ++turn) {
            const auto length = [&](std::size_t) {
                return hash_tests::AwkwardLength(random_, Block(function), 1000);
            };
            twins.UpdateMany(Write(20, length));
            twins.UpdateAlone(random_() % 20, places_.Write(50, 77));
            twins.UpdateMany(Write(20, length));
            if (turn == 1)
                twins.ExpectSameDigests(Name(function)); // which begins new messages
        }
        twins.ExpectSameDigests(Name(function));
    }
}

TEST_F(Many, UpdatesOfMixedFunctions) {
    const std::vector<const fyrn_function*> all = AllFunctions();
    for (int run = 0; run < 40; ++run) {
        Twins twins;
        while (twins.Count() < 1 + random_() % maxCount) {
            // Some functions often, so that a few lanes of each come together.
            const fyrn_function* const function =
                all[run % 2 == 0 ? random_() % all.size() : random_() % 3 * 11];
            const bool sized = hash_tests::IsSized(function);
            twins.Add(Hash(fyrn_hash_new_sized(function, sized ? 1 + random_() % 64
                                                               : fyrn_function_digest_size(function))));
        }
        for (int turn = 0; turn < 4; ++turn)
            twins.UpdateMany(Write(twins.Count(), [&](std::size_t) {
                return hash_tests::AwkwardLength(random_, 128, turn == 3 ? maxMessage : 2000);
            }));
        twins.ExpectSameDigests("run " + std::to_string(run));
    }
}

TEST_F(Many, UpdatesReadOneBufferForAllObjects) {
    const Bytes shared = helpers::PseudoRandomBytes(3000, 7);
    Twins twins;
    for (const fyrn_function* function : AllFunctions())
        for (int i = 0; i < 5; ++i)
            twins.Add(hash_tests::New(function));
    twins.UpdateMany(std::vector<Message>(twins.Count(), Message(shared)));
    twins.ExpectSameDigests("one buffer");
}

// By the reference, so that this suite does not rest on the others.
TEST_F(Many, DigestsOfEveryLengthInOneCall) {
    const Bytes bytes = helpers::PseudoRandomBytes(300, 8);
    for (const fyrn_function* function : AllFunctions()) {
        std::vector<Message> messages;
        for (std::size_t length = 0; length <= bytes.size(); ++length)
            messages.push_back(length == 0 ? Message() : Message(bytes).first(length * 83 % 301));
        const std::vector<std::string> digests = Digests(function, messages);
        for (std::size_t i = 0; i < messages.size(); ++i)
            EXPECT_EQ(digests[i], hash_tests::Expected(function, messages[i]))
                << Name(function) << ", " << messages[i].size() << " bytes";
    }
}

TEST_F(Many, DigestsOfAnyNumberOfUnevenMessages) {
    for (const fyrn_function* function : AllFunctions())
        for (const std::size_t count : counts)
            ExpectOwnDigests(function, Write(count, [&](std::size_t) {
                                 return hash_tests::AwkwardLength(random_, Block(function), 3000);
                             }));
}

TEST_F(Many, DigestsOfMessagesOfOneLength) {
    for (const fyrn_function* function : AllFunctions())
        for (const std::size_t count : {4u, 8u, 16u, 37u})
            for (const std::size_t size : {std::size_t{0}, Block(function), 3 * Block(function) + 5})
                ExpectOwnDigests(function, Write(count, [&](std::size_t) { return size; }));
}

TEST_F(Many, DigestsOfLongMessages) {
    for (const fyrn_function* function : AllFunctions())
        ExpectOwnDigests(function, Write(9, [](std::size_t i) { return maxMessage - 700 * i; }));
}

TEST_F(Many, DigestsOfNoMessage) {
    for (const fyrn_function* function : AllFunctions())
        EXPECT_EQ(fyrn_digest_many(function, 0, nullptr, nullptr, nullptr), 0) << Name(function);
    fyrn_hash_update_many(0, nullptr, nullptr, nullptr);
}

} // namespace
