// SPDX-License-Identifier: MIT
#include "sum/ListLine.h"

#include <algorithm>
#include <charconv>

namespace sum {

namespace {

constexpr std::string_view blanks = " \t";

// Of what table a list without tags may be: a shorter word is more often a word than a digest.
constexpr std::size_t shortestColumnDigest = 32;

bool IsDecimal(std::string_view text) {
    return !text.empty() && text.size() <= 20 &&
           std::ranges::all_of(text, [](char digit) { return digit >= '0' && digit <= '9'; });
}

std::optional<std::uint64_t> Number(std::string_view text) {
    std::uint64_t number = 0;
    if (!IsDecimal(text) || std::from_chars(text.data(), text.data() + text.size(), number).ec != std::errc{})
        return std::nullopt;
    return number;
}

bool IsTagCharacter(char character) {
    const char lower = static_cast<char>(character | 0x20);
    return (lower >= 'a' && lower <= 'z') || (character >= '0' && character <= '9') || character == '-' ||
           character == '_' || character == '/';
}

bool IsTag(std::string_view text) {
    return !text.empty() && text.size() <= 32 && std::ranges::all_of(text, IsTagCharacter);
}

// What stands before the first blank. A tenth of a check's time went into find_first_of, which
// searches the blanks for each character.
std::string_view FirstWord(std::string_view text) {
    const auto isBlank = [](char character) { return character == ' ' || character == '\t'; };
    return {text.begin(), std::ranges::find_if(text, isBlank)};
}

// Takes the text before the first blank off the front.
std::string_view TakeWord(std::string_view& text) {
    const std::string_view word = FirstWord(text);
    text.remove_prefix(word.size());
    return word;
}

void SetDigest(std::string_view tag, std::string_view text, ListLine& line) {
    line.digests.resize(1);
    line.digests[0].tag = tag;
    line.digests[0].text = text;
    line.digests[0].decimal = false;
}

// "6" or NetBSD's "6 bytes".
bool SetSize(std::string_view text, ListLine& line) {
    if (text.ends_with(" bytes"))
        text.remove_suffix(6);
    line.digests.clear();
    line.size = Number(text);
    return line.size.has_value();
}

bool IsSizeTag(std::string_view tag) {
    return tag == "SIZE" || tag == "Size";
}

} // namespace

bool IsBlank(char character) {
    return character == ' ' || character == '\t';
}

std::string_view WithoutLeadingBlanks(std::string_view text) {
    return text.substr(std::min(text.find_first_not_of(blanks), text.size()));
}

std::string_view WithoutTrailingBlanks(std::string_view text) {
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

bool Unescape(std::string_view text, Name& name) {
    name.clear();
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            name += text[i];
            continue;
        }
        if (++i == text.size())
            return false;
        switch (text[i]) {
        case 'n':
            name += '\n';
            break;
        case 'r':
            name += '\r';
            break;
        case '\\':
            name += '\\';
            break;
        default:
            return false;
        }
    }
    return true;
}

Name PercentDecoded(std::string_view text) {
    Name name;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::string_view code = text.substr(i, 3);
        const bool isEscape =
            code == "%0A" || code == "%0a" || code == "%0D" || code == "%0d" || code == "%25";
        if (isEscape)
            i += 2;
        name += !isEscape ? text[i] : code[1] == '2' ? '%' : (code[2] | 0x20) == 'a' ? '\n' : '\r';
    }
    return name;
}

LineKind LineParser::Parse(std::string_view text, ListLine& line) {
    line.size.reset();
    line.sizeUnit = 1;
    std::string_view body = WithoutLeadingBlanks(text);
    const std::size_t indent = text.size() - body.size();
    const bool escaped = !rules_.endsInNul && body.starts_with('\\');
    if (escaped)
        body.remove_prefix(1);

    if (ParseTagged(body, escaped, line))
        return LineKind::entry;
    if (!rules_.untagged)
        return LineKind::malformed;
    if (rules_.gnuOnly)
        return ParseDigestFirst(body, escaped, line) ? LineKind::entry : LineKind::malformed;
    if (!escaped && (ParseSizeColumn(body, indent, line) || ParseDecimal(body, line)))
        return LineKind::entry;
    if (ParseDigestFirst(body, escaped, line))
        return LineKind::entry;
    if (!escaped && ParseLone(body, line))
        return LineKind::lone;
    return !escaped && ParseNameFirst(text, line) ? LineKind::entry : LineKind::malformed;
}

