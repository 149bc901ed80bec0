// SPDX-License-Identifier: MIT
#include "crypto/CCrypto_Blake2.h"

#include "crypto/EngineFrame.h"
#include "crypto/HexString.h"
#include "support/ExceptionReporter.h"
#include "support/StringHelper.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr std::size_t readBufferSize = 1'048'576;
constexpr unsigned char maxDigestLength = 64;
constexpr std::uint32_t textCapacity = 1024; // whatever the caller states

} // namespace

CCrypto_Blake2::CCrypto_Blake2(std::wstring*) {}

unsigned int CCrypto_Blake2::SetSalt_FromFile(const wchar_t* path, EnumSaltType placement) {
    return salt_.SetSalt_FromFile(path, placement);
}

bool CCrypto_Blake2::Blake2_Initialize(unsigned char digestLength) {
    try {
        if (digestLength == 0 || digestLength > maxDigestLength)
            return false;
        stream_.Begin(digestLength);
        return true;
    }
    CATCH_SITE_AT(218, "bool __cdecl CCrypto_Blake2::Blake2_Initialize(unsigned char)")
    return false;
}

void CCrypto_Blake2::Blake2_Update(const unsigned char* bytes, std::uint64_t count) {
    try {
        stream_.Update(bytes, static_cast<std::size_t>(count));
    }
    CATCH_SITE_AT(373, "void __cdecl CCrypto_Blake2::Blake2_Update(const unsigned char *,unsigned __int64)")
}

bool CCrypto_Blake2::Blake2_Final(unsigned char* digest, unsigned char length) {
    try {
        if (stream_.IsFinished())
            return false;
        unsigned char local[maxDigestLength];
        stream_.FinishWhole(local);
        // A caller without room for the digest gets none of it: the guarded move then goes from the local
        // block onto itself and leaves only its warning.
        unsigned char* const target = length < stream_.DigestSize() ? local : digest;
        const std::size_t wanted = std::max<std::size_t>(length, stream_.DigestSize());
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
