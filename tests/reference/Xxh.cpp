// SPDX-License-Identifier: MIT
#include "tests/reference/Xxh.h"

#include <bit>

namespace reference {
namespace {

using Message = std::span<const std::uint8_t>;

constexpr std::uint64_t prime32[] = {0, 0x9e3779b1, 0x85ebca77, 0xc2b2ae3d, 0x27d4eb2f, 0x165667b1};
constexpr std::uint64_t prime64[] = {
    0, 0x9e3779b185ebca87, 0xc2b2ae3d27d4eb4f, 0x165667b19e3779f9, 0x85ebca77c2b2ae63, 0x27d4eb2f165667c5};
constexpr std::uint64_t mixer1 = 0x165667919e3779f9;
constexpr std::uint64_t mixer2 = 0x9fb21c651e98df25;

// The bytes at `at` as a number, the lowest first.
std::uint64_t Read(Message message, std::size_t at, int bytes) {
    std::uint64_t value = 0;
    for (int i = bytes; i > 0; --i)
        value = value << 8 | message[at + static_cast<std::size_t>(i) - 1];
    return value;
}

helpers::Bytes HighestFirst(std::uint64_t value, int bytes) {
    helpers::Bytes digest;
    for (int i = bytes; i > 0; --i)
        digest.push_back(static_cast<std::uint8_t>(value >> 8 * (i - 1)));
    return digest;
}

std::uint64_t Swap(std::uint64_t value) {
    std::uint64_t swapped = 0;
    for (int i = 0; i < 8; ++i, value >>= 8)
        swapped = swapped << 8 | (value & 0xff);
    return swapped;
}

std::uint64_t ShiftXor(std::uint64_t value, int shift) {
    return value ^ value >> shift;
}

std::uint64_t Avalanche64(std::uint64_t hash) {
    hash = ShiftXor(hash, 33) * prime64[2];
    hash = ShiftXor(hash, 29) * prime64[3];
    return ShiftXor(hash, 32);
}

std::uint64_t Avalanche3(std::uint64_t hash) {
    return ShiftXor(ShiftXor(hash, 37) * mixer1, 32);
}

struct Pair {
    std::uint64_t low, high;
};

// The product of 128 bits, by halves of 32.
Pair Multiply(std::uint64_t a, std::uint64_t b) {
    const std::uint64_t mask = 0xffffffff;
    const std::uint64_t lowLow = (a & mask) * (b & mask), highLow = (a >> 32) * (b & mask);
    const std::uint64_t lowHigh = (a & mask) * (b >> 32), highHigh = (a >> 32) * (b >> 32);
    const std::uint64_t middle = (lowLow >> 32) + (highLow & mask) + lowHigh;
    return {a * b, (highLow >> 32) + (middle >> 32) + highHigh};
}

std::uint64_t Fold(std::uint64_t a, std::uint64_t b) {
    const Pair product = Multiply(a, b);
    return product.low ^ product.high;
}

// The secret that XXH3 takes where the user gives none.
const helpers::Bytes secretBytes = helpers::FromHex(
    "b8fe6c3923a44bbe7c01812cf721ad1cded46de9839097db7240a4a4b7b3671fcb79e64eccc0e578825ad07dccff7221"
    "b8084674f743248ee03590e6813a264c3c2852bb91c300cb88d0658b1b532ea371644897a20df94e3819ef46a9deacd8"
    "a8fa763fe39c343ff9dcbbc7c70b4f1d8a51e04bcdb45931c89f7ec9d9787364eac5ac8334d3ebc3c581a0fffa1363eb"
    "170ddd51b7f0da49d316552629d4689e2b16be587d47a1fc8ff8b8d17ad031ce45cb3a8f95160428afd7fbcabb4b407e");
constexpr std::size_t secretSize = 192;

std::uint64_t Secret(std::size_t at) {
    return Read(secretBytes, at, 8);
}

std::uint64_t Mix16(Message message, std::size_t at, std::size_t secret) {
    return Fold(Read(message, at, 8) ^ Secret(secret), Read(message, at + 8, 8) ^ Secret(secret + 8));
}

// Accumulators of XXH3 after a message of more than 240 bytes.
struct Accumulators {
    std::uint64_t lanes[8] = {prime32[3], prime64[1], prime64[2], prime64[3],
                              prime64[4], prime32[2], prime64[5], prime32[1]};

    explicit Accumulators(Message message) {
        const std::size_t stripesPerBlock = (secretSize - 64) / 8;
        const std::size_t stripes = (message.size() - 1) / 64;
        for (std::size_t i = 0; i < stripes; ++i) {
            Accumulate(message, 64 * i, 8 * (i % stripesPerBlock));
            if (i % stripesPerBlock == stripesPerBlock - 1)
                Scramble();
        }
        Accumulate(message, message.size() - 64, secretSize - 64 - 7);
    }

    void Accumulate(Message message, std::size_t at, std::size_t secret) {
        for (std::size_t i = 0; i < 8; ++i) {
            const std::uint64_t value = Read(message, at + 8 * i, 8);
            const std::uint64_t keyed = value ^ Secret(secret + 8 * i);
            lanes[i ^ 1] += value;
            lanes[i] += (keyed & 0xffffffff) * (keyed >> 32);
        }
    }

