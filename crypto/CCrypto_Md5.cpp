// SPDX-License-Identifier: MIT
#include "crypto/CCrypto_Md5.h"

#include "crypto/EngineFrame.h"
#include "crypto/HexString.h"
#include "support/ExceptionReporter.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr std::size_t readBufferSize = 1'048'576;

} // namespace

CCrypto_Md5::CCrypto_Md5(std::wstring*) {
    try {
        ResetContext();
    }
    CATCH_SITE("__cdecl CCrypto_Md5::CCrypto_Md5(class std::basic_string<wchar_t,struct "
               "std::char_traits<wchar_t>,class std::allocator<wchar_t> > *)")
}

void CCrypto_Md5::ResetContext() {
    stream_ = {};
    std::fill(std::begin(digest_), std::end(digest_), std::uint8_t{0});
}

void CCrypto_Md5::DoBlock(const unsigned char* bytes, unsigned int count) {
    try {
        stream_.Update(bytes, count);
    }
    CATCH_SITE("void __cdecl CCrypto_Md5::DoBlock(const unsigned char *,unsigned int)")
}

// A fault in a run of blocks is reported once.
void CCrypto_Md5::Reporting::Compress(std::uint32_t* state, const std::uint8_t* blocks, std::size_t count) {
    try {
        fyrn::hash::Md5::Compress(state, blocks, count);
    }
    CATCH_SITE("void __cdecl CCrypto_Md5::Transform(const unsigned char *)")
}

void CCrypto_Md5::Transform(const unsigned char* block) {
    Reporting::Compress(stream_.State(), block, 1);
}

void CCrypto_Md5::Finalize() {
    try {
        stream_.Finish(digest_);
    }
    CATCH_SITE("void __cdecl CCrypto_Md5::Finalize(void)")
}

bool CCrypto_Md5::GetFromFile(const wchar_t* path, unsigned char digest[]) {
    try {
        return engine_frame::WithOpenFile(path, digest, [this, digest](platform::InputFile& file) {
            const auto buffer =
                engine_frame::MakeReadBuffer(readBufferSize); // without memory the message stays as it was
            ResetContext();
            stream_.Reset();
            engine_frame::FeedSaltAndFile(file, buffer, *this,
                                          [this](const unsigned char* bytes, std::size_t count) {
                                              DoBlock(bytes, static_cast<unsigned int>(count));
                                          });
            Finalize();
            std::copy(std::begin(digest_), std::end(digest_), digest);
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
        HexString_FromAllBytes(text, digest, sizeof digest);
        return true;
    }
    CATCH_SITE("bool __cdecl CCrypto_Md5::GetFromFileAsString(const wchar_t *,char [])")
    return false;
}
