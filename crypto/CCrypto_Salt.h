// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

// Where an engine feeds the salt. Before is 1 or 3, after is 2 or 3; any other value feeds nothing.
enum class EnumSaltType : std::uint32_t { None = 0, Before = 1, After = 2, Both = 3 };

// The salt of an engine: the whole content of a file, which is hashed before the data, after it, or both.
class CCrypto_Salt {
  public:
    CCrypto_Salt() = default;
    ~CCrypto_Salt() { ClearSalt(); }
    CCrypto_Salt(const CCrypto_Salt&) = delete;
    CCrypto_Salt& operator=(const CCrypto_Salt&) = delete;

    // Replaces the salt by the content of a regular file of 1 to 10,000,000 bytes. Returns the number of
    // bytes now held; 0, and no salt, when the file cannot be used.
    unsigned int SetSalt_FromFile(const wchar_t* path, EnumSaltType placement);

    // Frees the salt bytes: there is none any more.
    void ClearSalt();

    bool FeedsBefore() const;
    bool FeedsAfter() const;
    std::uint32_t SaltLength() const { return bytes_ == nullptr ? 0 : length_; }
    const unsigned char* SaltBytes() const { return bytes_; }

  private:
    EnumSaltType placement_ = EnumSaltType::None;
    std::uint32_t length_ = 0;       // of the last file that was loaded, also when its bytes were cleared
    unsigned char* bytes_ = nullptr; // owned
};
