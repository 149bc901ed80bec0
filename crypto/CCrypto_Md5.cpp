// SPDX-License-Identifier: MIT
#include "crypto/CCrypto_Md5.h"

#include "crypto/EngineFrame.h"
#include "crypto/HexString.h"
#include "hash/kernels/KernelSelect.h"
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
    context_.Reset();
}

void CCrypto_Md5::DoBlock(const unsigned char* bytes, unsigned int count) {
    try {
        context_.Absorb(bytes, count, TransformBlocks);
    }
    CATCH_SITE("void __cdecl CCrypto_Md5::DoBlock(const unsigned char *,unsigned int)")
}

// One catch site for a run of blocks: a fault in it is reported once, and the caller goes on.
void CCrypto_Md5::TransformBlocks(std::uint32_t state[4], const unsigned char* blocks, std::size_t count) {
    try {
        fyrn::kernels::Kernels().md5(state, blocks, count);
    }
    CATCH_SITE("void __cdecl CCrypto_Md5::Transform(const unsigned char *)")
}

void CCrypto_Md5::Transform(const unsigned char* block) {
    TransformBlocks(context_.state, block, 1);
}

void CCrypto_Md5::Finalize() {
    try {
        context_.Finish(TransformBlocks);
    }
    CATCH_SITE("void __cdecl CCrypto_Md5::Finalize(void)")
}

bool CCrypto_Md5::GetFromFile(const wchar_t* path, unsigned char digest[]) {
    try {
        return engine_frame::WithOpenFile(path, digest, [this, digest](platform::InputFile& file) {
            const auto buffer =
                engine_frame::MakeReadBuffer(readBufferSize); // without memory the context stays as it was
            ResetContext();
            context_.SetInitialState();
            engine_frame::FeedSaltAndFile(file, buffer, *this,
                                          [this](const unsigned char* bytes, std::size_t count) {
                                              DoBlock(bytes, static_cast<unsigned int>(count));
                                          });
            Finalize();
            std::copy(std::begin(context_.digest), std::end(context_.digest), digest);
        });
    }
    CATCH_SITE("bool __cdecl CCrypto_Md5::GetFromFile(const wchar_t *,unsigned char [])")
    return false;
}

bool CCrypto_Md5::GetFromFileAsString(const wchar_t* path, char text[]) {
    try {
        if (path == nullptr || text == nullptr)
            return false;
        unsigned char digest[sizeof context_.digest];
        if (!GetFromFile(path, digest))
            return false;
        HexString_FromAllBytes(text, digest, sizeof digest);
        return true;
    }
    CATCH_SITE("bool __cdecl CCrypto_Md5::GetFromFileAsString(const wchar_t *,char [])")
    return false;
}
