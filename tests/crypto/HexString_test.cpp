// SPDX-License-Identifier: MIT
#include "crypto/HexString.h"

#include "tests/helpers/Bytes.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

// What a buffer of 40 characters holds, all "#" before, up to the last character written.
std::string Rendered(std::uint32_t capacity, std::string_view hex) {
    const helpers::Bytes bytes = helpers::FromHex(hex);
    std::string buffer(40, '#');
    HexString_FromBytes(buffer.data(), capacity, bytes.data(), static_cast<std::uint32_t>(bytes.size()));
    return buffer.substr(0, buffer.find_last_not_of('#') + 1);
}

std::string Terminated(std::string text) {
    return text + '\0';
}

TEST(HexString, DigitsAreLowerCaseHighNibbleFirst) {
    EXPECT_EQ(Rendered(40, "0aff"), Terminated("0aff"));
    EXPECT_EQ(Rendered(40, "0123456789abcdef"), Terminated("0123456789abcdef"));
}

TEST(HexString, CapacityOf1Or2GivesTheEmptyText) {
    EXPECT_EQ(Rendered(1, "0aff"), Terminated(""));
    EXPECT_EQ(Rendered(2, "0aff"), Terminated(""));
}

TEST(HexString, CapacityOf0OrNoBufferChangesNothing) {
    EXPECT_EQ(Rendered(0, "0aff"), "");
    const unsigned char byte = 1;
    HexString_FromBytes(nullptr, 40, &byte, 1);
}

TEST(HexString, CapacityOf9TakesFourOfSixteenBytes) {
    EXPECT_EQ(Rendered(9, "000102030405060708090a0b0c0d0e0f"), Terminated("00010203"));
}

TEST(HexString, EveryCapacityTakesWholeBytesOnly) {
    const std::string all = "f0e1d2c3b4a5968778";
    for (std::uint32_t capacity = 1; capacity <= 40; ++capacity) {
        const std::size_t digits = std::min<std::size_t>(all.size(), (capacity - 1) / 2 * 2);
        EXPECT_EQ(Rendered(capacity, all), Terminated(all.substr(0, digits))) << capacity;
    }
}

TEST(HexString, NoBytesGiveTheEmptyText) {
    EXPECT_EQ(Rendered(40, ""), Terminated(""));
}

TEST(HexString, AllBytesAreRenderedWithoutALimit) {
    char text[] = "########";
    const unsigned char bytes[] = {0x00, 0x9a, 0xff};
    HexString_FromAllBytes(text, bytes, 3);
    EXPECT_EQ(std::string_view(text, 8), std::string_view("009aff\0#", 8));
}

} // namespace
