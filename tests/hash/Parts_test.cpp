// SPDX-License-Identifier: MIT
// Parts of a message that are hashed apart give the digest of the whole.
#include "tests/hash/Functions.h"

#include <array>
#include <set>
#include <thread>

namespace {

using hash_tests::Bytes;
using hash_tests::Hash;
using hash_tests::Message;

std::vector<const fyrn_function*> Trees() {
    std::vector<const fyrn_function*> trees;
    for (const fyrn_function* function : hash_tests::AllFunctions())
        if (fyrn_function_part_size(function) != 0)
            trees.push_back(function);
    return trees;
}

using Value = std::array<unsigned char, FYRN_PART_VALUE_SIZE>;

Value PartOf(const Hash& hash, std::size_t number, Message message, std::size_t partSize) {
    Value value = {};
    fyrn_hash_part(hash.get(), number, message.data() + number * partSize, value.data());
    return value;
}

TEST(Parts, Blake3AndMd6AreTrees) {
    std::set<std::string> names;
    for (const fyrn_function* function : Trees())
        names.insert(hash_tests::Name(function));
    EXPECT_EQ(names, (std::set<std::string>{"BLAKE3", "MD6-128", "MD6-160", "MD6-192", "MD6-224", "MD6-256",
                                            "MD6-384", "MD6-512"}));
}

// Up to nine parts, the message's end with a byte, a whole part or anything between, and a beginning of whole parts that is
// taken in as bytes.
TEST(Parts, GiveTheDigestOfTheWhole) {
    for (const fyrn_function* function : Trees()) {
        const std::size_t size = fyrn_function_part_size(function);
        const Bytes all = helpers::PseudoRandomBytes(9 * size, 21);
        for (const std::size_t end : {std::size_t{1}, std::size_t{1025}, size - 1, size})
            for (const std::size_t parts : {1u, 2u, 3u, 4u, 5u, 8u})
                for (const std::size_t before : {std::size_t{0}, std::size_t{1}, parts / 2}) {
                    const Message message(all.data(), parts * size + end);
                    const Hash hash = hash_tests::New(function);
                    hash_tests::Update(hash, message.first(before * size));
                    for (std::size_t i = before; i < parts; ++i)
                        fyrn_hash_add_part(hash.get(), PartOf(hash, i, message, size).data());
                    hash_tests::Update(hash, message.subspan(parts * size));
                    ASSERT_EQ(hash_tests::Finish(hash), hash_tests::Digest(function, message))
                        << hash_tests::Name(function) << ", " << before << " of " << parts
                        << " parts as bytes, then " << end << " bytes";
                }
    }
}

TEST(Parts, AndBytesMayTakeTurns) {
    for (const fyrn_function* function : Trees()) {
        const std::size_t size = fyrn_function_part_size(function);
        const Bytes message = helpers::PseudoRandomBytes(6 * size + 77, 22);
        const Hash hash = hash_tests::New(function);
        for (std::size_t i = 0; i < 6; ++i)
            if (i % 2 == 0)
                fyrn_hash_add_part(hash.get(), PartOf(hash, i, message, size).data());
            else
                hash_tests::Update(hash, Message(message).subspan(i * size, size));
        hash_tests::Update(hash, Message(message).subspan(6 * size));
        EXPECT_EQ(hash_tests::Finish(hash), hash_tests::Digest(function, message))
            << hash_tests::Name(function);
    }
}

TEST(Parts, MayBeHashedInThreads) {
    for (const fyrn_function* function : Trees()) {
        constexpr std::size_t parts = 4;
        const std::size_t size = fyrn_function_part_size(function);
        const Bytes message = helpers::PseudoRandomBytes(parts * size + 1, 23);
        const Hash hash = hash_tests::New(function);
        Value values[parts];
        std::vector<std::thread> threads;
        for (std::size_t i = 0; i < parts; ++i)
            threads.emplace_back([&, i] { values[i] = PartOf(hash, i, message, size); });
        for (std::thread& thread : threads)
            thread.join();
        for (const Value& value : values)
            fyrn_hash_add_part(hash.get(), value.data());
        hash_tests::Update(hash, Message(message).last(1));
        EXPECT_EQ(hash_tests::Finish(hash), hash_tests::Digest(function, message))
            << hash_tests::Name(function);
    }
}

} // namespace
