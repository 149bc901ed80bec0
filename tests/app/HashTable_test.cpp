// SPDX-License-Identifier: MIT
#include "app/HashTable.h"

#include <gtest/gtest.h>
#include <iterator>

#include <string>

namespace {

struct ExpectedRow {
    const wchar_t* name;
    bool printedAlways;
    std::size_t digits; // of the digest
    char saltedEngine;  // c: CRC, 4: MD4, 5: MD5, 6: MD6, s: SHA, k: Skein, t: Tiger, w: Whirlpool, -: none
};

constexpr ExpectedRow expectedRows[] = {
    {L"BLAKE2-128", true, 32, '-'},   {L"BLAKE2-160", true, 40, '-'},  {L"BLAKE2-224", true, 56, '-'},
    {L"BLAKE2-256", true, 64, '-'},   {L"BLAKE2-384", true, 96, '-'},  {L"BLAKE2-512", true, 128, '-'},
    {L"CRC-16", true, 4, 'c'},        {L"CRC-32", true, 8, 'c'},       {L"CRC-64", true, 16, 'c'},
    {L"KECCAK-224", false, 56, '-'},  {L"KECCAK-256", false, 64, '-'}, {L"KECCAK-384", false, 96, '-'},
    {L"KECCAK-512", false, 128, '-'}, {L"MD4", true, 32, '4'},         {L"MD5", true, 32, '5'},
    {L"MD6-128", true, 32, '6'},      {L"MD6-160", true, 40, '6'},     {L"MD6-192", true, 48, '6'},
    {L"MD6-224", true, 56, '6'},      {L"MD6-256", true, 64, '6'},     {L"MD6-384", true, 96, '6'},
    {L"MD6-512", true, 128, '6'},     {L"SHA1", false, 40, 's'},       {L"SHA2-256", false, 64, 's'},
    {L"SHA2-384", false, 96, 's'},    {L"SHA2-512", false, 128, 's'},  {L"SHA3-224", false, 56, 's'},
    {L"SHA3-256", false, 64, 's'},    {L"SHA3-384", false, 96, 's'},   {L"SHA3-512", false, 128, 's'},
    {L"SHAKE-128", false, 32, '-'},   {L"SHAKE-256", false, 64, '-'},  {L"SHAKE-512", false, 128, '-'},
    {L"SKEIN-256", false, 64, 'k'},   {L"SKEIN-512", false, 128, 'k'}, {L"SKEIN-1024", false, 256, 'k'},
    {L"TIGER1-128", false, 32, 't'},  {L"TIGER1-160", false, 40, 't'}, {L"TIGER1-192", false, 48, 't'},
    {L"TIGER2-128", false, 32, 't'},  {L"TIGER2-160", false, 40, 't'}, {L"TIGER2-192", false, 48, 't'},
    {L"WHIRLPOOL", false, 128, 'w'},
};
static_assert(std::size(expectedRows) == hashRowCount);
constexpr std::uint32_t highRows = (1u << (hashRowCount - 32)) - 1; // bits of the rows from 32 on

CCrypto_Salt* ExpectedEngine(RunContext& context, char letter) {
    switch (letter) {
    case 'c':
        return &context.crc;
    case '4':
        return &context.md4;
    case '5':
        return &context.md5;
    case '6':
        return &context.md6;
    case 's':
        return &context.sha;
    case 'k':
        return &context.skein;
    case 't':
        return &context.tiger;
    case 'w':
        return &context.whirlpool;
    default:
        return nullptr;
    }
}

TEST(HashTable, HasTheRowsInOrder) {
    RunContext context;
    for (std::size_t i = 0; i < hashRowCount; ++i) {
        const HashRow& row = hashTable[i];
        EXPECT_STREQ(row.name, expectedRows[i].name);
        EXPECT_EQ(row.printedAlways, expectedRows[i].printedAlways) << row.name;
        CCrypto_Salt* const engine = row.saltedEngine == nullptr ? nullptr : &row.saltedEngine(context);
        EXPECT_EQ(engine, ExpectedEngine(context, expectedRows[i].saltedEngine)) << row.name;
    }
}

TEST(HashTable, RowsWriteDigestsOfTheirLength) {
    RunContext context;
    for (std::size_t i = 0; i < hashRowCount; ++i) {
        ASSERT_TRUE(hashTable[i].hash(context, L"" FYRN_SOURCE_DIR "/LICENSE")) << hashTable[i].name;
        const std::string text = context.hashText;
        EXPECT_EQ(text.size(), expectedRows[i].digits) << hashTable[i].name;
        EXPECT_EQ(text.find_first_not_of("0123456789abcdef"), std::string::npos) << hashTable[i].name;
    }
}

TEST(HashTable, RowsLeaveTheTextAloneWhenTheFileIsMissing) {
    RunContext context;
    for (const HashRow& row : hashTable) {
        const std::string before = "stale";
        before.copy(context.hashText, before.size() + 1);
        EXPECT_FALSE(row.hash(context, L"" FYRN_SOURCE_DIR "/no such file")) << row.name;
        EXPECT_EQ(context.hashText, before) << row.name;
    }
}

TEST(Selection, CountsRowsOfBothWords) {
    RunContext context;
    EXPECT_EQ(CountSelectedHashes(context), 0);
    for (std::size_t row = 0; row < hashRowCount; ++row) {
        SelectRow(context, row);
        EXPECT_EQ(CountSelectedHashes(context), row + 1);
    }
    EXPECT_EQ(context.selection[0], 0xFFFFFFFFu);
    EXPECT_EQ(context.selection[1], highRows);
}

TEST(Selection, BitsBeyondTheLastRowDoNotCount) {
    RunContext context;
    context.selection[1] = ~highRows;
    EXPECT_EQ(CountSelectedHashes(context), 0);
    SelectAllRows(context);
    EXPECT_EQ(CountSelectedHashes(context), hashRowCount);
}

TEST(Selection, RowsAreBitsFromTheLowestUp) {
    const auto words = [](std::size_t row) {
        RunContext context;
        SelectRow(context, row);
        return std::pair(context.selection[0], context.selection[1]);
    };
    EXPECT_EQ(words(0), std::pair(1u, 0u));
    EXPECT_EQ(words(31), std::pair(0x80000000u, 0u));
    EXPECT_EQ(words(32), std::pair(0u, 1u));
    EXPECT_EQ(words(42), std::pair(0u, 0x400u));
}

} // namespace
