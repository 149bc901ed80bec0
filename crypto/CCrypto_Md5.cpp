// SPDX-License-Identifier: MIT
#include "crypto/CCrypto_Md5.h"

#include "crypto/EngineFrame.h"
#include "crypto/HexString.h"
#include "crypto/kernels/ByteOrder.h"
#include "crypto/kernels/KernelSelect.h"
#include "support/ExceptionReporter.h"

#include <cstring>
#include <iterator>

namespace {

constexpr std::size_t readBufferSize = 1'048'576;
constexpr unsigned int blockSize = 64;
constexpr std::uint32_t initialState[4] = {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476};

} // namespace

CCrypto_Md5::CCrypto_Md5(std::wstring*) {
    try {
        ResetContext();
    }
    CATCH_SITE("__cdecl CCrypto_Md5::CCrypto_Md5(class std::basic_string<wchar_t,struct "
               "std::char_traits<wchar_t>,class std::allocator<wchar_t> > *)")
}

void CCrypto_Md5::ResetContext() {
    bitCountLow_ = 0;
    bitCountHigh_ = 0;
    std::memset(buffer_, 0, sizeof buffer_);
    std::memset(digest_, 0, sizeof digest_);
    std::memset(state_, 0, sizeof state_);
}

void CCrypto_Md5::DoBlock(const unsigned char* bytes, unsigned int count) {
    try {
        const unsigned int index = bitCountLow_ >> 3 & (blockSize - 1);
        const std::uint32_t addedLow = count << 3;
        bitCountLow_ += addedLow;
        if (bitCountLow_ < addedLow)
            ++bitCountHigh_;
        bitCountHigh_ += count >> 29;

        const unsigned int room = blockSize - index;
        if (count < room) {
            std::memcpy(buffer_ + index, bytes, count);
            return;
        }
        std::memcpy(buffer_ + index, bytes, room);
        Transform(buffer_);
        const unsigned int whole = (count - room) / blockSize;
        kernels::Kernels().md5(state_, bytes + room, whole);
        const unsigned int taken = room + whole * blockSize;
        std::memcpy(buffer_, bytes + taken, count - taken);
    }
    CATCH_SITE("void __cdecl CCrypto_Md5::DoBlock(const unsigned char *,unsigned int)")
}

void CCrypto_Md5::Transform(const unsigned char* block) {
    try {
        kernels::Kernels().md5(state_, block, 1);
    }
    CATCH_SITE("void __cdecl CCrypto_Md5::Transform(const unsigned char *)")
}

void CCrypto_Md5::Finalize() {
    try {
        static constexpr unsigned char padding[blockSize] = {0x80};
        unsigned char length[8];
        kernels::StoreLittle(length, bitCountLow_);
        kernels::StoreLittle(length + 4, bitCountHigh_);

        const unsigned int index = bitCountLow_ >> 3 & (blockSize - 1);
        DoBlock(padding, index < 56 ? 56 - index : 120 - index);
        DoBlock(length, sizeof length);
        for (std::size_t i = 0; i < std::size(state_); ++i)
            kernels::StoreLittle(digest_ + 4 * i, state_[i]);
    }
    CATCH_SITE("void __cdecl CCrypto_Md5::Finalize(void)")
}

bool CCrypto_Md5::GetFromFile(const wchar_t* path, unsigned char digest[]) {
    try {
        return engine_frame::HashFile(
            path, digest, readBufferSize, *this,
            [this] {
                ResetContext();
                std::memcpy(state_, initialState, sizeof state_);
            },
            [this](const unsigned char* bytes, std::size_t count) {
                DoBlock(bytes, static_cast<unsigned int>(count));
            },
            [this, digest] {
                Finalize();
                std::memcpy(digest, digest_, sizeof digest_);
            });
    }
    CATCH_SITE("bool __cdecl CCrypto_Md5::GetFromFile(const wchar_t *,unsigned char [])")
    return false;
}

bool CCrypto_Md5::GetFromFileAsString(const wchar_t* path, char text[]) {
    try {
        if (path == nullptr || text == nullptr)
            return false;
        unsigned char digest[sizeof digest_];
        if (!GetFromFile(path, digest))
            return false;
        HexString_FromAllBytes(text, digest_, sizeof digest_);
        return true;
    }
    CATCH_SITE("bool __cdecl CCrypto_Md5::GetFromFileAsString(const wchar_t *,char [])")
    return false;
}
