// SPDX-License-Identifier: MIT
// Tiger with BEXTR, which takes a byte out of a word in one instruction that leaves the word alone. The chain of a
// round is xor, byte, look-up, two xors and a subtraction. A shift and a mask in place of BEXTR cost one cycle of some
// eleven on processors where BEXTR takes a single cycle (AMD's); where it takes two, nothing is lost.
#include "hash/kernels/Tiger_Round.h"

namespace fyrn::kernels {
namespace {

using tiger::Word;

// BEXTR's operand: the first bit, and the number of bits from bit 8 on.
constexpr Word ByteAt(Word bit) {
    return bit | 8 << 8;
}

// Keeps the three operands in registers: the empty asm hides from the compiler that they are constants. BEXTR is
// written as asm because the round that it becomes part of is compiled for every processor.
class ExtractedBytes {
  public:
    ALWAYS_INLINE ExtractedBytes() { __asm__("" : "+r"(at16_), "+r"(at32_), "+r"(at48_)); }
    ALWAYS_INLINE Word At16(Word value) const { return Extract(value, at16_); }
    ALWAYS_INLINE Word At32(Word value) const { return Extract(value, at32_); }
    ALWAYS_INLINE Word At48(Word value) const { return Extract(value, at48_); }

  private:
    ALWAYS_INLINE static Word Extract(Word value, Word operand) {
        Word byte;
        __asm__("bextr %2, %1, %0" : "=r"(byte) : "r"(value), "r"(operand) : "cc");
        return byte;
    }

    Word at16_ = ByteAt(16);
    Word at32_ = ByteAt(32);
    Word at48_ = ByteAt(48);
};

} // namespace

ISA_BMI void Tiger_Blocks_X86Bmi(std::uint64_t state[3], const std::uint8_t* blocks, std::size_t count) {
    tiger::CompressBlocks(ExtractedBytes(), state, blocks, count);
}

} // namespace fyrn::kernels
