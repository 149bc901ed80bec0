// SPDX-License-Identifier: MIT
// How the lines of a list are written, learned from one of them.
#pragma once

#include "sum/Functions.h"
#include "sum/ListLine.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace sum {

// A line that was understood, and what that depends on.
struct LineSample {
    std::string_view text;                        // without its end
    const ListLine& line;                         // with the digests that are checked
    const std::vector<FunctionChoice>& functions; // of the digests
    const std::vector<std::string>& columns;      // of hashdeep's table; else none
    bool percent = false;                         // names as in BagIt manifests
    bool endsInNul = false;                       // names as they are
};

class LineStyle {
  public:
    // Nothing when the line has parts besides name and digest that are not known.
    static std::optional<LineStyle> Of(const LineSample& sample);

    // "digest  name", for a list without lines; `percent` as above.
    static LineStyle Untagged(bool percent, bool endsInNul);

    // "name DIGEST"
    static LineStyle Sfv();

    // The rows of a table.
    static LineStyle Table(std::vector<std::string> columns);

    // The line of a file without its end. One digest for each function of the sample.
    std::string Line(const Name& name, std::uint64_t size,
                     std::span<const std::span<const std::byte>> digests) const;

  private:
    enum class Kind { digestFirst, nameFirst, table, decimal };
    enum class Names { plain, backslash, percent };
    enum class Digits { lower, upper, base64 };

    static LineStyle Guess(const LineSample& sample);
    std::string Written(const Name& name) const;
    std::string Text(std::span<const std::byte> digest) const;

    Kind kind_ = Kind::digestFirst;
    Names names_ = Names::backslash;
    Digits digits_ = Digits::lower;
    std::string before_;  // "SHA256 (" or nothing
    std::string between_; // "  ", or ") = "
    std::vector<std::string> columns_;
    Legacy legacy_ = Legacy::none;
};

} // namespace sum
