// SPDX-License-Identifier: MIT
#include "crypto/CCrypto_Shake.h"

#include "crypto/EngineFrame.h"
#include "crypto/HexString.h"
#include "crypto/SecureWipe.h"
#include "support/ExceptionReporter.h"

#include <algorithm>

namespace {

constexpr std::size_t readBufferSize = 1'000'000;
constexpr std::uint32_t textCapacity = 1024;
constexpr std::uint64_t countLimit = std::uint64_t{1} << 31; // from here on the text's length needs 33 bits

} // namespace

void CCrypto_Shake::Sponge::Update(const unsigned char* bytes, std::size_t count) {
    buffer_.Update(*this, bytes, count, BlockSize());
}

void CCrypto_Shake::Sponge::CompressAlone(const unsigned char* blocks, std::size_t count) {
    if (BlockSize() % 8 == 0)
        return KeccakStream::CompressAlone(blocks, count);
    for (std::size_t i = 0; i < count; ++i)
        KeccakStream::CompressAlone(blocks + i * BlockSize(), 1);
}

void CCrypto_Shake::Sponge::WipeBlock() {
    SecureWipe(buffer_.Bytes(), BlockSize());
}

CCrypto_Shake::CCrypto_Shake(std::wstring*) {}

// What the block buffer holds of a file is gone before the next one begins, and at the end.
void CCrypto_Shake::WipeBlock() {
    if (sponge_)
        sponge_->WipeBlock();
}

bool CCrypto_Shake::Shake_Absorb(const unsigned char* bytes, std::uint64_t count) {
    if (!sponge_)
        return false;
    sponge_->Update(bytes, static_cast<std::size_t>(count));
    return true;
}

// The state is permuted behind the last block of output as behind any other: that is the state in which a further message
// begins.
bool CCrypto_Shake::Shake_Squeeze(unsigned char* output, std::uint64_t count) {
    if (!sponge_)
        return false;
    sponge_->Pad();
    while (count != 0) {
        const auto piece = static_cast<std::size_t>(std::min<std::uint64_t>(sponge_->BlockSize(), count));
        sponge_->Output(output, piece);
        sponge_->Permute();
        output += piece;
        count -= piece;
    }
    return true;
}

bool CCrypto_Shake::Shake_GetFromFile(const wchar_t* path, unsigned char* output, std::uint64_t count,
                                      EnumShakeModeBufferLen mode) {
    try {
        if (path == nullptr || output == nullptr || mode == 0 || mode > Sponge::stateSize)
            return false;
        WipeBlock();
        sponge_.emplace(mode);
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
