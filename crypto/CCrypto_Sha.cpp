// SPDX-License-Identifier: MIT
#include "crypto/CCrypto_Sha.h"

#include "crypto/EngineFrame.h"
#include "crypto/HexString.h"
#include "hash/KeccakStream.h"
#include "hash/kernels/KernelSelect.h"
#include "support/ExceptionReporter.h"

namespace {

using fyrn::hash::KeccakStream;

constexpr std::size_t readBufferSize = 1'000'000;
constexpr std::size_t sha3ReadBufferSize =
    2'036'736; // a multiple of every rate: no piece but the last has a rest

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
    return exists ? KeccakStream::stateSize - 2 * std::size_t{bits} / 8 : 0;
}

// A sponge over messages that are padded one by one and follow each other in one state.
//
// A departure that digests with a salt depend on: the block buffer is cleared at the start, but not between messages.
// Where an earlier message left a longer rest than this one, its bytes stand behind the padding byte and are absorbed
// again.
class SaltedSponge : public KeccakStream {
  public:
    SaltedSponge(std::size_t rate, std::uint8_t padding) : KeccakStream(rate, padding, 0) {
        buffer_.ZeroRest();
    }

    // Takes in a whole message.
    void AbsorbPadded(const unsigned char* bytes, std::size_t count) {
        Update(bytes, count);
        PadOverRest();
    }

    // Pads the message; the next piece starts another one.
    void PadOverRest() { AbsorbLastBlock(); }
};

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
            SaltedSponge sponge(rate, isKeccak ? KeccakStream::keccak : KeccakStream::sha3);
            const auto absorb = [&](const unsigned char* bytes, std::size_t count) {
                sponge.Update(bytes, count);
            };
            const auto absorbPadded = [&](const unsigned char* bytes, std::size_t count) {
                sponge.AbsorbPadded(bytes, count);
            };
            engine_frame::FeedSaltBefore(*this, absorbPadded);
            engine_frame::FeedFile(file, engine_frame::MakeReadBuffer(sha3ReadBufferSize), absorb);
            sponge.PadOverRest();
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
