// SPDX-License-Identifier: MIT
// Keccak-f[1600] with AVX-512; Keccak_X86Avx512Planes.h tells how. The state stays in five vectors from
// block to block.
#include "hash/kernels/Keccak.h"
#include "hash/kernels/Keccak_X86Avx512Rounds.h"

namespace fyrn::kernels {
namespace {

using keccak_avx512::Lanes;
using LaneMask = __mmask8;

constexpr LaneMask plane = 0x1f;

ISA_AVX512 ALWAYS_INLINE Lanes LoadPlane(const std::uint64_t* words) {
    return _mm512_maskz_loadu_epi64(plane, words);
}

ISA_AVX512 ALWAYS_INLINE void StorePlane(std::uint64_t* words, Lanes lanes) {
    _mm512_mask_storeu_epi64(words, plane, lanes);
}

// The lanes of plane y among the first `lanes` words of the state.
LaneMask LanesOfPlane(std::size_t lanes, std::size_t y) {
    const std::size_t count = lanes > 5 * y ? lanes - 5 * y : 0;
    return static_cast<LaneMask>(count >= 5 ? plane : (1u << count) - 1);
}

// Adds the words of plane y of a block; what the mask leaves out is not read.
ISA_AVX512 ALWAYS_INLINE Lanes Absorb(Lanes lanes, LaneMask mask, const std::uint8_t* block, std::size_t y) {
    if (mask == 0)
        return lanes;
    return keccak_avx512::Xor(lanes, _mm512_maskz_loadu_epi64(mask, block + 40 * y));
}

} // namespace

ISA_AVX512 void Keccak_Blocks_X86Avx512(std::uint64_t state[25], const std::uint8_t* blocks,
                                        std::size_t lanes, std::size_t count) {
    const LaneMask masks[5] = {LanesOfPlane(lanes, 0), LanesOfPlane(lanes, 1), LanesOfPlane(lanes, 2),
                               LanesOfPlane(lanes, 3), LanesOfPlane(lanes, 4)};
    Lanes a0 = LoadPlane(state);
    Lanes a1 = LoadPlane(state + 5);
    Lanes a2 = LoadPlane(state + 10);
    Lanes a3 = LoadPlane(state + 15);
    Lanes a4 = LoadPlane(state + 20);
    for (; count != 0; --count, blocks += 8 * lanes) {
        a0 = Absorb(a0, masks[0], blocks, 0);
        a1 = Absorb(a1, masks[1], blocks, 1);
        a2 = Absorb(a2, masks[2], blocks, 2);
        a3 = Absorb(a3, masks[3], blocks, 3);
        a4 = Absorb(a4, masks[4], blocks, 4);
        keccak_avx512::Permute(a0, a1, a2, a3, a4);
    }
    StorePlane(state, a0);
    StorePlane(state + 5, a1);
    StorePlane(state + 10, a2);
    StorePlane(state + 15, a3);
    StorePlane(state + 20, a4);
}

} // namespace fyrn::kernels
