// SPDX-License-Identifier: MIT
#include "tests/hash/Functions.h"

#include <atomic>
#include <thread>

namespace {

// The first calls of the process among them: what is made at a first use is made once.
TEST(Threads, DifferentObjectsMayBeUsedAtOnce) {
    const helpers::Bytes message = helpers::PseudoRandomBytes(5000, 16);
    constexpr std::size_t threadCount = 4;
    std::vector<std::string> digests[threadCount];
    std::atomic<std::size_t> ready = 0;
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < threadCount; ++i)
        threads.emplace_back([&, i] {
            ++ready;
            while (ready != threadCount)
                std::this_thread::yield();
            for (int round = 0; round < 20; ++round)
                for (const fyrn_function* function : hash_tests::AllFunctions())
                    digests[i].push_back(hash_tests::Digest(function, message));
        });
    for (std::thread& thread : threads)
        thread.join();
    for (const auto& ofThread : digests) {
        auto digest = ofThread.begin();
        for (int round = 0; round < 20; ++round)
            for (const fyrn_function* function : hash_tests::AllFunctions())
                ASSERT_EQ(*digest++, hash_tests::Digest(function, message)) << hash_tests::Name(function);
    }
    EXPECT_EQ(digests[0][0], hash_tests::Expected(fyrn_function_at(0), message));
}

} // namespace
