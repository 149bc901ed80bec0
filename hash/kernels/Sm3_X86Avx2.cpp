// SPDX-License-Identifier: MIT
// SM3 with AVX2 and BMI2: the message schedule is in vectors, which leave the integer units to the rounds.
//
// The four words after the last 16 are made at once, though the last of them depends on the first. All is linear there, so
// what is missing comes afterwards: the first word rotated by 15 and permuted, which is that word rotated by 15, 30 and 6.
// Words are made eight rounds before they are used.
#include "hash/kernels/Isa.h"
#include "hash/kernels/Sm3.h"
#include "hash/kernels/Sm3_Rounds.h"

#include <immintrin.h>

#include <bit>

namespace fyrn::kernels {

namespace {

using sm3::Word;
using Words = __m128i; // four words of the schedule

ISA_AVX2_BMI ALWAYS_INLINE Words LoadWords(const std::uint8_t* bytes) {
    const Words bigEndian = _mm_set_epi64x(0x0c0d0e0f08090a0b, 0x0405060700010203);
    return _mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const Words*>(bytes)), bigEndian);
}

template <int count>
ISA_AVX2_BMI ALWAYS_INLINE Words Rotated(Words words) {
    return _mm_or_si128(_mm_slli_epi32(words, count), _mm_srli_epi32(words, 32 - count));
}

ISA_AVX2_BMI ALWAYS_INLINE Words RotatedBy8(Words words) {
    return _mm_shuffle_epi8(words, _mm_set_epi64x(0x0e0d0c0f0a09080b, 0x0605040702010003));
}

ISA_AVX2_BMI ALWAYS_INLINE Words Xor(Words x, Words y) {
    return _mm_xor_si128(x, y);
}

// The next four words after m0..m3.
ISA_AVX2_BMI ALWAYS_INLINE Words NextWords(Words m0, Words m1, Words m2, Words m3) {
    const Words words = Xor(Xor(m0, _mm_alignr_epi8(m2, m1, 12)), Rotated<15>(_mm_srli_si128(m3, 4)));
    const Words by15 = Rotated<15>(words);
    const Words rest = Xor(Rotated<7>(_mm_alignr_epi8(m1, m0, 12)), _mm_alignr_epi8(m3, m2, 8));
    const Words next = Xor(Xor(words, by15), Xor(RotatedBy8(by15), rest));
    const Words first15 = Rotated<15>(_mm_slli_si128(next, 12));
    const Words first30 = Rotated<15>(first15);
    return Xor(Xor(next, first15), Xor(first30, RotatedBy8(first30)));
}

// The words of four rounds, and each with the word four rounds later.
struct RoundWords {
    alignas(16) Word plain[4];
    alignas(16) Word mixed[4];
};

ISA_AVX2_BMI ALWAYS_INLINE void Store(RoundWords& to, Words now, Words later) {
    _mm_store_si128(reinterpret_cast<Words*>(to.plain), now);
    _mm_store_si128(reinterpret_cast<Words*>(to.mixed), Xor(now, later));
    __asm__("" : "+m"(to)); // the rounds read memory: words taken out of the vectors would take their units
}

// One round, as in the portable kernel, in the order that was fastest of those tried. The two halves of the choice share
// no bit and are added one by one.
template <int t>
ISA_AVX2_BMI ALWAYS_INLINE void Round(Word& a, Word& b, Word c, Word& d, Word e, Word& f, Word g, Word& h,
                                      const RoundWords& words) {
    Word a12 = std::rotl(a, 12);
    Word s1 = sm3::Constant(t) + a12;
    __asm__("" : "+r"(s1)); // a sum of three in one instruction would come a cycle later
    s1 += e;
    h += words.plain[t % 4];
    if constexpr (t < 16) {
        h += e ^ f ^ g;
    } else {
        h += e & f;
        h += ~e & g;
    }
    s1 = std::rotl(s1, 7);
    d += words.mixed[t % 4];
    h += s1;
    a12 ^= s1;
    d += sm3::FunctionF<t>(a, b, c);
    h = sm3::Permute0(h);
    d += a12;
    b = std::rotl(b, 9);
    f = std::rotl(f, 19);
}

template <int t>
ISA_AVX2_BMI ALWAYS_INLINE void FourRounds(Word (&s)[8], const RoundWords& words) {
    Round<t>(s[0], s[1], s[2], s[3], s[4], s[5], s[6], s[7], words);
    Round<t + 1>(s[3], s[0], s[1], s[2], s[7], s[4], s[5], s[6], words);
    Round<t + 2>(s[2], s[3], s[0], s[1], s[6], s[7], s[4], s[5], words);
    Round<t + 3>(s[1], s[2], s[3], s[0], s[5], s[6], s[7], s[4], words);
}

// Rounds t to t + 3, and the words that come 16 rounds later in the place of their own.
template <int t>
ISA_AVX2_BMI ALWAYS_INLINE void FourRoundsAndWords(Word (&s)[8], RoundWords& words, Words& m0, Words m1,
                                                   Words m2, Words m3) {
    FourRounds<t>(s, words);
    m0 = NextWords(m0, m1, m2, m3);
    Store(words, m2, m3);
}

template <int t>
ISA_AVX2_BMI ALWAYS_INLINE void SixteenRoundsAndWords(Word (&s)[8], RoundWords& even, RoundWords& odd,
                                                      Words (&m)[4]) {
    FourRoundsAndWords<t>(s, even, m[0], m[1], m[2], m[3]);
    FourRoundsAndWords<t + 4>(s, odd, m[1], m[2], m[3], m[0]);
    FourRoundsAndWords<t + 8>(s, even, m[2], m[3], m[0], m[1]);
    FourRoundsAndWords<t + 12>(s, odd, m[3], m[0], m[1], m[2]);
}

} // namespace

ISA_AVX2_BMI void Sm3_Blocks_X86Avx2(std::uint32_t state[8], const std::uint8_t* blocks, std::size_t count) {
    Word s[8];
    for (int i = 0; i < 8; ++i)
        s[i] = state[i];
    for (; count != 0; --count, blocks += 64) {
        Words m[4] = {LoadWords(blocks), LoadWords(blocks + 16), LoadWords(blocks + 32),
                      LoadWords(blocks + 48)};
        RoundWords even;
        RoundWords odd;
        Store(even, m[0], m[1]);
        Store(odd, m[1], m[2]);
        SixteenRoundsAndWords<0>(s, even, odd, m);
        SixteenRoundsAndWords<16>(s, even, odd, m);
        SixteenRoundsAndWords<32>(s, even, odd, m);
        FourRoundsAndWords<48>(s, even, m[0], m[1], m[2], m[3]);
        FourRounds<52>(s, odd);
        Store(odd, m[3], m[0]);
        FourRounds<56>(s, even);
        FourRounds<60>(s, odd);
        for (int i = 0; i < 8; ++i)
            state[i] = s[i] ^= state[i];
    }
}

} // namespace fyrn::kernels
