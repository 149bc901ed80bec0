// SPDX-License-Identifier: MIT
// A list and a tree in memory, to be compared: small, since there may be millions of files.
#pragma once

#include "sum/Arena.h"
#include "sum/Functions.h"
#include "sum/Name.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace sum {

// One digest of a file; its bytes follow it in memory.
struct KeptDigest {
    const KeptDigest* next; // of another function
    std::uint32_t function; // its number in FunctionNumbers
    std::uint32_t size;     // bytes

    std::span<const std::byte> Bytes() const { return {reinterpret_cast<const std::byte*>(this + 1), size}; }
};

// What a file held when it was read.
struct Content {
    const KeptDigest* digests = nullptr;
    std::uint64_t size = 0;    // bytes
    std::int64_t modified = 0; // ns since 1970
    bool hasTime = false;      // a file with this size and time has this content
};

struct FoundFile;

// What the list tells of one file, and what became of that.
struct Entry {
    enum class Found : std::uint8_t {
        unmet,   // no such file was met yet
        same,    // it is as listed
        changed, // it has another content
        unread,  // it could not be read
        missing, // there is no such file
        leftOut  // it is no part of the tree that is compared
    };

    std::string_view name;           // as the list spells it
    std::string_view key;            // as paths are compared
    Content listed;                  // digests of the list; size and time are those of the list's state
    const Content* found = nullptr;  // what changed
    const FoundFile* file = nullptr; // what it is called now, when it was renamed
    std::uint64_t listedSize = 0;    // in units
    std::uint32_t reason = 0;        // why it is unread: its number in Reasons
    std::uint16_t sizeUnit = 0;      // bytes; 0: the list tells no size
    Found state = Found::unmet;
    bool isMet = false;   // by the walk
    bool isKnown = false; // `listed` was found to be true already
    bool isStale = false; // what has this size and time has another content nevertheless

    bool HasListedSize(std::uint64_t size) const {
        return sizeUnit == 0 || size / sizeUnit + (size % sizeUnit != 0 ? 1 : 0) == listedSize;
    }
};

// A file that the list does not tell of.
struct FoundFile {
    enum class Kind : std::uint8_t { isNew, renamed, copy, unread, ignored };

    std::string_view key;
    Content content;
    const Entry* origin = nullptr; // what it was called before, or what it is a copy of
    std::uint32_t reason = 0;      // why it is unread
    Kind kind = Kind::ignored;     // until it is read
};

// The functions of a list by small numbers.
class FunctionNumbers {
  public:
    // `guessed` keeps apart what Decide may change.
    std::uint32_t Of(const FunctionChoice& choice, bool guessed);
    const FunctionChoice& operator[](std::uint32_t number) const { return rows_[number].choice; }
    std::size_t Count() const { return rows_.size(); }

    // All guessed functions with a digest of this length are this one.
    void Decide(const FunctionChoice& choice);

    // The smallest number of the same function.
    std::uint32_t Smallest(std::uint32_t number) const;

    // The digest of an empty file.
    std::span<const std::byte> Empty(std::uint32_t number);

  private:
    struct Row {
        FunctionChoice choice;
        bool guessed;
        std::vector<std::byte> empty = {}; // computed when it is asked for
    };

    std::vector<Row> rows_;
};

// Why files could not be read, each text once.
class Reasons {
  public:
    std::uint32_t Of(std::string_view text);
    const std::string& operator[](std::uint32_t number) const { return texts_[number]; }

  private:
    std::vector<std::string> texts_;
};

// All entries in the order of the list, each path once.
class Entries {
  public:
    // The entry of this path, a new one at the end if there is none.
    Entry& At(std::string_view name);

    // Nothing when there is none. The key is that of KeyOf.
    Entry* Find(std::string_view key);

    std::deque<Entry>& All() { return entries_; }
    const std::deque<Entry>& All() const { return entries_; }

    // A digest in front of others.
    const KeptDigest* Keep(std::uint32_t function, std::span<const std::byte> digest, const KeptDigest* next);
    const Content* Keep(const Content& content);
    std::string_view Keep(std::string_view text) { return arena_.Keep(text); }

    FunctionNumbers& Functions() { return functions_; }
    const FunctionNumbers& Functions() const { return functions_; }

  private:
    struct Slot {
        std::uint32_t entry = none;
        std::uint32_t hash = 0;
    };

    static constexpr std::uint32_t none = 0xffffffff;

    Slot& SlotOf(std::string_view key, std::uint32_t hash);
    void Grow();

    Arena arena_;
    std::deque<Entry> entries_;
    std::vector<Slot> slots_; // a power of two of them
    FunctionNumbers functions_;
};

// The digest of this function among a file's, or nullptr.
const KeptDigest* DigestOf(const KeptDigest* digests, std::uint32_t function);

// Whether all digests that are listed are among those that were found.
bool HoldsAll(const KeptDigest* listed, const KeptDigest* found);

} // namespace sum