    void Scramble() {
        for (std::size_t i = 0; i < 8; ++i)
            lanes[i] = (ShiftXor(lanes[i], 47) ^ Secret(secretSize - 64 + 8 * i)) * prime32[1];
    }

    std::uint64_t Merge(std::size_t secret, std::uint64_t start) const {
        for (std::size_t i = 0; i < 4; ++i)
            start +=
                Fold(lanes[2 * i] ^ Secret(secret + 16 * i), lanes[2 * i + 1] ^ Secret(secret + 16 * i + 8));
        return Avalanche3(start);
    }
};

std::uint64_t Combined1To3(Message message) {
    const std::size_t size = message.size();
    return std::uint64_t{message[0]} << 16 | std::uint64_t{message[size / 2]} << 24 | message[size - 1] |
           size << 8;
}

std::uint64_t Xxh3UpTo16(Message message) {
    const std::size_t size = message.size();
    if (size == 0)
        return Avalanche64(Secret(56) ^ Secret(64));
    if (size < 4)
        return Avalanche64(Combined1To3(message) ^ Read(secretBytes, 0, 4) ^ Read(secretBytes, 4, 4));
    if (size <= 8) {
        const std::uint64_t joined = Read(message, size - 4, 4) + (Read(message, 0, 4) << 32);
        std::uint64_t hash = joined ^ Secret(8) ^ Secret(16);
        hash = (hash ^ std::rotl(hash, 49) ^ std::rotl(hash, 24)) * mixer2;
        return ShiftXor((hash ^ ((hash >> 35) + size)) * mixer2, 28);
    }
    const std::uint64_t low = Read(message, 0, 8) ^ Secret(24) ^ Secret(32);
    const std::uint64_t high = Read(message, size - 8, 8) ^ Secret(40) ^ Secret(48);
    return Avalanche3(size + Swap(low) + high + Fold(low, high));
}

std::uint64_t Xxh3UpTo240(Message message) {
    const std::size_t size = message.size();
    std::uint64_t hash = size * prime64[1];
    if (size <= 128) {
        // Pairs of 16 bytes from both ends.
        for (std::size_t i = 0; i < (size - 1) / 32 + 1; ++i)
            hash += Mix16(message, 16 * i, 32 * i) + Mix16(message, size - 16 * (i + 1), 32 * i + 16);
        return Avalanche3(hash);
    }
    for (std::size_t i = 0; i < 8; ++i)
        hash += Mix16(message, 16 * i, 16 * i);
    hash = Avalanche3(hash);
    for (std::size_t i = 8; i < size / 16; ++i)
        hash += Mix16(message, 16 * i, 16 * (i - 8) + 3);
    return Avalanche3(hash + Mix16(message, size - 16, 136 - 17));
}

Pair Xxh128UpTo16(Message message) {
    const std::size_t size = message.size();
    if (size == 0)
        return {Avalanche64(Secret(64) ^ Secret(72)), Avalanche64(Secret(80) ^ Secret(88))};
    if (size < 4) {
        const auto low = static_cast<std::uint32_t>(Combined1To3(message));
        const auto swapped = static_cast<std::uint32_t>(Swap(low) >> 32);
        return {Avalanche64(low ^ Read(secretBytes, 0, 4) ^ Read(secretBytes, 4, 4)),
                Avalanche64(std::rotl(swapped, 13) ^ Read(secretBytes, 8, 4) ^ Read(secretBytes, 12, 4))};
    }
    if (size <= 8) {
        const std::uint64_t joined = Read(message, 0, 4) + (Read(message, size - 4, 4) << 32);
        Pair hash = Multiply(joined ^ Secret(16) ^ Secret(24), prime64[1] + (size << 2));
        hash.high += hash.low << 1;
        hash.low ^= hash.high >> 3;
        hash.low = ShiftXor(ShiftXor(hash.low, 35) * mixer2, 28);
        return {hash.low, Avalanche3(hash.high)};
    }
    const std::uint64_t low = Read(message, 0, 8);
    std::uint64_t high = Read(message, size - 8, 8);
    Pair hash = Multiply(low ^ high ^ Secret(32) ^ Secret(40), prime64[1]);
    hash.low += std::uint64_t{size - 1} << 54;
    high ^= Secret(48) ^ Secret(56);
    hash.high += high + (high & 0xffffffff) * (prime32[2] - 1);
    hash.low ^= Swap(hash.high);
    Pair last = Multiply(hash.low, prime64[2]);
    last.high += hash.high * prime64[2];
    return {Avalanche3(last.low), Avalanche3(last.high)};
}

void Mix32(Pair& hash, Message message, std::size_t first, std::size_t second, std::size_t secret) {
    hash.low += Mix16(message, first, secret);
    hash.low ^= Read(message, second, 8) + Read(message, second + 8, 8);
    hash.high += Mix16(message, second, secret + 16);
    hash.high ^= Read(message, first, 8) + Read(message, first + 8, 8);
}

Pair Xxh128UpTo240(Message message) {
    const std::size_t size = message.size();
    Pair hash = {size * prime64[1], 0};
    if (size <= 128) {
        // From the middle to both ends.
        for (std::size_t i = (size - 1) / 32 + 1; i > 0; --i)
            Mix32(hash, message, 16 * (i - 1), size - 16 * i, 32 * (i - 1));
    } else {
        for (std::size_t i = 0; i < 4; ++i)
            Mix32(hash, message, 32 * i, 32 * i + 16, 32 * i);
        hash = {Avalanche3(hash.low), Avalanche3(hash.high)};
        for (std::size_t i = 4; i < size / 32; ++i)
            Mix32(hash, message, 32 * i, 32 * i + 16, 3 + 32 * (i - 4));
        Mix32(hash, message, size - 16, size - 32, 136 - 17 - 16);
    }
    const std::uint64_t low = hash.low + hash.high;
    const std::uint64_t high = hash.low * prime64[1] + hash.high * prime64[4] + size * prime64[2];
    return {Avalanche3(low), std::uint64_t{0} - Avalanche3(high)};
}

} // namespace

helpers::Bytes Xxh32(Message message) {
    using Word = std::uint32_t;
    const auto prime = [](std::size_t i) { return static_cast<Word>(prime32[i]); };
    Word hash = prime(5);
    std::size_t at = 0;
    if (message.size() >= 16) {
        Word lanes[4] = {prime(1) + prime(2), prime(2), 0, Word{0} - prime(1)};
        for (; at + 16 <= message.size(); at += 16)
            for (std::size_t i = 0; i < 4; ++i) {
                const auto word = static_cast<Word>(Read(message, at + 4 * i, 4));
                lanes[i] = std::rotl(lanes[i] + word * prime(2), 13) * prime(1);
            }
        hash = std::rotl(lanes[0], 1) + std::rotl(lanes[1], 7) + std::rotl(lanes[2], 12) +
               std::rotl(lanes[3], 18);
    }
    hash += static_cast<Word>(message.size());
    for (; at + 4 <= message.size(); at += 4)
        hash = std::rotl(hash + static_cast<Word>(Read(message, at, 4)) * prime(3), 17) * prime(4);
    for (; at < message.size(); ++at)
        hash = std::rotl(hash + message[at] * prime(5), 11) * prime(1);
    hash = (hash ^ hash >> 15) * prime(2);
    hash = (hash ^ hash >> 13) * prime(3);
    return HighestFirst(hash ^ hash >> 16, 4);
}

helpers::Bytes Xxh64(Message message) {
    const auto round = [](std::uint64_t lane, std::uint64_t word) {
        return std::rotl(lane + word * prime64[2], 31) * prime64[1];
    };
    std::uint64_t hash = prime64[5];
    std::size_t at = 0;
    if (message.size() >= 32) {
        std::uint64_t lanes[4] = {prime64[1] + prime64[2], prime64[2], 0, std::uint64_t{0} - prime64[1]};
        for (; at + 32 <= message.size(); at += 32)
            for (std::size_t i = 0; i < 4; ++i)
                lanes[i] = round(lanes[i], Read(message, at + 8 * i, 8));
        hash = std::rotl(lanes[0], 1) + std::rotl(lanes[1], 7) + std::rotl(lanes[2], 12) +
               std::rotl(lanes[3], 18);
        for (const std::uint64_t lane : lanes)
            hash = (hash ^ round(0, lane)) * prime64[1] + prime64[4];
    }
    hash += message.size();
    for (; at + 8 <= message.size(); at += 8)
        hash = std::rotl(hash ^ round(0, Read(message, at, 8)), 27) * prime64[1] + prime64[4];
    if (at + 4 <= message.size()) {
        hash = std::rotl(hash ^ Read(message, at, 4) * prime64[1], 23) * prime64[2] + prime64[3];
        at += 4;
    }
    for (; at < message.size(); ++at)
        hash = std::rotl(hash ^ message[at] * prime64[5], 11) * prime64[1];
    return HighestFirst(Avalanche64(hash), 8);
}

helpers::Bytes Xxh3(Message message) {
    const std::size_t size = message.size();
    if (size <= 16)
        return HighestFirst(Xxh3UpTo16(message), 8);
    if (size <= 240)
        return HighestFirst(Xxh3UpTo240(message), 8);
    return HighestFirst(Accumulators(message).Merge(11, size * prime64[1]), 8);
}

helpers::Bytes Xxh128(Message message) {
    const std::size_t size = message.size();
    Pair hash;
    if (size <= 16) {
        hash = Xxh128UpTo16(message);
    } else if (size <= 240) {
        hash = Xxh128UpTo240(message);
    } else {
        const Accumulators accumulators(message);
        hash = {accumulators.Merge(11, size * prime64[1]),
                accumulators.Merge(secretSize - 64 - 11, ~(size * prime64[2]))};
    }
    helpers::Bytes digest = HighestFirst(hash.high, 8);
    const helpers::Bytes low = HighestFirst(hash.low, 8);
    digest.insert(digest.end(), low.begin(), low.end());
    return digest;
}

} // namespace reference
