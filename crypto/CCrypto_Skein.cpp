// SPDX-License-Identifier: MIT
#include "crypto/CCrypto_Skein.h"

#include "crypto/EngineFrame.h"
#include "crypto/HexString.h"
#include "support/ExceptionReporter.h"

namespace {

constexpr std::size_t readBufferSize = 1'048'576;
constexpr unsigned short maxStateBits = 1024;
constexpr std::uint32_t textCapacity = 1024; // whatever the caller states

template <std::size_t words>
using Context = CCrypto_Skein::Context<words>;

template <std::size_t words>
bool Init(Context<words>* context) {
    if (context == nullptr)
        return false;
    context->hashBitLength = 64 * words;
    context->stream.Reset();
    return true;
}

template <std::size_t words>
bool Update(Context<words>* context, const unsigned char* bytes, std::size_t count) {
    if (context == nullptr || bytes == nullptr)
        return false;
    context->stream.Update(bytes, count);
    return true;
}

template <std::size_t words>
bool Final(Context<words>* context, unsigned char* digest) {
    if (context == nullptr || digest == nullptr)
        return false;
    context->stream.Finish(digest);
    return true;
}

} // namespace

CCrypto_Skein::CCrypto_Skein(std::wstring*) {}

bool CCrypto_Skein::Skein_256_Init(SKEIN_256_CONTEXT* context) {
    return Init(context);
}

bool CCrypto_Skein::Skein_512_Init(SKEIN_512_CONTEXT* context) {
    return Init(context);
}

bool CCrypto_Skein::Skein_1024_Init(SKEIN_1024_CONTEXT* context) {
    return Init(context);
}

void CCrypto_Skein::Skein_256_ProcessBlock(SKEIN_256_CONTEXT* context, const unsigned char* blocks,
                                           std::size_t count, std::size_t added) {
    context->stream.Absorb(blocks, count, added);
}

void CCrypto_Skein::Skein_512_ProcessBlock(SKEIN_512_CONTEXT* context, const unsigned char* blocks,
                                           std::size_t count, std::size_t added) {
    context->stream.Absorb(blocks, count, added);
}

void CCrypto_Skein::Skein_1024_ProcessBlock(SKEIN_1024_CONTEXT* context, const unsigned char* blocks,
                                            std::size_t count, std::size_t added) {
    context->stream.Absorb(blocks, count, added);
}

bool CCrypto_Skein::Skein_256_Update(SKEIN_256_CONTEXT* context, const unsigned char* bytes,
                                     unsigned int count) {
    try {
        return Update(context, bytes, count);
    }
    CATCH_SITE_AT(707,
                  "bool __cdecl CCrypto_Skein::Skein_256_Update(struct CCrypto_Skein::SKEIN_256_CONTEXT *,"
                  "const unsigned char *,unsigned int)")
    return false;
}

bool CCrypto_Skein::Skein_512_Update(SKEIN_512_CONTEXT* context, const unsigned char* bytes,
                                     unsigned int count) {
    try {
        return Update(context, bytes, count);
    }
    CATCH_SITE_AT(982,
                  "bool __cdecl CCrypto_Skein::Skein_512_Update(struct CCrypto_Skein::SKEIN_512_CONTEXT *,"
                  "const unsigned char *,unsigned int)")
    return false;
}

bool CCrypto_Skein::Skein_1024_Update(SKEIN_1024_CONTEXT* context, const unsigned char* bytes,
                                      unsigned int count) {
    try {
        return Update(context, bytes, count);
    }
    CATCH_SITE_AT(1302, "bool __cdecl CCrypto_Skein::Skein_1024_Update(struct "
                        "CCrypto_Skein::SKEIN_1024_CONTEXT *,const unsigned char *,unsigned int)")
    return false;
}

bool CCrypto_Skein::Skein_256_Final(SKEIN_256_CONTEXT* context, unsigned char* digest) {
    try {
        return Final(context, digest);
    }
    CATCH_SITE_AT(509,
                  "bool __cdecl CCrypto_Skein::Skein_256_Final(struct CCrypto_Skein::SKEIN_256_CONTEXT *,"
                  "unsigned char *)")
    return false;
}

bool CCrypto_Skein::Skein_512_Final(SKEIN_512_CONTEXT* context, unsigned char* digest) {
    try {
        return Final(context, digest);
    }
    CATCH_SITE_AT(762,
                  "bool __cdecl CCrypto_Skein::Skein_512_Final(struct CCrypto_Skein::SKEIN_512_CONTEXT *,"
                  "unsigned char *)")
    return false;
}

bool CCrypto_Skein::Skein_1024_Final(SKEIN_1024_CONTEXT* context, unsigned char* digest) {
    try {
        return Final(context, digest);
    }
    CATCH_SITE_AT(1037, "bool __cdecl CCrypto_Skein::Skein_1024_Final(struct "
                        "CCrypto_Skein::SKEIN_1024_CONTEXT *,unsigned char *)")
    return false;
}

bool CCrypto_Skein::HashOpenFile(platform::InputFile& file, unsigned char* digest, unsigned short stateBits) {
    const auto hash = [&](auto context, auto init, auto update, auto final) {
        (this->*init)(&context);
        engine_frame::FeedSaltAndFile(file, engine_frame::MakeReadBuffer(readBufferSize), *this,
                                      [&](const unsigned char* bytes, std::size_t count) {
                                          (this->*update)(&context, bytes, static_cast<unsigned int>(count));
                                      });
        return (this->*final)(&context, digest);
    };
    switch (stateBits) {
    case 256:
        return hash(SKEIN_256_CONTEXT{}, &CCrypto_Skein::Skein_256_Init, &CCrypto_Skein::Skein_256_Update,
                    &CCrypto_Skein::Skein_256_Final);
    case 512:
        return hash(SKEIN_512_CONTEXT{}, &CCrypto_Skein::Skein_512_Init, &CCrypto_Skein::Skein_512_Update,
                    &CCrypto_Skein::Skein_512_Final);
    case 1024:
        return hash(SKEIN_1024_CONTEXT{}, &CCrypto_Skein::Skein_1024_Init, &CCrypto_Skein::Skein_1024_Update,
                    &CCrypto_Skein::Skein_1024_Final);
    default:
        return false;
    }
}

bool CCrypto_Skein::GetFromFile(const wchar_t* path, unsigned char* digest, int, unsigned short stateBits) {
    try {
        if (path == nullptr || digest == nullptr || stateBits > maxStateBits)
            return false;
        platform::InputFile file = platform::OpenForReading(path);
        if (!file)
            return false;
        const bool finished = HashOpenFile(file, digest, stateBits);
        platform::Close(file);
        return finished;
    }
    CATCH_SITE_AT(
        390, "bool __cdecl CCrypto_Skein::GetFromFile(const wchar_t *,unsigned char *,int,unsigned short)")
    return false;
}

bool CCrypto_Skein::GetFromFileAsString(const wchar_t* path, char* text, unsigned int,
                                        unsigned short stateBits) {
    try {
        if (path == nullptr || text == nullptr)
            return false;
        unsigned char digest[maxStateBits / 8];
        if (!GetFromFile(path, digest, sizeof digest, stateBits))
            return false;
        HexString_FromBytes(text, textCapacity, digest, stateBits / 8);
        return true;
    }
    CATCH_SITE_AT(422, "bool __cdecl CCrypto_Skein::GetFromFileAsString(const wchar_t *,char *,unsigned int,"
                       "unsigned short)")
    return false;
}
