// SPDX-License-Identifier: MIT
// The entries of a whole checksum list, one after the other.
#pragma once

#include "sum/ListLine.h"
#include "sum/ListReader.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sum {

// What stands around signed text: the lines of its armour are no lines of the list.
class PgpArmour {
  public:
    // Whether the line belongs to the armour. Takes off what escapes a line of the text.
    bool Takes(std::string_view& line);

    bool WasMet() const { return met_; }

  private:
    enum class Place { outside, headers, text, signature };

    Place place_ = Place::outside;
    bool met_ = false;
};

// The report of the program fyrn: a line with the functions, then a block for each file, its name
// and its digests.
class FyrnReport {
  public:
    // Whether the line begins a report. All functions in it must be known.
    bool Begins(std::string_view line);

    explicit operator bool() const { return !functions_.empty(); }

    // Takes a line in. Tells of an entry when it is complete, or of the one before it when that
    // lacks digests; of nothing when more lines are needed.
    std::optional<LineKind> Take(const ListRecord& record, ListLine& line);

    // What is left when the list is at its end.
    std::optional<LineKind> Finish(ListLine& line);

  private:
    struct Function {
        std::string name;
        std::size_t digestSize;
    };

    bool TakeDigest(std::string_view digest);

    std::vector<Function> functions_;
    std::optional<ListLine> file_; // whose digests are being read
    std::size_t next_ = 0;         // function whose digest may come next
};

// Reads a list to its end. Every line is told exactly once, as an entry or as malformed, but for
// blank ones, comments, headers and armour. Lines that belong together are one entry.
class ListLines {
  public:
    ListLines(ListReader& reader, const LineRules& rules) : reader_(reader), rules_(rules) {}

    // Fills `line` unless it returns LineKind::end. A lone digest is told when it is all that the
    // list holds.
    LineKind Next(ListLine& line);

    // Takes one record in, for those who need the records themselves, instead of Next. Nothing when
    // it is no line, or not yet.
    std::optional<LineKind> Take(ListRecord& record, ListLine& line);

    // The record that Next took in last.
    const ListRecord& Record() const { return record_; }

    // What the list is, as far as it was read.
    bool IsSigned() const { return armour_.WasMet(); }
    bool IsReport() const { return static_cast<bool>(report_); }
    const std::vector<std::string>& Columns() const { return columns_; }

  private:
    std::optional<LineKind> TakeIn(ListRecord& record, ListLine& line);
    bool IsNoEntry(std::string_view& text);
    bool TakesTableHeader(std::string_view text);

    ListReader& reader_; // not owned
    LineRules rules_;
    ListRecord record_;
    std::optional<LineParser> parser_; // once it is known how records end
    PgpArmour armour_;
    FyrnReport report_;
    std::vector<std::string> columns_; // of hashdeep's table

    bool any_ = false;              // a line was told, or held back
    std::optional<ListLine> lone_;  // a digest without a name, as long as it is all there is
    std::optional<ListLine> after_; // the line that follows it
    LineKind afterKind_ = LineKind::malformed;
};

} // namespace sum
