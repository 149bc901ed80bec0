// SPDX-License-Identifier: MIT
// Copies, resets, digests of other lengths: what can be done with an object besides feeding it.
#include "tests/hash/Functions.h"

namespace {

using hash_tests::AllFunctions;
using hash_tests::Block;
using hash_tests::Bytes;
using hash_tests::Hash;
using hash_tests::Message;
using hash_tests::Name;

// Lengths that leave buffers and trees in every kind of state.
std::vector<std::size_t> Borders(const fyrn_function* function) {
    const std::size_t block = Block(function);
    return {0, 1, block - 1, block, block + 1, 7 * block, 8 * block, 8 * block + 1, 33 * block + 7};
}

class Objects : public testing::Test {
  protected:
    const Bytes first_ = helpers::PseudoRandomBytes(20'000, 4);
    const Bytes second_ = helpers::PseudoRandomBytes(20'000, 5);

    static Bytes Joined(Message head, Message tail) {
        Bytes joined(head.begin(), head.end());
        joined.insert(joined.end(), tail.begin(), tail.end());
        return joined;
    }
};

TEST_F(Objects, CloneAndOriginalGoOnByThemselves) {
    for (const fyrn_function* function : AllFunctions())
        for (const std::size_t length : Borders(function)) {
            const Message head = Message(first_).first(length);
            const Message tail = Message(first_).subspan(length, Block(function) + 3);
            const Message otherTail = Message(second_).first(2 * Block(function) - 1);
            const Hash original = hash_tests::New(function);
            hash_tests::Update(original, head);
            const Hash clone(fyrn_hash_clone(original.get()));
            ASSERT_NE(clone, nullptr);
            hash_tests::Update(clone, otherTail);
            hash_tests::Update(original, tail);
            const Hash cloneOfClone(fyrn_hash_clone(clone.get()));
            EXPECT_EQ(hash_tests::Finish(clone), hash_tests::Expected(function, Joined(head, otherTail)))
                << Name(function) << ", clone after " << length;
            EXPECT_EQ(hash_tests::Finish(original), hash_tests::Expected(function, Joined(head, tail)))
                << Name(function) << ", original after " << length;
            EXPECT_EQ(hash_tests::Finish(cloneOfClone),
                      hash_tests::Expected(function, Joined(head, otherTail)))
                << Name(function) << ", clone of a clone after " << length;
        }
}

TEST_F(Objects, CloneOutlivesItsOriginal) {
    for (const fyrn_function* function : AllFunctions()) {
        Hash original = hash_tests::New(function);
        hash_tests::Update(original, Message(first_).first(1000));
        const Hash clone(fyrn_hash_clone(original.get()));
        original.reset();
        hash_tests::Update(clone, Message(first_).subspan(1000));
        EXPECT_EQ(hash_tests::Finish(clone), hash_tests::Expected(function, first_)) << Name(function);
    }
}

TEST_F(Objects, ResetForgetsTheMessage) {
    for (const fyrn_function* function : AllFunctions()) {
        const Hash hash = hash_tests::New(function);
        const std::string expected = hash_tests::Expected(function, second_);
        for (const std::size_t length : Borders(function)) {
            hash_tests::Update(hash, Message(first_).first(length));
            fyrn_hash_reset(hash.get());
            hash_tests::Update(hash, second_);
            EXPECT_EQ(hash_tests::Finish(hash), expected) << Name(function) << ", after " << length;
        }
    }
}

TEST_F(Objects, FinishBeginsANewMessage) {
    for (const fyrn_function* function : AllFunctions()) {
        const Hash hash = hash_tests::New(function);
        for (const std::size_t length : Borders(function)) {
            const Message message = Message(first_).first(length);
            hash_tests::Update(hash, message);
            EXPECT_EQ(hash_tests::Finish(hash), hash_tests::Expected(function, message))
                << Name(function) << ", " << length << " bytes";
            EXPECT_EQ(hash_tests::Finish(hash), hash_tests::Expected(function, {}))
                << Name(function) << ", after " << length;
        }
    }
}

TEST_F(Objects, FreeTakesNull) {
    fyrn_hash_free(nullptr);
}

// Also beyond what one squeezing of a sponge, or one node, gives.
std::vector<std::size_t> SizesOf(const fyrn_function* function) {
    std::vector<std::size_t> sizes;
    const std::size_t most = std::min(function->maxDigestSize, 2 * fyrn_function_block_size(function) + 1);
    for (std::size_t size = function->minDigestSize; size <= most; ++size)
        sizes.push_back(size);
    if (hash_tests::IsUnlimited(function))
        sizes.insert(sizes.end(), {3 * fyrn_function_block_size(function), 10'000, 100'001});
    return sizes;
}

TEST_F(Objects, DigestsOfEveryLengthThatAFunctionHas) {
    const Message message = Message(first_).first(777);
    for (const fyrn_function* function : AllFunctions()) {
        if (!hash_tests::IsSized(function))
            continue;
        for (const std::size_t size : SizesOf(function)) {
            const Hash hash(fyrn_hash_new_sized(function, size));
            ASSERT_NE(hash, nullptr) << Name(function) << ", " << size;
            EXPECT_EQ(fyrn_hash_digest_size(hash.get()), size);
            const Bytes expected = helpers::FunctionReference(fyrn_function_name(function), message, size);
            hash_tests::Update(hash, message);
            const Hash clone(fyrn_hash_clone(hash.get()));
            ASSERT_EQ(hash_tests::Finish(hash), helpers::ToHex(expected)) << Name(function) << ", " << size;
            // The length holds for the next message and for a clone.
            hash_tests::Update(hash, message);
            ASSERT_EQ(hash_tests::Finish(hash), helpers::ToHex(expected)) << Name(function) << ", " << size;
            ASSERT_EQ(fyrn_hash_digest_size(clone.get()), size);
            ASSERT_EQ(hash_tests::Finish(clone), helpers::ToHex(expected)) << Name(function) << ", " << size;
        }
    }
}

TEST_F(Objects, NoDigestsOfOtherLengths) {
    for (const fyrn_function* function : AllFunctions()) {
        const std::size_t own = fyrn_function_digest_size(function);
        const std::string name = Name(function);
        const bool isBlake2b = name.starts_with("BLAKE2-");
        const bool isUnlimited = name.starts_with("SHAKE-") || name == "BLAKE3";
        const auto has = [&](std::size_t size) {
            return Hash(fyrn_hash_new_sized(function, size)) != nullptr;
        };
        EXPECT_FALSE(has(0)) << name;
        EXPECT_TRUE(has(own)) << name;
        EXPECT_EQ(has(1), isBlake2b || isUnlimited) << name;
        EXPECT_EQ(has(own - 1), isBlake2b || isUnlimited) << name;
        EXPECT_EQ(has(64), isBlake2b || isUnlimited || own == 64) << name;
        EXPECT_EQ(has(own + 1), (isBlake2b && own != 64) || isUnlimited) << name;
        EXPECT_EQ(has(SIZE_MAX), isUnlimited) << name;
    }
}

} // namespace
