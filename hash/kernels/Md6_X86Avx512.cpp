// SPDX-License-Identifier: MIT
// MD6 with AVX-512: eight nodes side by side, one in each 64-bit lane. A step is seven instructions: three of
// ternary logic, two shifts and two more xors.
//
// No step looks back further than 89 words, so the last eight rounds, 128 vectors, are all that is kept: a ring
// with a slot of 16 vectors for each round. The steps of one round are unrolled; where the slots of the rounds
// before are is looked up once a round, and by that the compiler cannot take a tap from a register in which it
// happens to be, and run out of registers. The nearest taps, 17 to 21 words back, move through five registers.
//
// 64 vectors are 4096 bytes, and a processor takes a load for one of a store at the same place modulo 4096 that
// is still on its way: tap 67 would wait for the store three steps before. The gap between the halves of the ring
// makes the nearest such store one of 35 steps before.
//
// Lanes without a node of their own repeat the first one.
#include "hash/kernels/Isa.h"
#include "hash/kernels/Md6.h"
#include "hash/kernels/Md6_Round.h"

#include <algorithm>
#include <immintrin.h>

namespace fyrn::kernels {
namespace {

using Vector = __m512i;
using namespace md6;

constexpr std::size_t lanes = 8;
constexpr int slots = 8;
constexpr int slotVectors = 16;
constexpr int gapVectors = 32;
constexpr int ringVectors = slots * slotVectors + gapVectors;
constexpr int inputSlotVectors = slots * slotVectors - newWord; // the input ends where the ring does

// Lane n of vector i is at 8 * i + n.
using Ring = std::uint64_t[lanes * ringVectors];

// The first vector of the slot of a round.
ALWAYS_INLINE std::uint64_t* Slot(std::uint64_t* ring, int round) {
    const int slot = round & (slots - 1);
    return ring + lanes * static_cast<std::size_t>(slotVectors * slot + (slot < slots / 2 ? 0 : gapVectors));
}

ALWAYS_INLINE std::uint64_t* InputWord(std::uint64_t* ring, std::size_t word) {
    const std::size_t vector = inputSlotVectors + word;
    return Slot(ring, static_cast<int>(vector / slotVectors)) + lanes * (vector % slotVectors);
}

ISA_AVX512 ALWAYS_INLINE Vector Load(const std::uint64_t* slot, int i) {
    return _mm512_loadu_si512(slot + lanes * static_cast<std::size_t>(i));
}

ISA_AVX512 ALWAYS_INLINE void Store(std::uint64_t* slot, int i, Vector value) {
    _mm512_storeu_si512(slot + lanes * static_cast<std::size_t>(i), value);
}

ISA_AVX512 ALWAYS_INLINE Vector SwapBytes(Vector words) {
    const Vector order =
        _mm512_broadcast_i32x4(_mm_set_epi8(8, 9, 10, 11, 12, 13, 14, 15, 0, 1, 2, 3, 4, 5, 6, 7));
    return _mm512_shuffle_epi8(words, order);
}

// Four vectors of four pairs of words change rows for columns, pair by pair.
ISA_AVX512 ALWAYS_INLINE void TransposePairs(Vector& a, Vector& b, Vector& c, Vector& d) {
    const Vector lowAB = _mm512_shuffle_i64x2(a, b, 0x44);
    const Vector lowCD = _mm512_shuffle_i64x2(c, d, 0x44);
    const Vector highAB = _mm512_shuffle_i64x2(a, b, 0xee);
    const Vector highCD = _mm512_shuffle_i64x2(c, d, 0xee);
    a = _mm512_shuffle_i64x2(lowAB, lowCD, 0x88);
    b = _mm512_shuffle_i64x2(lowAB, lowCD, 0xdd);
    c = _mm512_shuffle_i64x2(highAB, highCD, 0x88);
    d = _mm512_shuffle_i64x2(highAB, highCD, 0xdd);
}

// Rows and columns of eight by eight words change places.
ISA_AVX512 ALWAYS_INLINE void Transpose(Vector rows[8]) {
    for (int i = 0; i < 8; i += 2) {
        const Vector even = _mm512_unpacklo_epi64(rows[i], rows[i + 1]);
        rows[i + 1] = _mm512_unpackhi_epi64(rows[i], rows[i + 1]);
        rows[i] = even;
    }
    TransposePairs(rows[0], rows[2], rows[4], rows[6]);
    TransposePairs(rows[1], rows[3], rows[5], rows[7]);
}

ISA_AVX512 ALWAYS_INLINE void LoadNodes(Ring& ring, const std::uint8_t* const nodes[lanes]) {
    for (std::size_t word = 0; word < 64; word += 8) {
        Vector rows[lanes];
        for (std::size_t lane = 0; lane < lanes; ++lane)
            rows[lane] = SwapBytes(_mm512_loadu_si512(nodes[lane] + 8 * word));
        Transpose(rows);
        for (std::size_t i = 0; i < 8; ++i)
            Store(InputWord(ring, md6PrefixWords + 2 + word + i), 0, rows[i]);
    }
}

ISA_AVX512 ALWAYS_INLINE void StoreValues(std::uint8_t* values, std::size_t count,
                                          const std::uint64_t* result) {
    for (int word = 0; word < 16; word += 8) {
        Vector rows[lanes];
        for (int i = 0; i < 8; ++i)
            rows[i] = Load(result, word + i);
        Transpose(rows);
        for (std::size_t lane = 0; lane < count; ++lane)
            _mm512_storeu_si512(values + lane * md6ChainingValueSize + 8 * static_cast<std::size_t>(word),
                                SwapBytes(rows[lane]));
    }
}

// The word that lies `distance` words before word i of a round; back[n] is the slot of n rounds before.
#define TAP(i, distance)                                                                                     \
    Load(back[slots - (slots * slotVectors + i - distance) / slotVectors],                                   \
         (slots * slotVectors + i - distance) % slotVectors)

#define XOR_BOTH 0x96 // x ^ y ^ z
#define XOR_AND 0x78  // x ^ (y & z)

#define STEP(i, right, left)                                                                                 \
    {                                                                                                        \
        const Vector back17 = TAP(i, 17);                                                                    \
        Vector x = _mm512_ternarylogic_epi64(TAP(i, 89), s, back17, XOR_BOTH);                               \
        x = _mm512_ternarylogic_epi64(x, TAP(i, 31), TAP(i, 67), XOR_AND);                                   \
        x = _mm512_ternarylogic_epi64(x, back18, back21, XOR_AND);                                           \
        x = _mm512_xor_si512(x, _mm512_srli_epi64(x, right));                                                \
        Store(back[0], i, _mm512_xor_si512(x, _mm512_slli_epi64(x, left)));                                  \
        back21 = back20;                                                                                     \
        back20 = back19;                                                                                     \
        back19 = back18;                                                                                     \
        back18 = back17;                                                                                     \
    }

// Runs all rounds and returns the last 16 words.
ISA_AVX512 ALWAYS_INLINE const std::uint64_t* RunRounds(Ring& ring, int rounds) {
    std::uint64_t* slotOf[2 * slots];
    for (int i = 0; i < 2 * slots; ++i)
        slotOf[i] = Slot(ring, i);
    std::uint64_t constant = firstRoundConstant;
    Vector back21 = Load(slotOf[6], 11);
    Vector back20 = Load(slotOf[6], 12);
    Vector back19 = Load(slotOf[6], 13);
    Vector back18 = Load(slotOf[6], 14);
    for (int round = 0; round != rounds; ++round) {
        std::uint64_t* const* const place = slotOf + slots + (round & (slots - 1));
        std::uint64_t* const back[] = {place[0],  place[-1], place[-2], nullptr,
                                       place[-4], place[-5], place[-6]};
        const Vector s = _mm512_set1_epi64(static_cast<long long>(constant));
        MD6_ROUND(STEP)
        constant = NextRoundConstant(constant);
    }
    return Slot(ring, rounds - 1);
}

} // namespace

ISA_AVX512 void Md6_Nodes_X86Avx512(std::uint8_t* chainingValues, const std::uint8_t* nodes,
                                    std::size_t count, const Md6Batch& batch) {
    alignas(64) Ring ring;
    std::uint64_t firstId = batch.firstId;
    while (count != 0) {
        const std::size_t used = std::min(count, lanes);
        const std::uint8_t* ofLane[lanes];
        for (std::size_t lane = 0; lane < lanes; ++lane) {
            ofLane[lane] = nodes + (lane < used ? lane * md6NodeSize : 0);
            InputWord(ring, md6PrefixWords)[lane] = firstId + lane;
            InputWord(ring, md6PrefixWords + 1)[lane] = lane + 1 == count ? batch.lastControl : batch.control;
        }
        for (std::size_t i = 0; i < md6PrefixWords; ++i)
            Store(InputWord(ring, i), 0, _mm512_set1_epi64(static_cast<long long>(batch.prefix[i])));
        LoadNodes(ring, ofLane);
        StoreValues(chainingValues, used, RunRounds(ring, batch.rounds));

        nodes += used * md6NodeSize;
        chainingValues += used * md6ChainingValueSize;
        firstId += used;
        count -= used;
    }
}

} // namespace fyrn::kernels
