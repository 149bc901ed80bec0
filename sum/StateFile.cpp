// SPDX-License-Identifier: MIT
#include "sum/StateFile.h"

#include "sum/DigestText.h"
#include "sum/Escape.h"

#include <charconv>

namespace sum {

namespace {

// Takes a flat JSON object apart.
class FlatObject {
  public:
    explicit FlatObject(std::string_view text) : rest_(text) {}

    struct Member {
        std::string key;
        std::string value; // of a string; else the token as it is
        bool isString = false;
    };

    // Whether another member follows.
    bool Next(Member& member);

    // Whether the text is at its end, as it should be after the last member.
    bool IsComplete() const { return complete_; }

  private:
    bool Take(char c);
    bool TakeString(std::string& value);
    bool TakeEscape(std::string& value);
    bool TakeUnit(std::uint32_t& unit);
    bool TakeToken(std::string& value);

    std::string_view rest_;
    bool begun_ = false;
    bool complete_ = false;
};

bool FlatObject::Take(char c) {
    if (!rest_.starts_with(c))
        return false;
    rest_.remove_prefix(1);
    return true;
}

void AppendUtf8(std::string& text, std::uint32_t code) {
    const auto append = [&text](std::uint32_t byte) { text += static_cast<char>(byte); };
    if (code < 0x80)
        return append(code);
    if (code < 0x800) {
        append(0xc0 | code >> 6);
    } else {
        if (code < 0x10000) {
            append(0xe0 | code >> 12);
        } else {
            append(0xf0 | code >> 18);
            append(0x80 | (code >> 12 & 0x3f));
        }
        append(0x80 | (code >> 6 & 0x3f));
    }
    append(0x80 | (code & 0x3f));
}

bool FlatObject::TakeUnit(std::uint32_t& unit) {
    const char* const end = rest_.data() + (rest_.size() < 4 ? 0 : 4);
    const auto [stop, error] = std::from_chars(rest_.data(), end, unit, 16);
    if (error != std::errc() || stop != end)
        return false;
    rest_.remove_prefix(4);
    return true;
}

// What follows a backslash.
bool FlatObject::TakeEscape(std::string& value) {
    constexpr std::string_view letters = "\"\\/bfnrt", codes = "\"\\/\b\f\n\r\t";
    if (Take('u')) {
        std::uint32_t code = 0;
        std::uint32_t low = 0;
        if (!TakeUnit(code))
            return false;
        if (code >= 0xd800 && code < 0xdc00) {
            if (!Take('\\') || !Take('u') || !TakeUnit(low) || low < 0xdc00 || low >= 0xe000)
                return false;
            code = 0x10000 + ((code - 0xd800) << 10) + (low - 0xdc00);
        }
        AppendUtf8(value, code);
        return true;
    }
    const std::size_t place = rest_.empty() ? std::string_view::npos : letters.find(rest_[0]);
    if (place == std::string_view::npos)
        return false;
    value += codes[place];
    rest_.remove_prefix(1);
    return true;
}

bool FlatObject::TakeString(std::string& value) {
    value.clear();
    if (!Take('"'))
        return false;
    for (;;) {
        std::size_t plain = 0; // find_first_of would search the two for each character
        while (plain < rest_.size() && rest_[plain] != '"' && rest_[plain] != '\\')
            ++plain;
        if (plain == rest_.size())
            return false;
        value.append(rest_.substr(0, plain));
        rest_.remove_prefix(plain);
        if (Take('"'))
            return true;
        rest_.remove_prefix(1);
        if (!TakeEscape(value))
            return false;
    }
}

bool FlatObject::TakeToken(std::string& value) {
    std::size_t length = 0;
    while (length < rest_.size() && rest_[length] != ',' && rest_[length] != '}')
        ++length;
    value = rest_.substr(0, length);
    rest_.remove_prefix(value.size());
    return !value.empty();
}

bool FlatObject::Next(Member& member) {
    if (!Take(begun_ ? ',' : '{')) {
        complete_ = begun_ && rest_ == "}";
        return false;
    }
    begun_ = true;
    if (!TakeString(member.key) || !Take(':'))
        return false;
    member.isString = rest_.starts_with('"');
    return member.isString ? TakeString(member.value) : TakeToken(member.value);
}

template <class Number>
bool ReadNumber(const std::string& text, Number& number) {
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end;
}

bool TakeMember(const FlatObject::Member& member, StateRecord& record) {
    if (member.key == "path") {
        record.path = member.value;
    } else if (member.key == "path_base64") {
        const std::vector<std::byte> bytes = BytesOfBase64(member.value);
        record.path.assign(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    } else if (member.key == "size") {
        return ReadNumber(member.value, record.size);
    } else if (member.key == "mtime") {
        return ReadNumber(member.value, record.modified.emplace());
    } else if (member.key == "stale") {
        record.stale = member.value == "true";
    } else if (member.isString) {
        record.digests.emplace_back(member.key, member.value);
    }
    return true;
}

} // namespace

std::string StateRecord::Line() const {
    std::string line = '{' + JsonPath(path) + ",\"size\":" + std::to_string(size);
    if (modified)
        line += ",\"mtime\":" + std::to_string(*modified);
    if (stale)
        line += ",\"stale\":true";
    for (const auto& [function, digest] : digests)
        line.append(",\"").append(function).append("\":\"").append(digest).append("\"");
    return line + "}\n";
}

bool ReadStateRecord(std::string_view line, StateRecord& record) {
    record = {};
    FlatObject object(line);
    FlatObject::Member member;
    while (object.Next(member))
        if (!TakeMember(member, record))
            return false;
    return object.IsComplete() && !record.path.empty();
}

bool StateFile::Next(StateRecord& record) {
    while (const auto line = lines_.Next())
        if (ReadStateRecord(*line, record))
            return true;
    return false;
}

} // namespace sum
