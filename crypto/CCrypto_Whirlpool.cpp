// SPDX-License-Identifier: MIT
#include "crypto/CCrypto_Whirlpool.h"

#include "crypto/EngineFrame.h"
#include "crypto/HexString.h"
#include "support/ExceptionReporter.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr std::size_t readBufferSize = 1'000'000;

} // namespace

CCrypto_Whirlpool::CCrypto_Whirlpool(std::wstring*) {
    try {
        Initialize();
    }
    CATCH_SITE("__cdecl CCrypto_Whirlpool::CCrypto_Whirlpool(class std::basic_string<wchar_t,struct "
               "std::char_traits<wchar_t>,class std::allocator<wchar_t> > *)")
}

void CCrypto_Whirlpool::Initialize() {
    stream_ = {}; // with the block buffer, which Transform takes as it is
    stream_.Reset();
    std::memset(digest_, 0, sizeof digest_);
}

void CCrypto_Whirlpool::Transform() {
    stream_.Transform();
}

void CCrypto_Whirlpool::AddDataBlock(const unsigned char* bytes, int length) {
    try {
        stream_.Update(bytes, static_cast<std::size_t>(std::max(length, 0)));
    }
    CATCH_SITE("void __cdecl CCrypto_Whirlpool::AddDataBlock(const unsigned char *,int)")
}

void CCrypto_Whirlpool::Finalize() {
    try {
        stream_.Finish(digest_);
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
