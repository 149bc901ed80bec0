// SPDX-License-Identifier: MIT
// libfyrn for C++20: the functions of fyrn/fyrn.h as classes. Header-only, over the C functions.
#pragma once

#if !defined(__cplusplus) || (__cplusplus < 202002L && (!defined(_MSVC_LANG) || _MSVC_LANG < 202002L))
#    error "fyrn/fyrn.hpp needs C++20; fyrn/fyrn.h serves C and earlier C++"
#else // the one error that there is then

#    include "fyrn/fyrn.h"

#    include <array>
#    include <cerrno>
#    include <cstddef>
#    include <cstdint>
#    include <filesystem>
#    include <fstream>
#    include <memory>
#    include <new>
#    include <optional>
#    include <span>
#    include <stdexcept>
#    include <string>
#    include <string_view>
#    include <system_error>
#    include <utility>
#    include <vector>

namespace fyrn {

// One hash function: a small value, to be copied freely.
class Function {
  public:
    // The function of this name or alias; nothing if there is none. Case, '-', '_', '/' and blanks do not count.
    static std::optional<Function> Find(std::string_view name) {
        const fyrn_function* const row = fyrn_function_find(std::string(name).c_str());
        return row == nullptr ? std::nullopt : std::optional(Function(row));
    }

    // The same; throws std::invalid_argument for an unknown name.
    static Function Named(std::string_view name) {
        const std::optional<Function> found = Find(name);
        if (!found)
            throw std::invalid_argument("unknown hash function: " + std::string(name));
        return *found;
    }

    // Every function, in the library's order.
    static std::vector<Function> All() {
        std::vector<Function> all;
        for (std::size_t i = 0; i < fyrn_function_count(); ++i)
            all.push_back(Function(fyrn_function_at(i)));
        return all;
    }

    std::string_view Name() const { return fyrn_function_name(row_); }         // canonical, "SHA2-256"
    std::string_view Tag() const { return fyrn_function_tag(row_); }           // of checksum lists, "SHA256"
    std::string_view Kernel() const { return fyrn_function_kernel(row_); }     // in use here, "avx512"
    std::size_t DigestSize() const { return fyrn_function_digest_size(row_); } // bytes
    std::size_t BlockSize() const { return fyrn_function_block_size(row_); }   // bytes

    // How many messages UpdateMany should be given at once to be fastest here.
    std::size_t Lanes() const { return fyrn_function_lanes(row_); }

    // Bytes of the parts that Hasher::Part takes; 0 where the function is no tree.
    std::size_t PartSize() const { return fyrn_function_part_size(row_); }

    const fyrn_function* Row() const { return row_; }
    bool operator==(const Function&) const = default;

  private:
    explicit Function(const fyrn_function* row) : row_(row) {}

    const fyrn_function* row_;
};

// One message that is being hashed. A copy has taken in the same bytes. A hasher that was moved from may only be assigned
// to or destroyed.
class Hasher {
  public:
    // Throw std::bad_alloc, the first also std::invalid_argument for an unknown name.
    explicit Hasher(std::string_view name) : Hasher(Function::Named(name)) {}
    explicit Hasher(Function function) : hash_(Checked(fyrn_hash_new(function.Row()))) {}

    // With a digest of another length: 1 to 64 bytes for BLAKE2b, any but 0 for SHAKE. Throws std::invalid_argument when
    // the function has none of that length.
    Hasher(Function function, std::size_t digestSize)
        : hash_(CheckedSize(fyrn_hash_new_sized(function.Row(), digestSize), function, digestSize)) {}

    Hasher(const Hasher& other) : hash_(Checked(fyrn_hash_clone(other.hash_.get()))) {}
    Hasher& operator=(const Hasher& other) {
        if (this != &other)
            hash_.reset(Checked(fyrn_hash_clone(other.hash_.get())));
        return *this;
    }
    Hasher(Hasher&&) noexcept = default;
    Hasher& operator=(Hasher&&) noexcept = default;
    ~Hasher() = default;

    std::size_t DigestSize() const { return fyrn_hash_digest_size(hash_.get()); } // bytes

    // Take in bytes of the message.
    Hasher& Update(std::span<const std::byte> bytes) {
        fyrn_hash_update(hash_.get(), bytes.data(), bytes.size());
        return *this;
    }
    Hasher& Update(std::string_view text) { return Update(std::as_bytes(std::span(text))); }

