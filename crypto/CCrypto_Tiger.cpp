// SPDX-License-Identifier: MIT
#include "crypto/CCrypto_Tiger.h"

#include "crypto/EngineFrame.h"
#include "crypto/HexString.h"
#include "support/ExceptionReporter.h"

#include <cstring>

namespace {

using fyrn::hash::Tiger1;
using fyrn::hash::Tiger2;

constexpr std::size_t readBufferSize = 1'048'576;
constexpr unsigned int textCapacity = 1024;
constexpr unsigned int maxBits = 8 * TigerStream::digestSize;

} // namespace

CCrypto_Tiger::CCrypto_Tiger(std::wstring*) {}

void CCrypto_Tiger::Tiger_Initialize() {
    stream_.Reset();
}

void CCrypto_Tiger::Tiger_Compress(const unsigned char* block) {
    Tiger2<24>::Compress(stream_.State(), block, 1);
}

void CCrypto_Tiger::Tiger_Transform(const unsigned char* data, std::uint64_t length) {
    try {
        stream_.Update(data, static_cast<std::size_t>(length));
    }
    CATCH_SITE("void __cdecl CCrypto_Tiger::Tiger_Transform(const unsigned char *,unsigned __int64)")
}

void CCrypto_Tiger::Tiger_Finalize() {
    try {
        stream_.Finish(tiger2_ ? Tiger2<24>::padding : Tiger1<24>::padding);
    }
    CATCH_SITE("void __cdecl CCrypto_Tiger::Tiger_Finalize(void)")
}

bool CCrypto_Tiger::GetFromFile(const wchar_t* path, unsigned char* digest, unsigned int, unsigned short bits,
                                bool tiger2, unsigned char) {
    try {
        if (path == nullptr || digest == nullptr || bits > maxBits)
            return false;
        tiger2_ = tiger2;
        return engine_frame::WithOpenFile(path, digest, [this, digest, bits](platform::InputFile& file) {
            const auto buffer =
                engine_frame::MakeReadBuffer(readBufferSize); // without memory the message stays as it was
            Tiger_Initialize();
            engine_frame::FeedSaltAndFile(
                file, buffer, *this,
                [this](const unsigned char* bytes, std::size_t count) { Tiger_Transform(bytes, count); });
            Tiger_Finalize();
            unsigned char whole[TigerStream::digestSize];
            stream_.StoreDigest(whole);
            std::memcpy(digest, whole, bits / 8u);
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
        unsigned char digest[TigerStream::digestSize];
        if (!GetFromFile(path, digest, sizeof digest, bits, tiger2, 3))
            return false;
        HexString_FromBytes(text, textCapacity, digest, bits / 8u);
        return true;
    }
    CATCH_SITE("bool __cdecl CCrypto_Tiger::GetFromFileAsString(const wchar_t *,char *,unsigned int,"
               "unsigned short,bool,unsigned char)")
    return false;
}
