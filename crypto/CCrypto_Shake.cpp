// SPDX-License-Identifier: MIT
#include "crypto/CCrypto_Shake.h"

#include "crypto/CCrypto_Sha_Sponge.h"
#include "crypto/EngineFrame.h"
#include "crypto/HexString.h"
#include "crypto/SecureWipe.h"
#include "support/ExceptionReporter.h"
#include "support/StringHelper.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace {

constexpr std::size_t readBufferSize = 1'000'000;
constexpr unsigned char padding = 0x1f;
constexpr std::uint32_t textCapacity = 1024;
constexpr std::size_t stateSize = 200;
constexpr std::uint64_t countLimit = std::uint64_t{1} << 31; // from here on the text's length needs 33 bits

} // namespace

CCrypto_Shake::CCrypto_Shake(std::wstring*) : sha_(nullptr) {}

void CCrypto_Shake::FreeBlockBuffer() {
    if (blockBuffer_ == nullptr)
        return;
    SecureWipe(blockBuffer_, rate_);
    delete[] blockBuffer_;
    blockBuffer_ = nullptr;
}

void CCrypto_Shake::Reset(EnumShakeModeBufferLen mode) {
    FreeBlockBuffer();
    rate_ = static_cast<std::uint8_t>(mode);
    blockBuffer_ = new unsigned char[rate_]();
    position_ = 0;
    std::fill(std::begin(state_), std::end(state_), 0);
}

void CCrypto_Shake::PermuteFullBlock() {
    sha_.Keccak_AbsorbBlock(state_, blockBuffer_, rate_ / 8u);
    position_ = 0;
}

// Whole blocks of whole lanes go into the state from where they are; the block buffer takes what is left of
// a block.
bool CCrypto_Shake::Shake_Absorb(const unsigned char* bytes, std::uint64_t count) {
    std::uint64_t taken = 0;
    while (taken < count) {
        const std::uint64_t left = count - taken;
        if (position_ == 0 && left >= rate_ && rate_ % 8 == 0) {
            sha_.Keccak_AbsorbBlock(state_, bytes + taken, rate_ / 8u,
                                    static_cast<std::size_t>(left / rate_));
            taken += left - left % rate_;
            continue;
        }
        const std::size_t room = std::size_t{rate_} - position_;
        const auto piece = static_cast<std::size_t>(std::min<std::uint64_t>(room, left));
        Safe_memmove(blockBuffer_ + position_, room, bytes + taken, piece, pWstrDebugLog_);
        position_ = static_cast<std::uint8_t>(position_ + piece);
        taken += piece;
        if (position_ == rate_)
            PermuteFullBlock();
    }
    return taken == count;
}

void CCrypto_Shake::FinishAbsorbing() {
    blockBuffer_[position_++] = padding;
    std::memset(blockBuffer_ + position_, 0, std::size_t{rate_} - position_);
    blockBuffer_[rate_ - 1] |= 0x80;
    PermuteFullBlock();
}

bool CCrypto_Shake::Shake_Squeeze(unsigned char* output, std::uint64_t count) {
    FinishAbsorbing();
    unsigned char block[stateSize];
    std::uint64_t produced = 0;
    while (produced < count) {
        const std::uint64_t left = count - produced;
        const auto piece = static_cast<std::size_t>(std::min<std::uint64_t>(rate_, left));
        sha::CopyStateBytes(block, state_, piece);
        Safe_memmove(output + produced, static_cast<std::size_t>(left), block, piece, pWstrDebugLog_);
        produced += piece;
        sha_.Keccak_AbsorbBlock(state_, nullptr, 0);
    }
    SecureWipe(block, sizeof block);
    return produced == count;
}

bool CCrypto_Shake::Shake_GetFromFile(const wchar_t* path, unsigned char* output, std::uint64_t count,
                                      EnumShakeModeBufferLen mode) {
    try {
        if (path == nullptr || output == nullptr || mode == 0 || mode > stateSize)
            return false;
        Reset(mode);
        bool squeezed = false;
        const bool opened = engine_frame::WithOpenFile(path, output, [&](platform::InputFile& file) {
            engine_frame::FeedFile(
                file, engine_frame::MakeReadBuffer(readBufferSize),
                [this](const unsigned char* bytes, std::size_t size) { Shake_Absorb(bytes, size); },
                SecureWipe);
            squeezed = Shake_Squeeze(output, count);
        });
        return opened && squeezed;
    }
    CATCH_SITE_AT(349, "bool __cdecl CCrypto_Shake::Shake_GetFromFile(const wchar_t *,unsigned char *,"
                       "unsigned __int64,enum CCrypto_Shake::EnumShakeModeBufferLen)")
    return false;
}

bool CCrypto_Shake::Shake_GetFromFileAsString(const wchar_t* path, std::uint64_t count, char* text,
                                              unsigned int, EnumShakeModeBufferLen mode) {
    try {
        if (count >= countLimit)
            return false;
        const auto size = static_cast<std::uint32_t>(count);
        unsigned char* const digest = new unsigned char[size];
        const bool hashed = Shake_GetFromFile(path, digest, size, mode);
        if (hashed)
            HexString_FromBytes(text, textCapacity, digest, size);
        SecureWipe(digest, size);
        delete[] digest;
        return hashed;
    }
    CATCH_SITE_AT(414, "bool __cdecl CCrypto_Shake::Shake_GetFromFileAsString(const wchar_t *,"
                       "unsigned __int64,char *,unsigned int,enum CCrypto_Shake::EnumShakeModeBufferLen)")
    return false;
}
