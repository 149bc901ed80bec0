// SPDX-License-Identifier: MIT
#pragma once

#include "crypto/CCrypto_Salt.h"
#include "hash/kernels/Crc.h"

#include <cstdint>
#include <string>

// CRC-16, CRC-32 and CRC-64 of a file, each with a polynomial of the user's choice. A polynomial is the constant
// of a register that shifts right, lowest bit first; it is never reversed, so only the "reversed" form of a
// catalogue polynomial gives the CRC of the catalogue.
class CCrypto_Crc : public CCrypto_Salt {
  public:
    // Sets the catalogue's reflected polynomials 0x8005, 0x04c11db7 and 0x1b, with start and final values of all
    // ones. The log is not used.
    explicit CCrypto_Crc(std::wstring* pWstrDebugLog);

    // Set the polynomial and the value that the register starts with and the result is xored with.
    void Crc16_SetPolynomial(std::uint16_t polynomial); // the value is 0xffff
    void Crc32_SetPolynomial(std::uint32_t polynomial, std::uint32_t value);
    void Crc64_SetPolynomial(std::uint64_t polynomial, std::uint64_t value);

    // Write the CRC of salt and file, its bytes in memory with the highest first: on a little-endian machine an
    // integer with reversed bytes. False when a pointer is null or the file cannot be opened.
    bool Crc16_GetFromFile(const wchar_t* path, std::uint16_t* crc);
    bool Crc32_GetFromFile(const wchar_t* path, std::uint32_t* crc);
    bool Crc64_GetFromFile(const wchar_t* path, std::uint64_t* crc);

    // The same as 4, 8 or 16 lower-case hex digits, highest first, and a zero.
    bool Crc16_GetFromFileAsString(const wchar_t* path, char text[]);
    bool Crc32_GetFromFileAsString(const wchar_t* path, char text[]);
    bool Crc64_GetFromFileAsString(const wchar_t* path, char text[]);

  private:
    // The configuration of one width. Hashing does not change the CRC that it describes.
    template <class Word>
    struct Parameters {
        Word polynomial;
        Word value; // start and final value
        bool tablesReady;
        fyrn::kernels::CrcTables tables;

        void Set(Word newPolynomial, Word newValue) {
            polynomial = newPolynomial;
            value = newValue;
            tablesReady = false;
        }

        // The tables of the polynomial. Most runs hash no file with this width, so they are made for the first one.
        const fyrn::kernels::CrcTables& Tables();
    };

    template <class Word>
    bool HashFile(Parameters<Word>& parameters, const wchar_t* path, Word* crc) const;

    Parameters<std::uint16_t> crc16_;
    Parameters<std::uint32_t> crc32_;
    Parameters<std::uint64_t> crc64_;
};
