// SPDX-License-Identifier: MIT
#include "crypto/CCrypto_Sha.h"

#include "crypto/CCrypto_Sha_Sponge.h"
#include "crypto/EngineFrame.h"
#include "crypto/HexString.h"
#include "hash/kernels/KernelSelect.h"
#include "support/ExceptionReporter.h"

namespace {

constexpr std::size_t readBufferSize = 1'000'000;
constexpr std::size_t sha3ReadBufferSize =
    2'036'736; // a multiple of every rate: no piece but the last has a rest
constexpr unsigned char keccakPadding = 0x01;
constexpr unsigned char sha3Padding = 0x06;

// A GetFromFile without departures.
template <class Stream>
bool HashFile(const wchar_t* path, unsigned char* digest, const CCrypto_Salt& salt, Stream& stream) {
    return engine_frame::HashFile(
        path, digest, readBufferSize, salt, [&] { stream.Reset(); },
        [&](const unsigned char* bytes, std::size_t count) { stream.Update(bytes, count); },
        [&] { stream.Finish(digest); });
}

// The text of the digest that hash(digest) writes. The file is hashed also when there is no text to write.
template <std::size_t digestSize, class Hash>
bool RenderDigest(char* text, Hash hash) {
    unsigned char digest[digestSize];
    const bool hashed = hash(digest);
    if (hashed && text != nullptr)
        HexString_FromAllBytes(text, digest, digestSize);
    return hashed;
}

// The bytes of a block for a digest of `bits`: what twice the digest leaves of the state's 200. 0 for a
// length that does not exist.
std::size_t RateOf(unsigned short bits) {
    const bool exists = bits == 224 || bits == 256 || bits == 384 || bits == 512;
    return exists ? 200 - 2 * std::size_t{bits} / 8 : 0;
}

} // namespace

CCrypto_Sha::CCrypto_Sha(std::wstring*) {}

bool CCrypto_Sha::GetSha1_FromFile(const wchar_t* path, unsigned char digest[]) {
    try {
        return HashFile(path, digest, *this, sha1_);
    }
    CATCH_SITE("bool __cdecl CCrypto_Sha::GetSha1_FromFile(const wchar_t *,unsigned char [])")
    return false;
}

bool CCrypto_Sha::GetSha1_FromFileAsString(const wchar_t* path, char text[]) {
    try {
        return RenderDigest<20>(text, [&](unsigned char* digest) { return GetSha1_FromFile(path, digest); });
    }
    CATCH_SITE("bool __cdecl CCrypto_Sha::GetSha1_FromFileAsString(const wchar_t *,char [])")
    return false;
}

bool CCrypto_Sha::GetSha2_256_FromFile(const wchar_t* path, unsigned char digest[]) {
    try {
        return HashFile(path, digest, *this, sha256_);
    }
    CATCH_SITE("bool __cdecl CCrypto_Sha::GetSha2_256_FromFile(const wchar_t *,unsigned char [])")
    return false;
}

bool CCrypto_Sha::GetSha2_256_FromFileAsString(const wchar_t* path, char text[]) {
    try {
        return RenderDigest<32>(text,
                                [&](unsigned char* digest) { return GetSha2_256_FromFile(path, digest); });
    }
    CATCH_SITE("bool __cdecl CCrypto_Sha::GetSha2_256_FromFileAsString(const wchar_t *,char [])")
    return false;
}

bool CCrypto_Sha::GetSha2_384_FromFile(const wchar_t* path, unsigned char digest[]) {
    try {
        return HashFile(path, digest, *this, sha384_);
    }
    CATCH_SITE("bool __cdecl CCrypto_Sha::GetSha2_384_FromFile(const wchar_t *,unsigned char [])")
    return false;
}

bool CCrypto_Sha::GetSha2_384_FromFileAsString(const wchar_t* path, char text[]) {
    try {
        return RenderDigest<48>(text,
                                [&](unsigned char* digest) { return GetSha2_384_FromFile(path, digest); });
    }
    CATCH_SITE("bool __cdecl CCrypto_Sha::GetSha2_384_FromFileAsString(const wchar_t *,char [])")
    return false;
}

bool CCrypto_Sha::GetSha2_512_FromFile(const wchar_t* path, unsigned char digest[]) {
    try {
        return HashFile(path, digest, *this, sha512_);
    }
    CATCH_SITE("bool __cdecl CCrypto_Sha::GetSha2_512_FromFile(const wchar_t *,unsigned char [])")
    return false;
}

bool CCrypto_Sha::GetSha2_512_FromFileAsString(const wchar_t* path, char text[]) {
    try {
        return RenderDigest<64>(text,
                                [&](unsigned char* digest) { return GetSha2_512_FromFile(path, digest); });
    }
    CATCH_SITE("bool __cdecl CCrypto_Sha::GetSha2_512_FromFileAsString(const wchar_t *,char [])")
    return false;
}

bool CCrypto_Sha::GetSha3_FromFile(const wchar_t* path, unsigned short bits, unsigned char* digest,
                                   bool isKeccak) {
    try {
        const std::size_t rate = RateOf(bits);
        if (rate == 0)
            return false;
        return engine_frame::WithOpenFile(path, digest, [&](platform::InputFile& file) {
            sha::PaddedSponge sponge(rate, isKeccak ? keccakPadding : sha3Padding);
            const auto absorb = [&](const unsigned char* bytes, std::size_t count) {
                sponge.Absorb(bytes, count);
            };
            const auto absorbPadded = [&](const unsigned char* bytes, std::size_t count) {
                sponge.Absorb(bytes, count);
                sponge.Pad();
            };
            engine_frame::FeedSaltBefore(*this, absorbPadded);
            engine_frame::FeedFile(file, engine_frame::MakeReadBuffer(sha3ReadBufferSize), absorb);
            sponge.Pad();
            engine_frame::FeedSaltAfter(*this, absorbPadded);
            sponge.Output(digest, bits / 8);
        });
    }
    CATCH_SITE_AT(1560, "bool __cdecl CCrypto_Sha::GetSha3_FromFile(const wchar_t *,unsigned short,"
                        "unsigned char *,bool)")
    return false;
}

bool CCrypto_Sha::GetSha3_FromFileAsString(const wchar_t* path, unsigned short bits, char* text,
                                           unsigned int capacity, bool isKeccak) {
    try {
        unsigned char digest[64];
        if (!GetSha3_FromFile(path, bits, digest, isKeccak))
            return false;
        HexString_FromBytes(text, capacity, digest, bits / 8);
        return true;
    }
    CATCH_SITE_AT(1584, "bool __cdecl CCrypto_Sha::GetSha3_FromFileAsString(const wchar_t *,unsigned short,"
                        "char *,unsigned int,bool)")
    return false;
}

void CCrypto_Sha::Keccak_AbsorbBlock(std::uint64_t state[25], const unsigned char* input, std::size_t lanes,
                                     std::size_t blocks) {
    fyrn::kernels::Kernels().keccak(state, input, lanes, blocks);
}