    // Parts of a message may be hashed apart, in several threads for instance. Part returns the value of the part that
    // begins at number * PartSize(), and leaves the hasher as it is. AddPart takes in the next part by its value. What was
    // taken in before must be whole parts, and at least one byte must follow by Update.
    using PartValue = std::array<unsigned char, FYRN_PART_VALUE_SIZE>;
    PartValue Part(std::uint64_t number, const std::byte* data) const {
        PartValue value = {};
        fyrn_hash_part(hash_.get(), number, data, value.data());
        return value;
    }
    void AddPart(const PartValue& value) { fyrn_hash_add_part(hash_.get(), value.data()); }

    // Returns the digest and begins a new message.
    std::vector<std::byte> Finish() {
        std::vector<std::byte> digest(DigestSize());
        fyrn_hash_finish(hash_.get(), reinterpret_cast<unsigned char*>(digest.data()));
        return digest;
    }

    // Begins a new message.
    void Reset() { fyrn_hash_reset(hash_.get()); }

    // Takes in pieces[i] by hashers[i], side by side where that is faster. The spans have one length; otherwise throws
    // std::invalid_argument. No hasher may stand there twice.
    static void UpdateMany(std::span<Hasher* const> hashers,
                           std::span<const std::span<const std::byte>> pieces) {
        if (hashers.size() != pieces.size())
            throw std::invalid_argument("as many hashers as pieces are needed");
        std::vector<fyrn_hash*> hashes;
        std::vector<const void*> data;
        std::vector<std::size_t> sizes;
        for (std::size_t i = 0; i < hashers.size(); ++i) {
            hashes.push_back(hashers[i]->hash_.get());
            data.push_back(pieces[i].data());
            sizes.push_back(pieces[i].size());
        }
        fyrn_hash_update_many(hashes.size(), hashes.data(), data.data(), sizes.data());
    }

  private:
    struct Free {
        void operator()(fyrn_hash* hash) const { fyrn_hash_free(hash); }
    };

    static fyrn_hash* Checked(fyrn_hash* hash) { return hash != nullptr ? hash : throw std::bad_alloc(); }
    static fyrn_hash* CheckedSize(fyrn_hash* hash, Function function, std::size_t digestSize) {
        if (hash == nullptr)
            throw std::invalid_argument(std::string(function.Name()) + " has no digest of " +
                                        std::to_string(digestSize) + " bytes");
        return hash;
    }

    std::unique_ptr<fyrn_hash, Free> hash_;
};

// The digest of one message. Throws as Hasher does.
inline std::vector<std::byte> Digest(Function function, std::span<const std::byte> bytes) {
    return Hasher(function).Update(bytes).Finish();
}
inline std::vector<std::byte> Digest(std::string_view name, std::span<const std::byte> bytes) {
    return Digest(Function::Named(name), bytes);
}
inline std::vector<std::byte> Digest(std::string_view name, std::string_view text) {
    return Digest(Function::Named(name), std::as_bytes(std::span(text)));
}

// The digest of a file's content. Throws std::system_error when the file cannot be opened or read.
inline std::vector<std::byte> HashFile(const std::filesystem::path& path, Function function) {
    const auto fail = [&path] {
        throw std::system_error(errno != 0 ? errno : EIO, std::generic_category(), path.string());
    };
    if (std::filesystem::is_directory(path))
        throw std::system_error(EISDIR, std::generic_category(), path.string());
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    if (!file)
        fail();
    Hasher hasher(function);
    std::vector<char> buffer(std::size_t{1} << 18);
    while (file) {
        file.read(buffer.data(), static_cast<std::streamsize>(buffer.size()));
        if (file.bad())
            fail();
        hasher.Update(std::string_view(buffer.data(), static_cast<std::size_t>(file.gcount())));
    }
    return hasher.Finish();
}
inline std::vector<std::byte> HashFile(const std::filesystem::path& path, std::string_view name) {
    return HashFile(path, Function::Named(name));
}

// Lower-case hexadecimal digits, two a byte.
inline std::string ToHex(std::span<const std::byte> bytes) {
    constexpr char digits[] = "0123456789abcdef";
    std::string text;
    text.reserve(2 * bytes.size());
    for (const std::byte byte : bytes) {
        text += digits[std::to_integer<unsigned>(byte) >> 4];
        text += digits[std::to_integer<unsigned>(byte) & 15];
    }
    return text;
}

} // namespace fyrn

#endif
