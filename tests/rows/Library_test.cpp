// SPDX-License-Identifier: MIT
// The rows of the hash table beside the library's functions and their published digests.
#include "fyrn/fyrn.h"
#include "hash/FunctionTable.h"
#include "tests/helpers/KnownAnswers.h"
#include "tests/rows/RowTexts.h"

#include <gtest/gtest.h>

#include <map>

namespace {

using helpers::RowName;

// The library's table begins with the rows.
TEST(Library, HasTheRowsNamesInTheirOrder) {
    ASSERT_GE(fyrn_function_count(), hashRowCount);
    for (std::size_t i = 0; i < hashRowCount; ++i)
        EXPECT_EQ(fyrn_function_name(fyrn_function_at(i)), RowName(hashTable[i]));
}

TEST(Library, EveryRowGivesThePublishedDigests) {
    row_tests::RowTexts texts;
    std::map<std::string, std::size_t> met;
    for (const HashRow& row : hashTable)
        met[RowName(row)] = 0;
    for (const auto& [file, answers] : helpers::Publications())
        for (const auto& [function, message, digest] : answers) {
            const auto row = met.find(function);
            if (row == met.end())
                continue;
            ++row->second;
            EXPECT_EQ(texts.Of(function, message), digest)
                << file << ", " << function << ", " << message.size() << " bytes";
        }
    // For these tests/hash says why there are none.
    for (const char* name :
         {"BLAKE2-128", "BLAKE2-160", "SHAKE-512", "TIGER1-128", "TIGER1-160", "TIGER2-128", "TIGER2-160"})
        met.erase(name);
    for (const auto& [name, count] : met)
        EXPECT_GT(count, 0u) << name;
}

} // namespace
