// SPDX-License-Identifier: MIT
// Memory that runs out is said, and nothing else happens.
#include "fyrn/fyrn.hpp"
#include "tests/hash/Functions.h"
#include "tests/helpers/FailingNew.h"

#include <array>

namespace {

using hash_tests::AllFunctions;
using hash_tests::Bytes;
using hash_tests::Hash;
using hash_tests::Name;
using helpers::FailingNew;

TEST(Memory, NewAndCloneGiveNull) {
    for (const fyrn_function* function : AllFunctions()) {
        const Hash hash = hash_tests::New(function);
        const FailingNew failing = FailingNew::Always();
        const bool isNull = fyrn_hash_new(function) == nullptr;
        const bool cloneIsNull = fyrn_hash_clone(hash.get()) == nullptr;
        EXPECT_TRUE(isNull && cloneIsNull) << Name(function);
        EXPECT_EQ(failing.Failures(), 2u);
    }
}

// Each allocation fails in turn, until none does.
TEST(Memory, DigestsAreRightOrReportedMissing) {
    const Bytes message = helpers::PseudoRandomBytes(1000, 14);
    const std::vector<const void*> data(20, message.data());
    const std::vector<std::size_t> sizes(20, message.size());
    for (const fyrn_function* function : AllFunctions()) {
        const std::size_t size = fyrn_function_digest_size(function);
        std::vector<Bytes> digests(20, Bytes(size));
        std::vector<unsigned char*> places;
        for (Bytes& digest : digests)
            places.push_back(digest.data());
        for (const std::size_t count : {1u, 20u}) {
            int result = -1;
            for (std::size_t turn = 1; result != 0; ++turn) {
                ASSERT_LT(turn, 100u);
                const FailingNew failing = FailingNew::OfTurn(turn);
                result = count == 1
                             ? fyrn_digest(function, message.data(), message.size(), places[0])
                             : fyrn_digest_many(function, count, data.data(), sizes.data(), places.data());
                ASSERT_TRUE(result == 0 || (result == -1 && failing.Failures() == 1)) << Name(function);
            }
            for (std::size_t i = 0; i < count; ++i)
                EXPECT_EQ(helpers::ToHex(digests[i]), hash_tests::Expected(function, message));
        }
    }
}

// Functions that cannot tell need none.
TEST(Memory, UpdateFinishAndResetNeedNone) {
    const Bytes message = helpers::PseudoRandomBytes(3000, 15);
    for (const fyrn_function* function : AllFunctions()) {
        std::vector<Hash> hashes;
        std::vector<fyrn_hash*> pointers;
        for (std::size_t i = 0; i < 20; ++i) {
            hashes.push_back(hash_tests::New(function));
            pointers.push_back(hashes.back().get());
        }
        const std::vector<const void*> data(20, message.data());
        const std::vector<std::size_t> sizes(20, message.size());
        Bytes digest(fyrn_function_digest_size(function));
        {
            const FailingNew failing = FailingNew::Always();
            fyrn_hash_update(pointers[0], message.data(), message.size());
            fyrn_hash_reset(pointers[0]);
            fyrn_hash_update_many(20, pointers.data(), data.data(), sizes.data());
            fyrn_hash_finish(pointers[19], digest.data());
        }
        const std::string expected = hash_tests::Expected(function, message);
        EXPECT_EQ(helpers::ToHex(digest), expected) << Name(function);
        for (std::size_t i = 0; i < 19; ++i)
            EXPECT_EQ(hash_tests::Finish(hashes[i]), expected) << Name(function) << ", object " << i;
    }
}

TEST(Memory, ClassesThrow) {
    const fyrn::Function function = fyrn::Function::Named("MD5");
    fyrn::Hasher hasher(function);
    int caught = 0;
    for (const auto& use : std::array<std::function<void()>, 4>{
             [&] { fyrn::Hasher another(function); }, [&] { fyrn::Hasher copy(hasher); },
             [&] { hasher.Finish(); }, [&] { fyrn::Digest(function, {}); }}) {
        const FailingNew failing = FailingNew::Always();
        try {
            use();
        } catch (const std::bad_alloc&) {
            ++caught;
        }
    }
    EXPECT_EQ(caught, 4);
}

} // namespace
