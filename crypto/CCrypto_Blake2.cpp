// SPDX-License-Identifier: MIT
#include "crypto/CCrypto_Blake2.h"

#include "crypto/EngineFrame.h"
#include "crypto/HexString.h"
#include "hash/kernels/ByteOrder.h"
#include "hash/kernels/KernelSelect.h"
#include "support/ExceptionReporter.h"
#include "support/StringHelper.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr std::size_t readBufferSize = 1'048'576;
constexpr std::size_t blockSize = 128;
constexpr unsigned char maxDigestLength = 64;
constexpr std::uint32_t textCapacity = 1024; // whatever the caller states
constexpr std::uint64_t allOnes = ~std::uint64_t{0};

// The parameter block of RFC 7693 for sequential hashing: digest length, key length 0, fanout 1, depth 1;
// everything behind them is 0.
struct ParameterBlock {
    unsigned char bytes[64] = {};

    explicit ParameterBlock(unsigned char digestLength) {
        bytes[0] = digestLength;
        bytes[2] = 1;
        bytes[3] = 1;
    }
};

} // namespace

CCrypto_Blake2::CCrypto_Blake2(std::wstring*) {}

unsigned int CCrypto_Blake2::SetSalt_FromFile(const wchar_t* path, EnumSaltType placement) {
    return salt_.SetSalt_FromFile(path, placement);
}

bool CCrypto_Blake2::Blake2_Initialize(unsigned char digestLength) {
    try {
        if (digestLength == 0 || digestLength > maxDigestLength)
            return false;
        state_ = {};
        std::memset(buffer_, 0, sizeof buffer_);
        bufferedLength_ = 0;
        digestLength_ = digestLength;
        const ParameterBlock parameters(digestLength);
        for (std::size_t i = 0; i < std::size(state_.chain); ++i)
            state_.chain[i] = fyrn::kernels::blake2bInitialValues[i] ^
                              fyrn::kernels::LoadLittle<std::uint64_t>(parameters.bytes + 8 * i);
        return true;
    }
    CATCH_SITE_AT(218, "bool __cdecl CCrypto_Blake2::Blake2_Initialize(unsigned char)")
    return false;
}

void CCrypto_Blake2::Blake2_Update(const unsigned char* bytes, std::uint64_t count) {
    try {
        if (count == 0)
            return;
        auto left = static_cast<std::size_t>(count);
        if (bufferedLength_ + count > blockSize) {
            const auto compress = fyrn::kernels::Kernels().blake2b;
            const std::size_t room = blockSize - bufferedLength_;
            std::memcpy(buffer_ + bufferedLength_, bytes, room);
            compress(state_, buffer_, 1, blockSize);
            bufferedLength_ = 0;

            const std::size_t whole = (left - room - 1) / blockSize; // the last block stays back
            compress(state_, bytes + room, whole, blockSize);
            bytes += room + whole * blockSize;
            left -= room + whole * blockSize;
        }
        std::memcpy(buffer_ + bufferedLength_, bytes, left);
        bufferedLength_ += left;
    }
    CATCH_SITE_AT(373, "void __cdecl CCrypto_Blake2::Blake2_Update(const unsigned char *,unsigned __int64)")
}

bool CCrypto_Blake2::Blake2_Final(unsigned char* digest, unsigned char length) {
    try {
        if (state_.flags[0] != 0)
            return false;
        state_.flags[0] = allOnes;
        std::memset(buffer_ + bufferedLength_, 0, blockSize - bufferedLength_);
        fyrn::kernels::Kernels().blake2b(state_, buffer_, 1, bufferedLength_);

        unsigned char local[maxDigestLength];
        for (std::size_t i = 0; i < std::size(state_.chain); ++i)
            fyrn::kernels::StoreLittle(local + 8 * i, state_.chain[i]);
        // A caller without room for the digest gets none of it: the guarded move then goes from the local
        // block onto itself and leaves only its warning.
        unsigned char* const target = length < digestLength_ ? local : digest;
        const std::size_t wanted = std::max<std::size_t>(length, digestLength_);
        Safe_memmove(target, length, local, std::min(wanted, sizeof local), debugLog_);
        Blake2_SecureZeroMemory(local, sizeof local);
        return true;
    }
    CATCH_SITE_AT(176, "bool __cdecl CCrypto_Blake2::Blake2_Final(unsigned char *,unsigned char)")
    return false;
}

void CCrypto_Blake2::Blake2_SecureZeroMemory(void* memory, std::uint64_t size) {
    try {
        static void* (*volatile const setMemory)(void*, int, std::size_t) = std::memset;
        setMemory(memory, 0, static_cast<std::size_t>(size));
    }
    CATCH_SITE_AT(325, "void __cdecl CCrypto_Blake2::Blake2_SecureZeroMemory(void *,unsigned __int64)")
}

bool CCrypto_Blake2::GetFromFile(const wchar_t* path, unsigned char* digest, int, unsigned char digestLength,
                                 const void*, unsigned char) {
    try {
        if (path == nullptr || digest == nullptr || digestLength > maxDigestLength)
            return false;
        platform::InputFile file = platform::OpenForReading(path);
        if (!file)
            return false;
        bool finished = false;
        if (Blake2_Initialize(digestLength)) {
            engine_frame::FeedSaltAndFile(
                file, engine_frame::MakeReadBuffer(readBufferSize), salt_,
                [this](const unsigned char* bytes, std::size_t count) { Blake2_Update(bytes, count); });
            finished = Blake2_Final(digest, digestLength);
        }
        platform::Close(file);
        return finished;
    }
    CATCH_SITE_AT(546, "bool __cdecl CCrypto_Blake2::GetFromFile(const wchar_t *,unsigned char *,int,"
                       "unsigned char,const void *,unsigned char)")
    return false;
}

bool CCrypto_Blake2::GetFromFileAsString(const wchar_t* path, char* text, unsigned int,
                                         unsigned char digestLength, const void*, unsigned char) {
    try {
        if (path == nullptr || text == nullptr)
            return false;
        unsigned char digest[maxDigestLength];
        if (!GetFromFile(path, digest, sizeof digest, digestLength, nullptr, 0))
            return false;
        HexString_FromBytes(text, textCapacity, digest, digestLength);
        return true;
    }
    CATCH_SITE_AT(578, "bool __cdecl CCrypto_Blake2::GetFromFileAsString(const wchar_t *,char *,unsigned int,"
                       "unsigned char,const void *,unsigned char)")
    return false;
}
