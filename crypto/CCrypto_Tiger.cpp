// SPDX-License-Identifier: MIT
#include "crypto/CCrypto_Tiger.h"

#include "crypto/EngineFrame.h"
#include "crypto/HexString.h"
#include "hash/kernels/ByteOrder.h"
#include "hash/kernels/KernelSelect.h"
#include "support/ExceptionReporter.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr std::size_t readBufferSize = 1'048'576;
constexpr unsigned int textCapacity = 1024;
constexpr unsigned int maxBits = 192;
constexpr std::uint64_t initialState[3] = {0x0123456789abcdef, 0xfedcba9876543210, 0xf096a5b4c3b2e187};

} // namespace

CCrypto_Tiger::CCrypto_Tiger(std::wstring*) {}

void CCrypto_Tiger::Tiger_Initialize() {
    std::memcpy(state_, initialState, sizeof state_);
    length_ = 0;
    buffered_ = 0;
}

void CCrypto_Tiger::Tiger_Compress(const unsigned char* block) {
    fyrn::kernels::Kernels().tiger(state_, block, 1);
}

void CCrypto_Tiger::Tiger_Transform(const unsigned char* data, std::uint64_t length) {
    try {
        if (length == 0)
            return;
        const auto filling = static_cast<std::size_t>(std::min<std::uint64_t>(blockSize - buffered_, length));
        std::memcpy(buffer_ + buffered_, data, filling);
        buffered_ = static_cast<std::uint8_t>(buffered_ + filling);
        if (buffered_ < blockSize)
            return;
        Tiger_Compress(buffer_);
        const auto whole = static_cast<std::size_t>((length - filling) / blockSize);
        fyrn::kernels::Kernels().tiger(state_, data + filling, whole);
        const std::size_t compressed = filling + whole * blockSize;
        length_ += compressed; // of this call's data alone: the quirk
        buffered_ = static_cast<std::uint8_t>(length - compressed);
        std::memcpy(buffer_, data + compressed, buffered_);
    }
    CATCH_SITE("void __cdecl CCrypto_Tiger::Tiger_Transform(const unsigned char *,unsigned __int64)")
}

void CCrypto_Tiger::Tiger_Finalize() {
    try {
        constexpr unsigned int lengthPosition = blockSize - 8;
        const std::uint64_t total = length_ + buffered_;
        buffer_[buffered_++] = tiger2_ ? 0x80 : 0x01;
        std::memset(buffer_ + buffered_, 0, blockSize - buffered_);
        if (buffered_ > lengthPosition) {
            Tiger_Compress(buffer_);
            std::memset(buffer_, 0, lengthPosition);
        }
        fyrn::kernels::StoreLittle(buffer_ + lengthPosition, total * 8);
        Tiger_Compress(buffer_);
        buffered_ = 0;
    }
    CATCH_SITE("void __cdecl CCrypto_Tiger::Tiger_Finalize(void)")
}

void CCrypto_Tiger::CopyDigest(unsigned char* digest, unsigned int count) const {
    unsigned char bytes[sizeof state_];
    for (unsigned int i = 0; i < 3; ++i)
        fyrn::kernels::StoreLittle(bytes + 8 * i, state_[i]);
    std::memcpy(digest, bytes, count);
}

bool CCrypto_Tiger::GetFromFile(const wchar_t* path, unsigned char* digest, unsigned int, unsigned short bits,
                                bool tiger2, unsigned char) {
    try {
        if (path == nullptr || digest == nullptr || bits > maxBits)
            return false;
        tiger2_ = tiger2;
        return engine_frame::WithOpenFile(path, digest, [this, digest, bits](platform::InputFile& file) {
            const auto buffer =
                engine_frame::MakeReadBuffer(readBufferSize); // without memory the state stays as it was
            Tiger_Initialize();
            engine_frame::FeedSaltAndFile(
                file, buffer, *this,
                [this](const unsigned char* bytes, std::size_t count) { Tiger_Transform(bytes, count); });
            Tiger_Finalize();
            CopyDigest(digest, bits / 8u);
        });
    }
    CATCH_SITE("bool __cdecl CCrypto_Tiger::GetFromFile(const wchar_t *,unsigned char *,unsigned int,"
               "unsigned short,bool,unsigned char)")
    return false;
}

bool CCrypto_Tiger::GetFromFileAsString(const wchar_t* path, char* text, unsigned int, unsigned short bits,
                                        bool tiger2, unsigned char) {
    try {
        if (path == nullptr || text == nullptr)
            return false;
        unsigned char digest[sizeof state_];
        if (!GetFromFile(path, digest, sizeof digest, bits, tiger2, 3))
            return false;
        HexString_FromBytes(text, textCapacity, digest, bits / 8u);
        return true;
    }
    CATCH_SITE("bool __cdecl CCrypto_Tiger::GetFromFileAsString(const wchar_t *,char *,unsigned int,"
               "unsigned short,bool,unsigned char)")
    return false;
}