// TAG (name) = digest. A name may hold ") =", a digest may not.
bool LineParser::ParseTagged(std::string_view text, bool escaped, ListLine& line) const {
    const std::size_t open = text.find('(');
    const std::size_t close = text.rfind(')');
    if (open == std::string_view::npos || close == std::string_view::npos || close < open)
        return false;
    const std::string_view tag = WithoutTrailingBlanks(text.substr(0, open));
    if (!IsTag(tag) || (rules_.gnuOnly && open > tag.size() + 1) || LooksLikeDigest(tag))
        return false;
    std::string_view rest = WithoutLeadingBlanks(text.substr(close + 1));
    if (!rest.starts_with('='))
        return false;
    rest = WithoutLeadingBlanks(rest.substr(1));
    if (!rules_.gnuOnly && IsSizeTag(tag)) {
        if (!SetSize(rest, line))
            return false;
    } else if (HexBytes(rest) || Base64Bytes(rest)) {
        SetDigest(tag, rest, line);
    } else {
        return false;
    }
    return SetName(text.substr(open + 1, close - open - 1), escaped, line);
}

// "        6  digest  name", the size in ten columns. Eight or sixteen digits at the margin may be
// a digest themselves.
bool LineParser::ParseSizeColumn(std::string_view text, std::size_t indent, ListLine& line) {
    std::string_view rest = text;
    const std::string_view size = TakeWord(rest);
    if (!IsDecimal(size) || !rest.starts_with("  ") || (indent == 0 && LooksLikeDigest(size)))
        return false;
    rest.remove_prefix(2);
    const std::string_view digest = FirstWord(rest);
    if (digest.size() < shortestColumnDigest || !ParseDigestFirst(rest, false, line))
        return false;
    line.size = Number(size);
    return line.size.has_value();
}

bool LineParser::ParseDecimal(std::string_view text, ListLine& line) const {
    if (rules_.decimals == DecimalLines::none)
        return false;
    std::string_view rest = text;
    const std::string_view checksum = TakeWord(rest);
    if (!IsDecimal(checksum) || checksum.size() > 10 || rest.empty())
        return false;
    if (rules_.decimals == DecimalLines::bsd) // which aligns the number of blocks
        rest = rest.substr(std::min(rest.find_first_not_of(' '), rest.size()) - 1);
    rest.remove_prefix(1);
    const std::string_view size = TakeWord(rest);
    line.size = Number(size);
    if (!line.size || rest.size() < 2 || rest[0] != ' ' || (size.size() > 1 && size[0] == '0'))
        return false;
    line.sizeUnit = rules_.decimals == DecimalLines::bsd    ? 1024
                    : rules_.decimals == DecimalLines::sysv ? 512
                                                            : 1;
    SetDigest("", checksum, line);
    line.digests[0].decimal = true;
    return SetName(rest.substr(1), false, line);
}

// "digest  name", "sha256:digest  name", "XXH3_digest  name".
bool LineParser::ParseDigestFirst(std::string_view text, bool escaped, ListLine& line) {
    std::string_view rest = text;
    std::string_view digest = TakeWord(rest);
    std::string_view tag;
    if (!rules_.gnuOnly) {
        const std::size_t colon = digest.rfind(':');
        if (digest.starts_with("XXH3_")) {
            tag = "XXH3";
            digest.remove_prefix(5);
        } else if (colon != std::string_view::npos && IsTag(digest.substr(0, colon))) {
            tag = digest.substr(0, colon);
            digest.remove_prefix(colon + 1);
        }
    }
    const bool understood = tag.empty() ? LooksLikeDigest(digest) : HexBytes(digest) || Base64Bytes(digest);
    // Whole base64 without padding is also what a name looks like.
    const bool mayBeName = tag.empty() && !HexBytes(digest) && !digest.ends_with('=');
    if (!understood || (!rules_.gnuOnly && mayBeName && ParseNameFirst(text, line)))
        return false;
    const bool isLone = !rules_.gnuOnly && WithoutLeadingBlanks(rest).empty();
    if (isLone || !TakeSeparator(rest))
        return false;
    SetDigest(tag, digest, line);
    return SetName(rest, escaped, line);
}

