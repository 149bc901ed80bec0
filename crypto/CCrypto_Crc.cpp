// SPDX-License-Identifier: MIT
#include "crypto/CCrypto_Crc.h"

#include "crypto/EngineFrame.h"
#include "crypto/HexString.h"
#include "hash/kernels/ByteOrder.h"
#include "hash/kernels/KernelSelect.h"
#include "support/ExceptionReporter.h"

#include <algorithm>
#include <iterator>

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

template <class Word>
void CCrypto_Crc::SetPolynomial(Parameters<Word>& parameters, Word polynomial, Word value) {
    for (unsigned int i = 0; i < 256; ++i) {
        Word c = static_cast<Word>(i);
        for (int bit = 0; bit < 8; ++bit)
            c = static_cast<Word>(c >> 1 ^ (-(c & 1) & polynomial));
        parameters.table[i] = c;
    }
    parameters.polynomial = polynomial;
    parameters.value = value;
    parameters.kernelTablesReady = false;
}

void CCrypto_Crc::Crc16_SetPolynomial(std::uint16_t polynomial) {
    SetPolynomial<std::uint16_t>(crc16_, polynomial, 0xffff);
}

void CCrypto_Crc::Crc32_SetPolynomial(std::uint32_t polynomial, std::uint32_t value) {
    SetPolynomial(crc32_, polynomial, value);
}

void CCrypto_Crc::Crc64_SetPolynomial(std::uint64_t polynomial, std::uint64_t value) {
    SetPolynomial(crc64_, polynomial, value);
}

// Most runs hash no file with this width, so the program's start does not wait for these tables.
template <class Word>
const fyrn::kernels::CrcTables& CCrypto_Crc::KernelTables(Parameters<Word>& parameters) {
    fyrn::kernels::CrcTables& tables = parameters.kernelTables;
    if (!parameters.kernelTablesReady) {
        std::copy(std::begin(parameters.table), std::end(parameters.table), tables.slices[0]);
        fyrn::kernels::Crc_CompleteTables(tables);
        parameters.kernelTablesReady = true;
    }
    return tables;
}

template <class Word>
bool CCrypto_Crc::HashFile(Parameters<Word>& parameters, const wchar_t* path, Word* crc) const {
    std::uint64_t accumulator = 0;
    return engine_frame::HashFile(
        path, crc, readBufferSize, *this, [&] { accumulator = parameters.value; },
        [&](const unsigned char* bytes, std::size_t count) {
            accumulator = fyrn::kernels::Kernels().crc(KernelTables(parameters), accumulator, bytes, count);
        },
        [&] {
            const Word result = static_cast<Word>(accumulator ^ parameters.value);
            fyrn::kernels::StoreBig(reinterpret_cast<unsigned char*>(crc), result);
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
