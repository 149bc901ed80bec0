// SPDX-License-Identifier: MIT
#include "tests/hash/Functions.h"
#include "tests/helpers/GuardedBuffer.h"

namespace {

using hash_tests::AllFunctions;
using hash_tests::Bytes;
using hash_tests::Message;
using hash_tests::Name;

#ifdef __SANITIZE_ADDRESS__
constexpr std::size_t lengthStep = 7; // the references are slow there
#else
constexpr std::size_t lengthStep = 1;
#endif

// The message ends where memory does.
void ExpectReferenceDigest(const fyrn_function* function, const helpers::GuardedBuffer& memory,
                           Message message) {
    std::uint8_t* const copy = memory.Rear(message.size());
    std::copy(message.begin(), message.end(), copy);
    EXPECT_EQ(hash_tests::Digest(function, {copy, message.size()}), hash_tests::Expected(function, message))
        << Name(function) << ", " << message.size() << " bytes";
}

TEST(Lengths, EveryLengthTo4200AgreesWithTheReference) {
    const Bytes message = helpers::PseudoRandomBytes(4200, 1);
    const helpers::GuardedBuffer memory(message.size());
    for (const fyrn_function* function : AllFunctions())
        for (std::size_t length = 0; length <= message.size(); length += lengthStep)
            ExpectReferenceDigest(function, memory, Message(message).first(length));
}

TEST(Lengths, LongMessagesAgreeWithTheReference) {
    const Bytes message = helpers::PseudoRandomBytes(100'003, 2);
    const helpers::GuardedBuffer memory(message.size());
    for (const fyrn_function* function : AllFunctions())
        for (const std::size_t length : {std::size_t{16'384}, std::size_t{65'537}, message.size()})
            ExpectReferenceDigest(function, memory, Message(message).first(length));
}

// Trees whose complete subtrees wait on several levels when the message ends.
TEST(Lengths, MessagesThatEndBehindWholeSubtreesAgreeWithTheReference) {
    const Bytes message = helpers::PseudoRandomBytes(524'289, 3);
    const fyrn_function* const function = fyrn_function_find("BLAKE3");
    for (const std::size_t length : {131'073u, 262'144u, 262'145u, 263'169u, 393'217u, 524'288u, 524'289u})
        EXPECT_EQ(hash_tests::Digest(function, Message(message).first(length)),
                  hash_tests::Expected(function, Message(message).first(length)))
            << length << " bytes";
}

} // namespace
