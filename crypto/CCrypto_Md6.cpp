// SPDX-License-Identifier: MIT
#include "crypto/CCrypto_Md6.h"

#include "crypto/EngineFrame.h"
#include "crypto/HexString.h"
#include "hash/Md6Compression.h"
#include "hash/kernels/Md6.h"
#include "support/ExceptionReporter.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr std::size_t readBufferSize = 1'048'576;
constexpr unsigned int textCapacity = 1024;
constexpr int maxKeyLength = Md6NodeTree::maxKeySize;
constexpr int maxDigestBits = Md6NodeTree::maxDigestBits;

constexpr unsigned int DigestBytes(unsigned int d) {
    return (d + 7) / 8;
}

bool Within(int value, int lowest, int highest) {
    return lowest <= value && value <= highest;
}

} // namespace

CCrypto_Md6::CCrypto_Md6(std::wstring*) {
    try {
        Initialize(maxDigestBits, 0);
    }
    CATCH_SITE("__cdecl CCrypto_Md6::CCrypto_Md6(class std::basic_string<wchar_t,struct "
               "std::char_traits<wchar_t>,class std::allocator<wchar_t> > *)")
}

// The key is the head of the salt: a departure that digests with a salt depend on.
int CCrypto_Md6::Initialize(unsigned short d, int) {
    try {
        if (!Within(d, 1, maxDigestBits))
            return md6BadDigestLength;
        tree_.Begin(d, SaltBytes(), std::min<std::uint32_t>(SaltLength(), maxKeyLength));
        return md6Success;
    }
    CATCH_SITE("int __cdecl CCrypto_Md6::Initialize(unsigned short,int)")
    return md6Fault;
}

int CCrypto_Md6::Md6_Update(const unsigned char* data, std::uint64_t bitCount) {
    try {
        if (data == nullptr)
            return md6NullData;
        tree_.UpdateBits(data, bitCount);
        return md6Success;
    }
    CATCH_SITE("int __cdecl CCrypto_Md6::Md6_Update(const unsigned char *,unsigned __int64)")
    return md6Fault;
}

int CCrypto_Md6::Md6_Final() {
    try {
        return tree_.Final();
    }
    CATCH_SITE("int __cdecl CCrypto_Md6::Md6_Final(void)")
    return md6Fault;
}

int CCrypto_Md6::Md6_Process(int ell, bool final) {
    try {
        return tree_.Process(ell, final);
    }
    CATCH_SITE("int __cdecl CCrypto_Md6::Md6_Process(int,bool)")
    return md6Fault;
}

int CCrypto_Md6::Md6_CompressBlock(std::uint64_t* C, int ell, bool z) {
    try {
        return tree_.CompressBlock(C, ell, z);
    }
    CATCH_SITE("int __cdecl CCrypto_Md6::Md6_CompressBlock(unsigned __int64 *,int,bool)")
    return md6Fault;
}

int CCrypto_Md6::Md6_CompressStandard(std::uint64_t* C, const std::uint64_t* Q, const std::uint64_t* K,
                                      int ell, std::uint64_t i, int r, int L, bool z, int p, int keylen,
                                      int d, const std::uint64_t* B) {
    try {
        if (C == nullptr)
            return md6NullOutput;
        if (B == nullptr)
            return md6NullInput;
        if (Q == nullptr)
            return md6NullConstant;
        if (K == nullptr)
            return md6NullKey;
        if (!Within(ell, 0, 255))
            return md6BadLevel;
        if (!Within(r, 0, 255))
            return md6BadRounds;
        if (!Within(L, 0, 255))
            return md6BadMode;
        if (!Within(p, 0, 8 * fyrn::kernels::md6NodeSize))
            return md6BadPadding;
        if (!Within(keylen, 0, maxKeyLength))
            return md6BadKeyLength;
        if (!Within(d, 1, maxDigestBits))
            return md6BadDigestLength;

        std::uint64_t N[fyrn::kernels::md6InputWords];
        std::uint64_t* const ids = std::copy_n(K, 8, std::copy_n(Q, 15, N));
        ids[0] = fyrn::hash::Md6NodeId(ell, i);
        ids[1] = fyrn::hash::Md6Control{.rounds = r,
                                        .mode = L,
                                        .isRoot = z,
                                        .padding = static_cast<std::uint32_t>(p),
                                        .keySize = static_cast<unsigned int>(keylen),
                                        .digestBits = static_cast<unsigned int>(d)}
                     .Word();
        std::copy_n(B, 64, ids + 2);
        return Md6_Compress(C, N, r);
    }
    CATCH_SITE("int __cdecl CCrypto_Md6::Md6_CompressStandard(unsigned __int64 *,const unsigned __int64 *,"
               "const unsigned __int64 *,int,unsigned __int64,int,int,bool,int,int,int,"
               "const unsigned __int64 *)")
    return md6Fault;
}

int CCrypto_Md6::Md6_Compress(std::uint64_t* C, const std::uint64_t* N, int r) {
    try {
        if (C == nullptr)
            return md6NullOutput;
        if (N == nullptr)
            return md6NullInput;
        if (!Within(r, 0, 255))
            return md6BadRounds;
        fyrn::hash::Md6Compress(C, N, r);
        return md6Success;
    }
    CATCH_SITE("int __cdecl CCrypto_Md6::Md6_Compress(unsigned __int64 *,const unsigned __int64 *,int)")
    return md6Fault;
}

int CCrypto_Md6::HashFile(platform::InputFile& file, unsigned short d) {
    int result = Initialize(d, 0);
    if (result != md6Success)
        return result;
    const auto update = [this, &result](const unsigned char* bytes, std::size_t count) {
        if (result == md6Success)
            result = Md6_Update(bytes, std::uint64_t{count} * 8);
    };
    engine_frame::FeedSaltBefore(*this, update);
    if (result != md6Success)
        return result;
    engine_frame::FeedFile(file, engine_frame::MakeReadBuffer(readBufferSize), update);
    engine_frame::FeedSaltAfter(*this, update);
    return result != md6Success ? result : Md6_Final();
}

// Once the file is open, the result is true whatever happens to the digest: users' scripts rely on it. Only
// a fault before the digest was copied makes it false.
bool CCrypto_Md6::GetFromFile(const wchar_t* path, unsigned char* digest, int, unsigned short d, int) {
    bool copied = false;
    try {
        if (path == nullptr || digest == nullptr || DigestBytes(d) > maxDigestBits / 8)
            return false;
        platform::InputFile file = platform::OpenForReading(path);
        if (!file)
            return false;
        if (HashFile(file, d) == md6Success) {
            std::memcpy(digest, HashValue(), DigestBytes(d));
            copied = true;
        }
        platform::Close(file);
        return true;
    }
    CATCH_SITE(
        "bool __cdecl CCrypto_Md6::GetFromFile(const wchar_t *,unsigned char *,int,unsigned short,int)")
    return copied;
}

bool CCrypto_Md6::GetFromFileAsString(const wchar_t* path, char* text, unsigned int, unsigned short d, int) {
    try {
        if (path == nullptr || text == nullptr || 2 * DigestBytes(d) + 1 > textCapacity)
            return false;
        unsigned char digest[maxDigestBits / 8];
        if (!GetFromFile(path, digest, sizeof digest, d, 0))
            return false;
        HexString_FromBytes(text, textCapacity, HashValue(), DigestBytes(d));
        return true;
    }
    CATCH_SITE("bool __cdecl CCrypto_Md6::GetFromFileAsString(const wchar_t *,char *,unsigned int,"
               "unsigned short,int)")
    return false;
}
