// SPDX-License-Identifier: MIT
// MD6 with AVX2: four nodes side by side, one in each 64-bit lane. The words of the feedback sequence are
// laid down in a straight line as in the portable kernel. The five nearest taps, 17 to 21 words back, move
// through registers: each is loaded once. Lanes without a node of their own repeat the first one.
#include "hash/kernels/Isa.h"
#include "hash/kernels/Md6.h"
#include "hash/kernels/Md6_Round.h"

#include <algorithm>
#include <immintrin.h>

namespace fyrn::kernels {
namespace {

using Vector = __m256i;
using namespace md6;

constexpr std::size_t lanes = 4;
constexpr int roundsPerLine = 32;
constexpr int lineVectors = newWord + 16 * roundsPerLine;

// Word i of four nodes is at 4 * i.
using Line = std::uint64_t[lanes * lineVectors];

ISA_AVX2 ALWAYS_INLINE Vector Load(const std::uint64_t* line, int i) {
    return _mm256_loadu_si256(reinterpret_cast<const Vector*>(line + lanes * static_cast<std::size_t>(i)));
}

ISA_AVX2 ALWAYS_INLINE void Store(std::uint64_t* line, int i, Vector value) {
    _mm256_storeu_si256(reinterpret_cast<Vector*>(line + lanes * static_cast<std::size_t>(i)), value);
}

ISA_AVX2 ALWAYS_INLINE Vector SwapBytes(Vector words) {
    const Vector order =
        _mm256_broadcastsi128_si256(_mm_set_epi8(8, 9, 10, 11, 12, 13, 14, 15, 0, 1, 2, 3, 4, 5, 6, 7));
    return _mm256_shuffle_epi8(words, order);
}

// Rows and columns of four by four words change places.
ISA_AVX2 ALWAYS_INLINE void Transpose(Vector rows[4]) {
    const Vector even01 = _mm256_unpacklo_epi64(rows[0], rows[1]);
    const Vector odd01 = _mm256_unpackhi_epi64(rows[0], rows[1]);
    const Vector even23 = _mm256_unpacklo_epi64(rows[2], rows[3]);
    const Vector odd23 = _mm256_unpackhi_epi64(rows[2], rows[3]);
    rows[0] = _mm256_permute2x128_si256(even01, even23, 0x20);
    rows[1] = _mm256_permute2x128_si256(odd01, odd23, 0x20);
    rows[2] = _mm256_permute2x128_si256(even01, even23, 0x31);
    rows[3] = _mm256_permute2x128_si256(odd01, odd23, 0x31);
}

ISA_AVX2 ALWAYS_INLINE void LoadNodes(Line& line, const std::uint8_t* const nodes[lanes]) {
    for (int word = 0; word < 64; word += 4) {
        Vector rows[lanes];
        for (std::size_t lane = 0; lane < lanes; ++lane)
            rows[lane] =
                SwapBytes(_mm256_loadu_si256(reinterpret_cast<const Vector*>(nodes[lane] + 8 * word)));
        Transpose(rows);
        for (int i = 0; i < 4; ++i)
            Store(line, static_cast<int>(md6PrefixWords) + 2 + word + i, rows[i]);
    }
}

ISA_AVX2 ALWAYS_INLINE void StoreValues(std::uint8_t* values, std::size_t count,
                                        const std::uint64_t* result) {
    for (int word = 0; word < 16; word += 4) {
        Vector rows[lanes];
        for (int i = 0; i < 4; ++i)
            rows[i] = Load(result, word + i);
        Transpose(rows);
        for (std::size_t lane = 0; lane < count; ++lane)
            _mm256_storeu_si256(reinterpret_cast<Vector*>(values + lane * md6ChainingValueSize +
                                                          8 * static_cast<std::size_t>(word)),
                                SwapBytes(rows[lane]));
    }
}

#define STEP(i, right, left)                                                                                 \
    {                                                                                                        \
        const Vector back17 = Load(a, i + tap17);                                                            \
        Vector x = _mm256_xor_si256(_mm256_xor_si256(s, Load(a, i + tap89)), back17);                        \
        x = _mm256_xor_si256(x, _mm256_and_si256(Load(a, i + tap31), Load(a, i + tap67)));                   \
        x = _mm256_xor_si256(x, _mm256_and_si256(back18, back21));                                           \
        x = _mm256_xor_si256(x, _mm256_srli_epi64(x, right));                                                \
        Store(a, i + newWord, _mm256_xor_si256(x, _mm256_slli_epi64(x, left)));                              \
        back21 = back20;                                                                                     \
        back20 = back19;                                                                                     \
        back19 = back18;                                                                                     \
        back18 = back17;                                                                                     \
    }

// Runs all rounds and returns the last 16 words.
ISA_AVX2 ALWAYS_INLINE const std::uint64_t* RunRounds(Line& line, int rounds) {
    std::uint64_t constant = firstRoundConstant;
    std::uint64_t* a = line;
    Vector back21 = Load(a, tap21);
    Vector back20 = Load(a, tap21 + 1);
    Vector back19 = Load(a, tap21 + 2);
    Vector back18 = Load(a, tap18);
    for (; rounds != 0; --rounds, a += 16 * lanes) {
        if (a == line + lanes * 16 * roundsPerLine) {
            std::copy_n(a, lanes * newWord, line);
            a = line;
        }
        const Vector s = _mm256_set1_epi64x(static_cast<long long>(constant));
        MD6_ROUND(STEP)
        constant = NextRoundConstant(constant);
    }
    return a + lanes * (newWord - 16);
}

} // namespace

ISA_AVX2 void Md6_Nodes_X86Avx2(std::uint8_t* chainingValues, const std::uint8_t* nodes, std::size_t count,
                                const Md6Batch& batch) {
    alignas(64) Line line;
    std::uint64_t firstId = batch.firstId;
    while (count != 0) {
        const std::size_t used = std::min(count, lanes);
        const std::uint8_t* ofLane[lanes];
        for (std::size_t lane = 0; lane < lanes; ++lane) {
            ofLane[lane] = nodes + (lane < used ? lane * md6NodeSize : 0);
            line[lanes * md6PrefixWords + lane] = firstId + lane;
            line[lanes * (md6PrefixWords + 1) + lane] = lane + 1 == count ? batch.lastControl : batch.control;
        }
        for (std::size_t i = 0; i < md6PrefixWords; ++i)
            std::fill_n(line + lanes * i, lanes, batch.prefix[i]);
        LoadNodes(line, ofLane);
        StoreValues(chainingValues, used, RunRounds(line, batch.rounds));

        nodes += used * md6NodeSize;
        chainingValues += used * md6ChainingValueSize;
        firstId += used;
        count -= used;
    }
}

} // namespace fyrn::kernels
