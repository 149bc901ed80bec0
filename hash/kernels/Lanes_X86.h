// SPDX-License-Identifier: MIT
// Part of Lanes_X86Avx2.h and Lanes_X86Avx512.h: what is made of their operations. Words go from messages and states
// into vectors by sixteen bytes at a time, because the processor's shuffles stay within these.
#pragma once

namespace fyrn::kernels {
namespace {

using Words32 = Words<std::uint32_t>;
using Words64 = Words<std::uint64_t>;

// The words of twice as many messages: two operations side by side, neither of which waits for the other.
template <class Half>
struct Pair {
    using Word = typename Half::Word;
    static constexpr std::size_t lanes = 2 * Half::lanes;
    Half first;
    Half second;
};

template <class Half>
ISA_LANES ALWAYS_INLINE Pair<Half> operator+(Pair<Half> x, Pair<Half> y) {
    return {x.first + y.first, x.second + y.second};
}

template <class Half>
ISA_LANES ALWAYS_INLINE Pair<Half> operator-(Pair<Half> x, Pair<Half> y) {
    return {x.first - y.first, x.second - y.second};
}

template <class Half>
ISA_LANES ALWAYS_INLINE Pair<Half> operator^(Pair<Half> x, Pair<Half> y) {
    return {x.first ^ y.first, x.second ^ y.second};
}

template <class Half>
ISA_LANES ALWAYS_INLINE Pair<Half> Xor(Pair<Half> x, Pair<Half> y, Pair<Half> z) {
    return {Xor(x.first, y.first, z.first), Xor(x.second, y.second, z.second)};
}

template <class Half>
ISA_LANES ALWAYS_INLINE Pair<Half> Choose(Pair<Half> x, Pair<Half> y, Pair<Half> z) {
    return {Choose(x.first, y.first, z.first), Choose(x.second, y.second, z.second)};
}

template <class Half>
ISA_LANES ALWAYS_INLINE Pair<Half> Majority(Pair<Half> x, Pair<Half> y, Pair<Half> z, Pair<Half> xXorY,
                                            Pair<Half> yXorZ) {
    return {Majority(x.first, y.first, z.first, xXorY.first, yXorZ.first),
            Majority(x.second, y.second, z.second, xXorY.second, yXorZ.second)};
}

template <class Half>
ISA_LANES ALWAYS_INLINE Pair<Half> XorNotAnd(Pair<Half> x, Pair<Half> y, Pair<Half> z) {
    return {XorNotAnd(x.first, y.first, z.first), XorNotAnd(x.second, y.second, z.second)};
}

template <int count, class Half>
ISA_LANES ALWAYS_INLINE Pair<Half> RotateLeft(Pair<Half> x) {
    return {RotateLeft<count>(x.first), RotateLeft<count>(x.second)};
}

// The same number added to the word of each message.
template <class T>
ISA_LANES ALWAYS_INLINE Words<T> operator+(Words<T> x, std::type_identity_t<T> number) {
    return x + Broadcast(number);
}

template <class Half>
ISA_LANES ALWAYS_INLINE Pair<Half> operator+(Pair<Half> x, typename Half::Word number) {
    return {x.first + number, x.second + number};
}

template <int count, class T>
ISA_LANES ALWAYS_INLINE Words<T> RotateRight(Words<T> x) {
    return RotateLeft<8 * sizeof(T) - count>(x);
}

template <std::size_t count, class T>
ISA_LANES ALWAYS_INLINE void ReverseBytes(Words<T> (&words)[count]) {
    for (Words<T>& each : words)
        each = ReverseBytes(each);
}

// In each sixteen bytes: from four words of each of four messages to one word of all of them, and back.
ISA_LANES ALWAYS_INLINE void Transpose(Words32& a, Words32& b, Words32& c, Words32& d) {
    const Register abLow = UnpackLow32(a.all, b.all);
    const Register abHigh = UnpackHigh32(a.all, b.all);
    const Register cdLow = UnpackLow32(c.all, d.all);
    const Register cdHigh = UnpackHigh32(c.all, d.all);
    a.all = UnpackLow64(abLow, cdLow);
    b.all = UnpackHigh64(abLow, cdLow);
    c.all = UnpackLow64(abHigh, cdHigh);
    d.all = UnpackHigh64(abHigh, cdHigh);
}

ISA_LANES ALWAYS_INLINE void Transpose(Words64& a, Words64& b) {
    const Register low = UnpackLow64(a.all, b.all);
    b.all = UnpackHigh64(a.all, b.all);
    a.all = low;
}

// Four words of each message, from an offset in bytes on.
template <class T>
ISA_LANES ALWAYS_INLINE void LoadFour(T* const messages[], std::size_t offset, Words32& a, Words32& b,
                                      Words32& c, Words32& d) {
    a.all = LoadPieces<4>(messages, offset);
    b.all = LoadPieces<4>(messages + 1, offset);
    c.all = LoadPieces<4>(messages + 2, offset);
    d.all = LoadPieces<4>(messages + 3, offset);
    Transpose(a, b, c, d);
}

ISA_LANES ALWAYS_INLINE void StoreFour(std::uint32_t* const messages[], std::size_t offset, Words32 a,
                                       Words32 b, Words32 c, Words32 d) {
    Transpose(a, b, c, d);
    StorePieces<4>(messages, offset, a.all);
    StorePieces<4>(messages + 1, offset, b.all);
    StorePieces<4>(messages + 2, offset, c.all);
    StorePieces<4>(messages + 3, offset, d.all);
}

template <class Half>
ISA_LANES ALWAYS_INLINE void LoadFour(std::uint32_t* const states[], std::size_t offset, Pair<Half>& a,
                                      Pair<Half>& b, Pair<Half>& c, Pair<Half>& d) {
    LoadFour(states, offset, a.first, b.first, c.first, d.first);
    LoadFour(states + Half::lanes, offset, a.second, b.second, c.second, d.second);
}

template <class Half>
ISA_LANES ALWAYS_INLINE void StoreFour(std::uint32_t* const states[], std::size_t offset, Pair<Half> a,
                                       Pair<Half> b, Pair<Half> c, Pair<Half> d) {
    StoreFour(states, offset, a.first, b.first, c.first, d.first);
    StoreFour(states + Half::lanes, offset, a.second, b.second, c.second, d.second);
}

// The part of a line of 64 bytes that comes from one message of every four.
ISA_LANES ALWAYS_INLINE void LoadLinePart(const std::uint8_t* const messages[], std::size_t offset,
                                          Words32* w) {
    w[0].all = LoadPieces<4>(messages, offset);
    w[4].all = LoadPieces<4>(messages, offset + 16);
    w[8].all = LoadPieces<4>(messages, offset + 32);
    w[12].all = LoadPieces<4>(messages, offset + 48);
}

// The 16 words of a line of 64 bytes in each message. A message's line is done with before the next one's: those of
// many messages may have one place in the first-level cache, which has not room for all.
ISA_LANES ALWAYS_INLINE void LoadLine(const std::uint8_t* const messages[], std::size_t offset,
                                      Words32 w[16]) {
    LoadLinePart(messages, offset, w);
    LoadLinePart(messages + 1, offset, w + 1);
    LoadLinePart(messages + 2, offset, w + 2);
    LoadLinePart(messages + 3, offset, w + 3);
    Transpose(w[0], w[1], w[2], w[3]);
    Transpose(w[4], w[5], w[6], w[7]);
    Transpose(w[8], w[9], w[10], w[11]);
    Transpose(w[12], w[13], w[14], w[15]);
}

template <class Half>
ISA_LANES ALWAYS_INLINE void LoadLine(const std::uint8_t* const messages[], std::size_t offset,
                                      Pair<Half> w[16]) {
    Half first[16];
    Half second[16];
    LoadLine(messages, offset, first);
    LoadLine(messages + Half::lanes, offset, second);
    for (int i = 0; i < 16; ++i)
        w[i] = {first[i], second[i]};
}

// Two words of each message, from an offset in bytes on.
template <class T>
ISA_LANES ALWAYS_INLINE void LoadTwo(T* const messages[], std::size_t offset, Words64& a, Words64& b) {
    a.all = LoadPieces<2>(messages, offset);
    b.all = LoadPieces<2>(messages + 1, offset);
    Transpose(a, b);
}

template <class T>
ISA_LANES ALWAYS_INLINE void StoreTwo(T* const states[], std::size_t offset, Words64 a, Words64 b) {
    Transpose(a, b);
    StorePieces<2>(states, offset, a.all);
    StorePieces<2>(states + 1, offset, b.all);
}

// The part of a line of 64 bytes that comes from one message of every two.
ISA_LANES ALWAYS_INLINE void LoadLinePart(const std::uint8_t* const messages[], std::size_t offset,
                                          Words64* w) {
    w[0].all = LoadPieces<2>(messages, offset);
    w[2].all = LoadPieces<2>(messages, offset + 16);
    w[4].all = LoadPieces<2>(messages, offset + 32);
    w[6].all = LoadPieces<2>(messages, offset + 48);
}

// The 8 words of a line of 64 bytes in each message.
ISA_LANES ALWAYS_INLINE void LoadLine(const std::uint8_t* const messages[], std::size_t offset, Words64* w) {
    LoadLinePart(messages, offset, w);
    LoadLinePart(messages + 1, offset, w + 1);
    Transpose(w[0], w[1]);
    Transpose(w[2], w[3]);
    Transpose(w[4], w[5]);
    Transpose(w[6], w[7]);
}

} // namespace
} // namespace fyrn::kernels
