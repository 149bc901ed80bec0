// SPDX-License-Identifier: MIT
#include "sum/ListLines.h"

#include "fyrn/fyrn.hpp"

#include <algorithm>
#include <utility>

namespace sum {

namespace {

constexpr std::string_view tableMark = "%%%% ";
constexpr std::string_view reportMark = "Hashes: ";
constexpr std::string_view digestIndent = "  ";

// "Version: 2", "Hash: SHA256"
bool IsArmourHeader(std::string_view line) {
    const std::size_t colon = line.find(": ");
    return colon != std::string_view::npos && colon > 0 &&
           line.substr(0, colon).find_first_of(" \t()") == std::string_view::npos;
}

// Of fyrn's report. At its lowest verbosity there are no names, and nothing but these.
bool IsDigestLine(std::string_view line) {
    return line.starts_with(digestIndent) &&
           line.find_first_not_of("0123456789abcdef", digestIndent.size()) == std::string_view::npos;
}

bool IsArmourData(std::string_view line) {
    if (line.starts_with('='))
        line.remove_prefix(1);
    const std::size_t digits = std::min(line.find_last_not_of('=') + 1, line.size());
    return line.size() <= 76 && std::ranges::all_of(line.substr(0, digits), [](char character) {
               const char lower = static_cast<char>(character | 0x20);
               return (lower >= 'a' && lower <= 'z') || (character >= '0' && character <= '9') ||
                      character == '+' || character == '/';
           });
}

} // namespace

bool PgpArmour::Takes(std::string_view& line) {
    if (line.starts_with("-----BEGIN PGP ") && line.ends_with("-----")) {
        met_ = true;
        place_ = line == "-----BEGIN PGP SIGNED MESSAGE-----" ? Place::headers : Place::signature;
        return true;
    }
    if (line.starts_with("-----END PGP ") && line.ends_with("-----")) {
        place_ = Place::outside;
        return true;
    }
    switch (place_) {
    case Place::outside:
        break;
    case Place::headers:
        if (IsArmourHeader(line))
            return true;
        place_ = Place::text;
        break;
    case Place::text:
        if (line.starts_with("- "))
            line.remove_prefix(2);
        break;
    case Place::signature:
        if (IsArmourHeader(line) || IsArmourData(line))
            return true;
        place_ = Place::outside;
        break;
    }
    return false;
}

bool FyrnReport::Begins(std::string_view line) {
    if (!line.starts_with(reportMark))
        return false;
    std::string_view rest = line.substr(reportMark.size());
    std::vector<Function> functions;
    while (!(rest = WithoutLeadingBlanks(rest)).empty()) {
        const std::string_view name = rest.substr(0, rest.find(' '));
        rest.remove_prefix(name.size());
        const std::optional<fyrn::Function> found = fyrn::Function::Find(name);
        if (!found)
            return false;
        functions.push_back({std::string(name), found->DigestSize()});
    }
    if (functions.empty())
        return false;
    functions_ = std::move(functions);
    return true;
}

std::optional<LineKind> FyrnReport::Take(const ListRecord& record, ListLine& line) {
    if (IsDigestLine(record.text)) {
        if (!file_ || !TakeDigest(record.text.substr(digestIndent.size())))
            return LineKind::malformed;
        if (file_->digests.size() < functions_.size())
            return std::nullopt;
        line = std::move(*file_);
        file_.reset();
        return LineKind::entry;
    }
    const std::optional<LineKind> before = Finish(line);
    file_.emplace();
    file_->number = record.number;
    file_->name = record.text;
    next_ = 0;
    return before;
}

// A function may be left out, where a file could not be read.
bool FyrnReport::TakeDigest(std::string_view digest) {
    const std::optional<std::size_t> bytes = HexBytes(digest);
    for (std::size_t i = next_; i < functions_.size(); ++i) {
        if (functions_[i].digestSize != bytes)
            continue;
        file_->digests.push_back({functions_[i].name, std::string(digest)});
        next_ = i + 1;
        return true;
    }
    return false;
}

std::optional<LineKind> FyrnReport::Finish(ListLine& line) {
    if (!file_)
        return std::nullopt;
    line = std::move(*file_);
    file_.reset();
    return line.digests.empty() ? LineKind::malformed : LineKind::entry;
}

LineKind ListLines::Next(ListLine& line) {
    if (after_) {
        line = std::move(*after_);
        after_.reset();
        return afterKind_;
    }
    while (reader_.Next(record_)) {
        const std::optional<LineKind> kind = TakeIn(record_, line);
        if (!kind)
            continue;
        if (*kind == LineKind::lone && !any_) {
            any_ = true;
            lone_ = line;
            continue;
        }
        any_ = true;
        const LineKind told = *kind == LineKind::lone ? LineKind::malformed : *kind;
        if (!lone_)
            return told;
        after_ = std::exchange(line, std::move(*lone_));
        afterKind_ = told;
        lone_.reset();
        return LineKind::malformed;
    }
    if (lone_) {
        line = std::move(*lone_);
        lone_.reset();
        return LineKind::lone;
    }
    return report_.Finish(line).value_or(LineKind::end);
}

std::optional<LineKind> ListLines::Take(ListRecord& record, ListLine& line) {
    const std::optional<LineKind> kind = TakeIn(record, line);
    any_ = any_ || kind;
    return kind;
}

std::optional<LineKind> ListLines::TakeIn(ListRecord& record, ListLine& line) {
    line.number = record.number;
    if (record.broken)
        return LineKind::malformed;
    if (!parser_) {
        rules_.endsInNul = reader_.EndsInNul();
        parser_.emplace(rules_);
    }
    const std::string_view visible = rules_.gnuOnly ? record.text : WithoutLeadingBlanks(record.text);
    if (visible.empty())
        return std::nullopt;
    if (report_)
        return report_.Take(record, line);
    if (record.text.starts_with('#'))
        return std::nullopt;
    if (!rules_.gnuOnly && IsNoEntry(record.text))
        return std::nullopt;
    if (columns_.empty())
        return parser_->Parse(record.text, line);
    return ParseTableRow(record.text, columns_, line) ? LineKind::entry : LineKind::malformed;
}

// What stands in lists besides entries. Armour takes off what escapes a line.
bool ListLines::IsNoEntry(std::string_view& text) {
    return text.starts_with(';') || armour_.Takes(text) || TakesTableHeader(text) ||
           (!any_ && report_.Begins(text));
}

// "%%%% HASHDEEP-1.0" and "%%%% size,md5,sha256,filename"
bool ListLines::TakesTableHeader(std::string_view text) {
    if (!text.starts_with(tableMark))
        return false;
    text.remove_prefix(tableMark.size());
    if (!text.ends_with(",filename"))
        return text.starts_with("HASHDEEP-");
    columns_.clear();
    while (!text.empty()) {
        const std::string_view column = text.substr(0, text.find(','));
        columns_.emplace_back(column);
        text.remove_prefix(std::min(column.size() + 1, text.size()));
    }
    return true;
}

} // namespace sum
