// SPDX-License-Identifier: MIT
// One line of a checksum list, taken apart by what it looks like. What its functions are is decided
// elsewhere.
#pragma once

#include "sum/DigestText.h"
#include "sum/Name.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sum {

struct ListDigest {
    std::string tag;      // as the list has it, "SHA2-256"; empty when nothing tells the function
    std::string text;     // the digest as the list has it
    bool decimal = false; // a number instead of hexadecimal digits or base64
};

struct ListLine {
    std::uint64_t number = 0; // in the list, from 1
    Name name;
    std::vector<ListDigest>
        digests; // more than one where a line or block has several; none when only the size is told
    std::optional<std::uint64_t> size; // that the file must have, in units
    std::uint64_t sizeUnit = 1;        // bytes; a file's last unit may be incomplete
};

enum class LineKind {
    entry,     // a file and what it must be
    malformed, // not understood
    lone,      // a digest and no name
    end,       // of the list
};

// The lines with a CRC in decimal digits.
enum class DecimalLines {
    none,
    crc,  // POSIX cksum's "crc size name"
    bsd,  // "crc blocks name", blocks of 1,024 bytes
    sysv, // the same with blocks of 512
};

// What a list may hold.
struct LineRules {
    DigestSizes sizes; // of digests that have no tag
    DecimalLines decimals = DecimalLines::crc;
    bool untagged = true;   // lines without a tag are understood
    bool gnuOnly = false;   // only what GNU's tools read
    bool percent = false;   // %0A, %0D and %25 in names, as in BagIt manifests
    bool endsInNul = false; // no escapes in names
};

// Takes lines apart. Remembers of a list whether one blank or two characters stand between digest
// and name.
class LineParser {
  public:
    explicit LineParser(const LineRules& rules) : rules_(rules) {}

    // Fills `line`, its number excepted, and says what it is. What it holds is of no use when it is
    // malformed.
    LineKind Parse(std::string_view text, ListLine& line);

  private:
    enum class Separator { unknown, oneBlank, twoCharacters };

    bool ParseTagged(std::string_view text, bool escaped, ListLine& line) const;
    bool ParseSizeColumn(std::string_view text, std::size_t indent, ListLine& line);
    bool ParseDecimal(std::string_view text, ListLine& line) const;
    bool ParseDigestFirst(std::string_view text, bool escaped, ListLine& line);
    bool ParseNameFirst(std::string_view text, ListLine& line) const;
    bool ParseLone(std::string_view text, ListLine& line) const;

    bool LooksLikeDigest(std::string_view text) const;
    bool TakeSeparator(std::string_view& rest);
    bool SetName(std::string_view text, bool escaped, ListLine& line) const;

    LineRules rules_;
    Separator separator_ = Separator::unknown;
};

// A row of hashdeep's table: the columns are those of its header ("size", "md5", "sha256",
// "filename").
bool ParseTableRow(std::string_view text, const std::vector<std::string>& columns, ListLine& line);

// "\\", "\n" and "\r" as GNU's tools write them. False when anything else follows a backslash.
bool Unescape(std::string_view text, Name& name);

// %0A, %0D and %25; any other percent sign stands for itself.
Name PercentDecoded(std::string_view text);

bool IsBlank(char character); // or a tab

std::string_view WithoutLeadingBlanks(std::string_view text);
std::string_view WithoutTrailingBlanks(std::string_view text);

} // namespace sum