// By the rule of GNU's tools, a list has either one blank between digest and name, or a blank and
// one character more, which is a blank or '*'; its first line decides.
bool LineParser::TakeSeparator(std::string_view& rest) {
    if (rest.size() < 2 || !IsBlank(rest[0]))
        return false;
    rest.remove_prefix(1);
    if (rest.size() == 1 || (rest[0] != ' ' && rest[0] != '*')) {
        if (separator_ == Separator::twoCharacters)
            return false;
        separator_ = Separator::oneBlank;
    } else if (separator_ != Separator::oneBlank) {
        separator_ = Separator::twoCharacters;
        rest.remove_prefix(1);
    }
    return true;
}

// "name 8DIGITS", "name  digest".
bool LineParser::ParseNameFirst(std::string_view text, ListLine& line) const {
    const std::size_t blank = text.find_last_of(blanks);
    if (blank == std::string_view::npos)
        return false;
    const std::string_view digest = text.substr(blank + 1);
    const std::string_view name = WithoutTrailingBlanks(text.substr(0, blank));
    const bool isApart = digest.size() == 8 || blank > name.size();
    if (!isApart || name.empty() || !HexBytes(digest) || !LooksLikeDigest(digest) || name.ends_with(" ="))
        return false;
    const std::size_t before = name.find_last_of(blanks);
    const bool isSecondDigest = before != std::string_view::npos && before > 0 && IsBlank(name[before - 1]) &&
                                LooksLikeDigest(name.substr(before + 1));
    if (isSecondDigest)
        return false;
    SetDigest("", digest, line);
    return SetName(name, false, line);
}

bool LineParser::ParseLone(std::string_view text, ListLine& line) const {
    text = WithoutTrailingBlanks(text);
    if (!LooksLikeDigest(text))
        return false;
    SetDigest("", text, line);
    return true;
}

bool LineParser::LooksLikeDigest(std::string_view text) const {
    if (const std::optional<std::size_t> bytes = HexBytes(text); bytes && rules_.sizes.Has(*bytes))
        return true;
    const std::optional<std::size_t> bytes = Base64Bytes(text);
    return bytes && rules_.sizes.Has(*bytes);
}

bool LineParser::SetName(std::string_view text, bool escaped, ListLine& line) const {
    if (escaped)
        return Unescape(text, line.name);
    if (rules_.percent)
        line.name = PercentDecoded(text);
    else
        line.name = text;
    return line.name.find('\0') == Name::npos;
}

bool ParseTableRow(std::string_view text, const std::vector<std::string>& columns, ListLine& line) {
    line.size.reset();
    line.sizeUnit = 1;
    std::size_t digests = 0;
    for (const std::string& column : columns) {
        if (&column == &columns.back()) {
            line.name = text;
            break;
        }
        const std::size_t comma = text.find(',');
        if (comma == std::string_view::npos)
            return false;
        const std::string_view value = text.substr(0, comma);
        text.remove_prefix(comma + 1);
        if (column == "size") {
            line.size = Number(value);
            if (!line.size)
                return false;
            continue;
        }
        if (!HexBytes(value))
            return false;
        line.digests.resize(std::max(line.digests.size(), digests + 1));
        line.digests[digests].tag = column;
        line.digests[digests].text = value;
        line.digests[digests].decimal = false;
        ++digests;
    }
    line.digests.resize(digests);
    return !line.name.empty() && line.name.find('\0') == Name::npos;
}

} // namespace sum
