// SPDX-License-Identifier: MIT
#include "crypto/CCrypto_Whirlpool.h"

#include "crypto/EngineFrame.h"
#include "crypto/HexString.h"
#include "hash/kernels/ByteOrder.h"
#include "hash/kernels/KernelSelect.h"
#include "support/ExceptionReporter.h"

#include <cstring>
#include <iterator>

namespace {

constexpr std::size_t readBufferSize = 1'000'000;
constexpr int blockSize = 64;
constexpr int lengthPosition = 32; // the last half of the last block is the bit length

} // namespace

CCrypto_Whirlpool::CCrypto_Whirlpool(std::wstring*) {
    try {
        Initialize();
    }
    CATCH_SITE("__cdecl CCrypto_Whirlpool::CCrypto_Whirlpool(class std::basic_string<wchar_t,struct "
               "std::char_traits<wchar_t>,class std::allocator<wchar_t> > *)")
}

void CCrypto_Whirlpool::Initialize() {
    std::memset(bitLength_, 0, sizeof bitLength_);
    std::memset(buffer_, 0, sizeof buffer_);
    std::memset(digest_, 0, sizeof digest_);
    bufferBits_ = 0;
    bufferPosition_ = 0;
    std::memset(hash_, 0, sizeof hash_);
}

void CCrypto_Whirlpool::Transform() {
    fyrn::kernels::Kernels().whirlpool(hash_, buffer_, 1);
}

// The number of bits is a product of 32 bits with a sign: from 268,435,456 bytes in one call on it is not the
// true one. A deliberate quirk, which pieces of a file and salts are too short to meet.
void CCrypto_Whirlpool::CountBits(int length) {
    const auto product = static_cast<std::int32_t>(static_cast<std::uint32_t>(length) << 3);
    auto value = static_cast<std::uint64_t>(std::int64_t{product});
    unsigned int carry = 0;
    for (std::size_t i = sizeof bitLength_; i-- > 0 && (carry != 0 || value != 0); value >>= 8) {
        carry += bitLength_[i] + static_cast<unsigned int>(value & 0xff);
        bitLength_[i] = static_cast<unsigned char>(carry);
        carry >>= 8;
    }
}

void CCrypto_Whirlpool::AddDataBlock(const unsigned char* bytes, int length) {
    try {
        CountBits(length);
        const int shift = bufferBits_ & 7;
        if (shift == 0)
            AddWholeBytes(bytes, length);
        else
            for (int i = 0; i < length; ++i)
                AddShiftedByte(bytes[i], shift);
    }
    CATCH_SITE("void __cdecl CCrypto_Whirlpool::AddDataBlock(const unsigned char *,int)")
}

void CCrypto_Whirlpool::AddWholeBytes(const unsigned char* bytes, int length) {
    const int room = blockSize - bufferPosition_;
    if (bufferPosition_ != 0 && length >= room) {
        std::memcpy(buffer_ + bufferPosition_, bytes, static_cast<std::size_t>(room));
        Transform();
        bufferPosition_ = 0;
        bytes += room;
        length -= room;
    }
    if (length >= blockSize) {
        const int whole = length / blockSize;
        fyrn::kernels::Kernels().whirlpool(hash_, bytes, static_cast<std::size_t>(whole));
        bytes += whole * blockSize;
        length %= blockSize;
    }
    if (length > 0) {
        std::memcpy(buffer_ + bufferPosition_, bytes, static_cast<std::size_t>(length));
        bufferPosition_ += length;
    }
    buffer_[bufferPosition_] = 0;
    bufferBits_ = 8 * bufferPosition_;
}

// Adds a byte behind `shift` bits that the current byte already holds.
void CCrypto_Whirlpool::AddShiftedByte(unsigned int byte, int shift) {
    buffer_[bufferPosition_] = static_cast<unsigned char>(buffer_[bufferPosition_] | byte >> shift);
    ++bufferPosition_;
    if (bufferPosition_ == blockSize) {
        Transform();
        bufferPosition_ = 0;
    }
    buffer_[bufferPosition_] = static_cast<unsigned char>(byte << (8 - shift));
    bufferBits_ = 8 * bufferPosition_ + shift;
}

void CCrypto_Whirlpool::Finalize() {
    try {
        const unsigned int endMark = 0x80u >> (bufferBits_ & 7);
        buffer_[bufferPosition_] = static_cast<unsigned char>(buffer_[bufferPosition_] | endMark);
        ++bufferPosition_;
        if (bufferPosition_ > lengthPosition) {
            std::memset(buffer_ + bufferPosition_, 0, static_cast<std::size_t>(blockSize - bufferPosition_));
            Transform();
            bufferPosition_ = 0;
        }
        std::memset(buffer_ + bufferPosition_, 0, static_cast<std::size_t>(lengthPosition - bufferPosition_));
        bufferPosition_ = lengthPosition;
        std::memcpy(buffer_ + lengthPosition, bitLength_, sizeof bitLength_);
        Transform();
        for (std::size_t i = 0; i < std::size(hash_); ++i)
            fyrn::kernels::StoreBig(digest_ + 8 * i, hash_[i]);
    }
    CATCH_SITE("void __cdecl CCrypto_Whirlpool::Finalize(void)")
}

bool CCrypto_Whirlpool::GetFromFile(const wchar_t* path, unsigned char digest[]) {
    try {
        return engine_frame::HashFile(
            path, digest, readBufferSize, *this, [this] { Initialize(); },
            [this](const unsigned char* bytes, std::size_t count) {
                AddDataBlock(bytes, static_cast<int>(count));
            },
            [this, digest] {
                Finalize();
                std::memcpy(digest, digest_, sizeof digest_);
            });
    }
    CATCH_SITE("bool __cdecl CCrypto_Whirlpool::GetFromFile(const wchar_t *,unsigned char [])")
    return false;
}

// Unlike its relatives it hashes the file before it looks at the text pointer.
bool CCrypto_Whirlpool::GetFromFileAsString(const wchar_t* path, char text[]) {
    try {
        unsigned char digest[sizeof digest_];
        if (!GetFromFile(path, digest) || text == nullptr)
            return false;
        HexString_FromAllBytes(text, digest_, sizeof digest_);
        return true;
    }
    CATCH_SITE("bool __cdecl CCrypto_Whirlpool::GetFromFileAsString(const wchar_t *,char [])")
    return false;
}
