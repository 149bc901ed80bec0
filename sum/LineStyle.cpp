// SPDX-License-Identifier: MIT
#include "sum/LineStyle.h"

#include "sum/Escape.h"
#include "sum/Line.h"

#include <algorithm>

namespace sum {

namespace {

std::string Upper(std::string text) {
    for (char& c : text)
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    return text;
}

bool HasAny(std::string_view text, std::string_view characters) {
    return text.find_first_of(characters) != std::string_view::npos;
}

} // namespace

LineStyle LineStyle::Untagged(bool percent, bool endsInNul) {
    LineStyle style;
    style.names_ = percent ? Names::percent : endsInNul ? Names::plain : Names::backslash;
    style.between_ = "  ";
    return style;
}

LineStyle LineStyle::Sfv() {
    LineStyle style;
    style.kind_ = Kind::nameFirst;
    style.names_ = Names::plain;
    style.digits_ = Digits::upper;
    style.between_ = " ";
    return style;
}

LineStyle LineStyle::Table(std::vector<std::string> columns) {
    LineStyle style;
    style.kind_ = Kind::table;
    style.names_ = Names::plain;
    style.columns_ = std::move(columns);
    return style;
}

std::string LineStyle::Written(const Name& name) const {
    if (names_ == Names::percent)
        return PercentEscaped(name);
    return names_ == Names::backslash ? Escaped(name) : name;
}

std::string LineStyle::Text(std::span<const std::byte> digest) const {
    if (digits_ == Digits::base64)
        return ToBase64(digest);
    return digits_ == Digits::upper ? Upper(fyrn::ToHex(digest)) : fyrn::ToHex(digest);
}

std::string LineStyle::Line(const Name& name, std::uint64_t size,
                            std::span<const std::span<const std::byte>> digests) const {
    const std::string written = Written(name);
    if (kind_ == Kind::decimal)
        return LegacyText(legacy_, digests[0], size) + ' ' + written;
    if (kind_ == Kind::table) {
        std::string row;
        std::size_t next = 0;
        for (std::size_t i = 0; i + 1 < columns_.size(); ++i)
            row += (columns_[i] == "size" ? std::to_string(size) : Text(digests[next++])) + ',';
        return row + written;
    }
    const std::string start = (names_ == Names::backslash && NeedsEscape(name) ? "\\" : "") + before_;
    if (kind_ == Kind::nameFirst)
        return start + written + between_ + Text(digests[0]);
    return start + Text(digests[0]) + between_ + written;
}

// What the line looks like; whether that is so, a comparison tells.
LineStyle LineStyle::Guess(const LineSample& sample) {
    const ListDigest& digest = sample.line.digests[0];
    LineStyle style = Untagged(sample.percent, sample.endsInNul);
    std::string_view text = sample.text;
    if (style.names_ == Names::backslash && text.starts_with('\\'))
        text.remove_prefix(1);
    const bool isHex = HexBytes(digest.text) == sample.functions[0].digestSize;
    const bool isUpper = HasAny(digest.text, "ABCDEF");
    style.digits_ = !isHex ? Digits::base64 : isUpper ? Digits::upper : Digits::lower;

    const bool endsInDigest = text.ends_with(digest.text);
    const std::string_view front = text.substr(0, endsInDigest ? text.size() - digest.text.size() : 0);
    const std::size_t open = front.find('(');
    const std::size_t close = front.rfind(')');
    if (endsInDigest && !digest.tag.empty() && open < close && close != std::string_view::npos) {
        style.kind_ = Kind::nameFirst;
        style.before_ = front.substr(0, open + 1);
        style.between_ = front.substr(close);
    } else if (endsInDigest && front.starts_with(sample.line.name)) {
        style.kind_ = Kind::nameFirst;
        style.names_ = sample.percent ? Names::percent : Names::plain;
        style.between_ = front.substr(sample.line.name.size());
        style.digits_ = isUpper || !HasAny(digest.text, "abcdef") ? Digits::upper : Digits::lower;
    } else if (const std::size_t place = text.find(digest.text); place != std::string_view::npos) {
        const std::string_view after = text.substr(place + digest.text.size());
        const std::string written = style.Written(sample.line.name);
        style.before_ = text.substr(0, place);
        style.between_ = after.substr(0, after.size() - std::min(after.size(), written.size()));
    }
    return style;
}

std::optional<LineStyle> LineStyle::Of(const LineSample& sample) {
    const std::vector<ListDigest>& digests = sample.line.digests;
    if (digests.empty())
        return std::nullopt;
    LineStyle style;
    if (!sample.columns.empty()) {
        style = Table(sample.columns);
        if (digests.size() + 1 != sample.columns.size() - (sample.line.size ? 1 : 0))
            return std::nullopt;
        style.digits_ = HasAny(digests[0].text, "ABCDEF") ? Digits::upper : Digits::lower;
    } else if (digests[0].decimal) {
        style = Table({});
        style.kind_ = Kind::decimal;
        style.legacy_ = sample.functions[0].legacy;
    } else {
        style = Guess(sample);
    }
    std::vector<std::vector<std::byte>> bytes;
    for (std::size_t i = 0; i < digests.size(); ++i)
        bytes.push_back(DigestBytes(digests[i].text, digests[i].decimal, sample.functions[i].digestSize));
    const std::vector<std::span<const std::byte>> spans(bytes.begin(), bytes.end());
    const std::uint64_t size = sample.line.size.value_or(0) * sample.line.sizeUnit;
    const bool isSo = style.Line(sample.line.name, size, spans) == sample.text;
    return isSo ? std::optional(style) : std::nullopt;
}

} // namespace sum
