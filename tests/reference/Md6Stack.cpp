// SPDX-License-Identifier: MIT
#include "tests/reference/Md6Stack.h"

#include <algorithm>
#include <cstring>

namespace reference {
namespace {

std::vector<std::uint64_t> PackWords(const std::vector<bool>& bits, std::size_t words) {
    std::vector<std::uint64_t> packed(words, 0);
    for (std::size_t i = 0; i < bits.size(); ++i)
        packed[i / 64] |= static_cast<std::uint64_t>(bits[i]) << (63 - i % 64);
    return packed;
}

std::vector<std::uint8_t> BytesInMemory(const std::vector<std::uint64_t>& words) {
    std::vector<std::uint8_t> bytes(8 * words.size());
    std::memcpy(bytes.data(), words.data(), bytes.size());
    return bytes;
}

// The value of a word whose bytes in memory are read with the high-order byte first.
std::uint64_t BigEndianAsStored(std::uint64_t word) {
    std::uint64_t read = 0;
    for (const std::uint8_t byte : BytesInMemory({word}))
        read = read << 8 | byte;
    return read;
}

} // namespace

Md6Stack::Md6Stack(const Md6Parameters& parameters) : parameters_(parameters), prefix_(Md6Q()) {
    if (parameters_.rounds < 0)
        parameters_.rounds = std::max(parameters_.key.empty() ? 0 : 80, 40 + parameters_.digestBits / 4);
    std::vector<bool> keyBits;
    for (const std::uint8_t byte : parameters_.key)
        for (int bit = 7; bit >= 0; --bit)
            keyBits.push_back((byte >> bit & 1) != 0);
    const std::vector<std::uint64_t> key = PackWords(keyBits, 8);
    prefix_.insert(prefix_.end(), key.begin(), key.end());
}

void Md6Stack::Update(const std::vector<bool>& bits) {
    for (const bool bit : bits) {
        if (levels_[1].bits.size() == 4096)
            Process(1, false);
        levels_[1].bits.push_back(bit);
    }
}

int Md6Stack::Process(int number, bool final) {
    const auto held = levels_[static_cast<std::size_t>(number)].bits.size();
    if (!final && held < 4096)
        return 0;
    const bool root = final && number == top_;
    if (root && number > 1 && held == 1024)
        return 0;
    std::vector<std::uint64_t> value;
    if (const int error = CompressBlock(value, number, root); error != 0)
        return error;
    if (root) {
        rootValue_ = value;
        return 0;
    }
    std::vector<bool>& above = levels_[static_cast<std::size_t>(number) + 1].bits;
    for (const std::uint64_t word : value) {
        // Level 1 holds bytes, so a word arrives there in the machine's order of bytes.
        const std::uint64_t read = number == 0 ? BigEndianAsStored(word) : word;
        for (int bit = 63; bit >= 0; --bit)
            above.push_back((read >> bit & 1) != 0);
    }
    top_ = std::max(top_, number + 1);
    return Process(number + 1, final);
}

int Md6Stack::CompressBlock(std::vector<std::uint64_t>& value, int number, bool root) {
    if (number < 0)
        return 3;
    if (number >= 28)
        return 4;
    Level& level = levels_[static_cast<std::size_t>(number)];
    if (level.bits.size() > 4096)
        return 13;
    const auto field = [](auto content, int shift) { return static_cast<std::uint64_t>(content) << shift; };
    std::vector<std::uint64_t> input = prefix_;
    input.push_back(field(number, 56) | level.nextIndex);
    input.push_back(field(parameters_.rounds, 48) | field(64, 40) | field(root, 36) |
                    field(4096 - level.bits.size(), 20) | field(parameters_.key.size(), 12) |
                    field(parameters_.digestBits, 0));
    const std::vector<std::uint64_t> block = PackWords(level.bits, 64);
    input.insert(input.end(), block.begin(), block.end());
    value = Md6Compress(input, parameters_.rounds);
    level.bits.clear();
    ++level.nextIndex;
    return 0;
}

std::vector<std::uint8_t> Md6Stack::HashValue() const {
    return BytesInMemory(rootValue_);
}

std::vector<std::uint8_t> Md6Stack::Final() {
    int lowest = 1;
    while (levels_[static_cast<std::size_t>(lowest)].bits.empty() && lowest < top_)
        ++lowest;
    Process(lowest, true);
    std::vector<std::uint8_t> digest(static_cast<std::size_t>(parameters_.digestBits + 7) / 8, 0);
    for (std::size_t i = 0; i < static_cast<std::size_t>(parameters_.digestBits); ++i) {
        const std::size_t from = 1024 - static_cast<std::size_t>(parameters_.digestBits) + i;
        if (rootValue_[from / 64] >> (63 - from % 64) & 1)
            digest[i / 8] = static_cast<std::uint8_t>(digest[i / 8] | 0x80 >> i % 8);
    }
    return digest;
}

} // namespace reference
