// SPDX-License-Identifier: MIT
#include "tests/reference/Sha.h"

#include <string_view>

namespace reference {
namespace {

template <class Word>
constexpr unsigned int wordBits = 8 * sizeof(Word);

template <class Word>
Word RotateRight(Word word, unsigned int by) {
    return static_cast<Word>(word >> by | word << (wordBits<Word> - by));
}

template <class Word>
Word BigEndianWord(const std::uint8_t* block, std::size_t i) {
    Word word = 0;
    for (std::size_t byte = 0; byte < sizeof(Word); ++byte)
        word = static_cast<Word>(word << 8 | block[sizeof(Word) * i + byte]);
    return word;
}

bool IsPrime(unsigned int number) {
    for (unsigned int divisor = 2; divisor * divisor <= number; ++divisor)
        if (number % divisor == 0)
            return false;
    return true;
}

// A number of 256 bits in digits of 32, lowest first.
using Digits = std::array<std::uint32_t, 8>;

Digits Multiply(const Digits& a, const Digits& b) {
    Digits product = {};
    for (std::size_t i = 0; i < 8; ++i) {
        std::uint64_t carry = 0;
        for (std::size_t j = 0; i + j < 8; ++j) {
            carry += std::uint64_t{a[i]} * b[j] + product[i + j];
            product[i + j] = static_cast<std::uint32_t>(carry);
            carry >>= 32;
        }
    }
    return product;
}

// Whether the cube of whole + fraction / 2^64 is at most the number.
bool CubeFits(std::uint32_t whole, std::uint64_t fraction, unsigned int number) {
    const Digits root = {static_cast<std::uint32_t>(fraction), static_cast<std::uint32_t>(fraction >> 32),
                         whole};
    const Digits cube = Multiply(Multiply(root, root), root);
    const std::uint64_t cubeWhole = cube[6] | std::uint64_t{cube[7]} << 32;
    return cubeWhole < number;
}

// The first 64 bits of the fractional part of the cube root of a prime.
std::uint64_t CubeRootFraction(unsigned int prime) {
    std::uint32_t whole = 1;
    while ((whole + 1) * (whole + 1) * (whole + 1) < prime)
        ++whole;
    std::uint64_t fraction = 0;
    for (std::uint64_t bit = std::uint64_t{1} << 63; bit != 0; bit >>= 1)
        if (CubeFits(whole, fraction | bit, prime))
            fraction |= bit;
    return fraction;
}

// Sections 4.2.2 and 4.2.3: the constants of the rounds.
template <class Word>
Word RoundConstant(std::size_t round) {
    static const auto constants = [] {
        std::array<Word, 80> list;
        unsigned int number = 1;
        for (Word& constant : list) {
            do
                ++number;
            while (!IsPrime(number));
            constant = static_cast<Word>(CubeRootFraction(number) >> (64 - wordBits<Word>));
        }
        return list;
    }();
    return constants[round];
}

// Section 4.1.2 and 4.1.3: the rotations of the four sigma functions; the last of the small ones is a
// shift.
struct Sigmas {
    unsigned int big0[3], big1[3], small0[3], small1[3];
};

template <class Word>
constexpr Sigmas sigmas = sizeof(Word) == 4 ? Sigmas{{2, 13, 22}, {6, 11, 25}, {7, 18, 3}, {17, 19, 10}}
                                            : Sigmas{{28, 34, 39}, {14, 18, 41}, {1, 8, 7}, {19, 61, 6}};

template <class Word>
Word Big(const unsigned int (&by)[3], Word x) {
    return RotateRight(x, by[0]) ^ RotateRight(x, by[1]) ^ RotateRight(x, by[2]);
}

template <class Word>
Word Small(const unsigned int (&by)[3], Word x) {
    return RotateRight(x, by[0]) ^ RotateRight(x, by[1]) ^ x >> by[2];
}

template <class Word>
void Sha2Compress(std::array<Word, 8>& state, const std::uint8_t* block) {
    constexpr std::size_t rounds = sizeof(Word) == 4 ? 64 : 80;
    constexpr Sigmas by = sigmas<Word>;
    Word w[rounds];
    for (std::size_t t = 0; t < 16; ++t)
        w[t] = BigEndianWord<Word>(block, t);
    for (std::size_t t = 16; t < rounds; ++t)
        w[t] = Small(by.small1, w[t - 2]) + w[t - 7] + Small(by.small0, w[t - 15]) + w[t - 16];
    auto [a, b, c, d, e, f, g, h] = state;
    for (std::size_t t = 0; t < rounds; ++t) {
        const Word t1 = h + Big(by.big1, e) + ((e & f) ^ (~e & g)) + RoundConstant<Word>(t) + w[t];
        const Word t2 = Big(by.big0, a) + ((a & b) ^ (a & c) ^ (b & c));
        h = g, g = f, f = e, e = d + t1, d = c, c = b, b = a, a = t1 + t2;
    }
    const std::array<Word, 8> working = {a, b, c, d, e, f, g, h};
    for (std::size_t i = 0; i < 8; ++i)
        state[i] += working[i];
}

// A number of bits, as the length field holds it: in 64 bits, or in 128 when blocks have 128 bytes.
struct Length {
    std::uint64_t high = 0;
    std::uint64_t low;
};

Length BitsOf(std::uint64_t bytes) {
    return {bytes >> 61, bytes << 3};
}

void AppendBigEndian(helpers::Bytes& bytes, std::uint64_t number) {
    for (unsigned int shift = 64; shift != 0; shift -= 8)
        bytes.push_back(static_cast<std::uint8_t>(number >> (shift - 8)));
}

// Section 5.1: the message with a one bit, zero bits and the length in bits appended.
helpers::Bytes Pad(std::span<const std::uint8_t> message, std::size_t blockSize, Length length) {
    helpers::Bytes padded(message.begin(), message.end());
    padded.push_back(0x80);
    while (padded.size() % blockSize != blockSize - blockSize / 8)
        padded.push_back(0);
    if (blockSize == 128)
        AppendBigEndian(padded, length.high);
    AppendBigEndian(padded, length.low);
    return padded;
}

template <class State, class Compress>
helpers::Bytes Digest(State state, Compress compress, std::span<const std::uint8_t> message, Length stated,
                      std::size_t length) {
    constexpr std::size_t wordSize = sizeof(state[0]);
    const helpers::Bytes padded = Pad(message, 16 * wordSize, stated);
    for (std::size_t at = 0; at < padded.size(); at += 16 * wordSize)
        compress(state, padded.data() + at);
    helpers::Bytes digest;
    for (const auto word : state)
        for (std::size_t byte = wordSize; byte-- > 0;)
            digest.push_back(static_cast<std::uint8_t>(word >> 8 * byte));
    digest.resize(length);
    return digest;
}

// Section 4.1.1 and 4.2.1 for round t.
std::uint32_t Sha1Function(std::size_t t, std::uint32_t x, std::uint32_t y, std::uint32_t z) {
    if (t < 20)
        return (x & y) ^ (~x & z);
    if (t >= 40 && t < 60)
        return (x & y) ^ (x & z) ^ (y & z);
    return x ^ y ^ z;
}

constexpr std::uint32_t sha1Constants[4] = {0x5a827999, 0x6ed9eba1, 0x8f1bbcdc, 0xca62c1d6};

constexpr Sha512State sha384Initial = {0xcbbb9d5dc1059ed8, 0x629a292a367cd507, 0x9159015a3070dd17,
                                       0x152fecd8f70e5939, 0x67332667ffc00b31, 0x8eb44a8768581511,
                                       0xdb0c2e0d64f98fa7, 0x47b5481dbefa4fa4};
constexpr Sha512State sha512Initial = {0x6a09e667f3bcc908, 0xbb67ae8584caa73b, 0x3c6ef372fe94f82b,
                                       0xa54ff53a5f1d36f1, 0x510e527fade682d1, 0x9b05688c2b3e6c1f,
                                       0x1f83d9abfb41bd6b, 0x5be0cd19137e2179};

// Section 5.3.6: SHA-512/t starts with the digest of its name under a SHA-512 whose own start is changed.
helpers::Bytes ShortSha512(std::string_view name, std::span<const std::uint8_t> message, std::size_t length) {
    Sha512State changed = sha512Initial;
    for (std::uint64_t& word : changed)
        word ^= 0xa5a5a5a5a5a5a5a5;
    const helpers::Bytes start =
        Digest(changed, Sha512Compress, helpers::BytesOf(name), BitsOf(name.size()), 64);
    Sha512State initial;
    for (std::size_t i = 0; i < 8; ++i)
        initial[i] = BigEndianWord<std::uint64_t>(start.data(), i);
    return Digest(initial, Sha512Compress, message, BitsOf(message.size()), length);
}

} // namespace

void Sha1Compress(Sha1State& state, const std::uint8_t* block) {
    std::uint32_t w[80];
    for (std::size_t t = 0; t < 16; ++t)
        w[t] = BigEndianWord<std::uint32_t>(block, t);
    for (std::size_t t = 16; t < 80; ++t)
        w[t] = RotateRight(w[t - 3] ^ w[t - 8] ^ w[t - 14] ^ w[t - 16], 31);
    auto [a, b, c, d, e] = state;
    for (std::size_t t = 0; t < 80; ++t) {
        const std::uint32_t sum =
            RotateRight(a, 27) + Sha1Function(t, b, c, d) + e + sha1Constants[t / 20] + w[t];
        e = d, d = c, c = RotateRight(b, 2), b = a, a = sum;
    }
    const Sha1State working = {a, b, c, d, e};
    for (std::size_t i = 0; i < 5; ++i)
        state[i] += working[i];
}

void Sha256Compress(Sha256State& state, const std::uint8_t* block) {
    Sha2Compress(state, block);
}

void Sha512Compress(Sha512State& state, const std::uint8_t* block) {
    Sha2Compress(state, block);
}

helpers::Bytes Sha1WithLength(std::span<const std::uint8_t> message, std::uint64_t statedBytes) {
    const Sha1State initial = {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476, 0xc3d2e1f0};
    return Digest(initial, Sha1Compress, message, BitsOf(statedBytes), 20);
}

helpers::Bytes Sha256WithLength(std::span<const std::uint8_t> message, std::uint64_t statedBytes) {
    const Sha256State initial = {0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                                 0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
    return Digest(initial, Sha256Compress, message, BitsOf(statedBytes), 32);
}

helpers::Bytes Sha1(std::span<const std::uint8_t> message) {
    return Sha1WithLength(message, message.size());
}

helpers::Bytes Sha256(std::span<const std::uint8_t> message) {
    return Sha256WithLength(message, message.size());
}

// Section 5.3.2: the second halves of what SHA-384 starts with.
helpers::Bytes Sha224(std::span<const std::uint8_t> message) {
    Sha256State initial;
    for (std::size_t i = 0; i < 8; ++i)
        initial[i] = static_cast<std::uint32_t>(sha384Initial[i]);
    return Digest(initial, Sha256Compress, message, BitsOf(message.size()), 28);
}

helpers::Bytes Sha384(std::span<const std::uint8_t> message) {
    return Digest(sha384Initial, Sha512Compress, message, BitsOf(message.size()), 48);
}

helpers::Bytes Sha512WithLength(std::span<const std::uint8_t> message, std::uint64_t highBits,
                                std::uint64_t lowBits) {
    return Digest(sha512Initial, Sha512Compress, message, {highBits, lowBits}, 64);
}

helpers::Bytes Sha512(std::span<const std::uint8_t> message) {
    return Digest(sha512Initial, Sha512Compress, message, BitsOf(message.size()), 64);
}

helpers::Bytes Sha512_224(std::span<const std::uint8_t> message) {
    return ShortSha512("SHA-512/224", message, 28);
}

helpers::Bytes Sha512_256(std::span<const std::uint8_t> message) {
    return ShortSha512("SHA-512/256", message, 32);
}

} // namespace reference
