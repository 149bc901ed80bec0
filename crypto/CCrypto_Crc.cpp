// SPDX-License-Identifier: MIT
#include "crypto/CCrypto_Crc.h"

#include "crypto/EngineFrame.h"
#include "crypto/HexString.h"
#include "hash/CrcStream.h"
#include "support/ExceptionReporter.h"

namespace {

constexpr std::size_t readBufferSize = 1'000'000;

// The digits of a CRC as HashFile stores it.
template <class Word>
void Render(char* text, const Word& crc) {
    HexString_FromAllBytes(text, reinterpret_cast<const unsigned char*>(&crc), sizeof crc);
}

} // namespace

CCrypto_Crc::CCrypto_Crc(std::wstring*) {
    try {
        Crc16_SetPolynomial(0xa001);
        Crc32_SetPolynomial(0xedb88320, 0xffffffff);
        Crc64_SetPolynomial(0xd800000000000000, 0xffffffffffffffff);
    }
    CATCH_SITE("__cdecl CCrypto_Crc::CCrypto_Crc(class std::basic_string<wchar_t,struct "
               "std::char_traits<wchar_t>,class std::allocator<wchar_t> > *)")
}

void CCrypto_Crc::Crc16_SetPolynomial(std::uint16_t polynomial) {
    crc16_.Set(polynomial, 0xffff);
}

void CCrypto_Crc::Crc32_SetPolynomial(std::uint32_t polynomial, std::uint32_t value) {
    crc32_.Set(polynomial, value);
}

void CCrypto_Crc::Crc64_SetPolynomial(std::uint64_t polynomial, std::uint64_t value) {
    crc64_.Set(polynomial, value);
}

template <class Word>
const fyrn::kernels::CrcTables& CCrypto_Crc::Parameters<Word>::Tables() {
    if (!tablesReady) {
        fyrn::hash::MakeCrcTables(tables, polynomial);
        tablesReady = true;
    }
    return tables;
}

template <class Word>
bool CCrypto_Crc::HashFile(Parameters<Word>& parameters, const wchar_t* path, Word* crc) const {
    return engine_frame::WithOpenFile(path, crc, [&](platform::InputFile& file) {
        fyrn::hash::CrcStream<Word> stream(parameters.Tables(), parameters.value);
        engine_frame::FeedSaltAndFile(
            file, engine_frame::MakeReadBuffer(readBufferSize), *this,
            [&](const unsigned char* bytes, std::size_t count) { stream.Update(bytes, count); });
        stream.Finish(reinterpret_cast<unsigned char*>(crc));
    });
}

bool CCrypto_Crc::Crc16_GetFromFile(const wchar_t* path, std::uint16_t* crc) {
    try {
        return HashFile(crc16_, path, crc);
    }
    CATCH_SITE("bool __cdecl CCrypto_Crc::Crc16_GetFromFile(const wchar_t *,unsigned short *)")
    return false;
}

bool CCrypto_Crc::Crc16_GetFromFileAsString(const wchar_t* path, char text[]) {
    try {
        std::uint16_t crc = 0;
        if (path == nullptr || text == nullptr || !Crc16_GetFromFile(path, &crc))
            return false;
        Render(text, crc);
        return true;
    }
    CATCH_SITE("bool __cdecl CCrypto_Crc::Crc16_GetFromFileAsString(const wchar_t *,char [])")
    return false;
}

bool CCrypto_Crc::Crc32_GetFromFile(const wchar_t* path, std::uint32_t* crc) {
    try {
        return HashFile(crc32_, path, crc);
    }
    CATCH_SITE("bool __cdecl CCrypto_Crc::Crc32_GetFromFile(const wchar_t *,unsigned int *)")
    return false;
}

bool CCrypto_Crc::Crc32_GetFromFileAsString(const wchar_t* path, char text[]) {
    try {
        std::uint32_t crc = 0;
        if (path == nullptr || text == nullptr || !Crc32_GetFromFile(path, &crc))
            return false;
        Render(text, crc);
        return true;
    }
    CATCH_SITE("bool __cdecl CCrypto_Crc::Crc32_GetFromFileAsString(const wchar_t *,char [])")
    return false;
}

bool CCrypto_Crc::Crc64_GetFromFile(const wchar_t* path, std::uint64_t* crc) {
    try {
        return HashFile(crc64_, path, crc);
    }
    CATCH_SITE("bool __cdecl CCrypto_Crc::Crc64_GetFromFile(const wchar_t *,unsigned __int64 *)")
    return false;
}

bool CCrypto_Crc::Crc64_GetFromFileAsString(const wchar_t* path, char text[]) {
    try {
        std::uint64_t crc = 0;
        if (path == nullptr || text == nullptr || !Crc64_GetFromFile(path, &crc))
            return false;
        Render(text, crc);
        return true;
    }
    CATCH_SITE("bool __cdecl CCrypto_Crc::Crc64_GetFromFileAsString(const wchar_t *,char [])")
    return false;
}
