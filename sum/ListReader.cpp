// SPDX-License-Identifier: MIT
#include "sum/ListReader.h"

#include <cstring>
#include <utility>

namespace sum {

namespace {

constexpr std::size_t pieceSize = std::size_t{1} << 16;

} // namespace

bool ListReader::Next(ListRecord& record) {
    if (!started_)
        Start();
    std::size_t searched = 0;
    std::size_t length = Held().find(end_);
    while (length == std::string_view::npos && Held().size() <= maxRecord) {
        searched = Held().size();
        if (!Fill())
            break;
        length = Held().find(end_, searched);
    }
    if (Held().empty())
        return false;

    record.number = ++number_;
    record.ended = length != std::string_view::npos;
    record.carriageReturn = false;
    record.broken = length == std::string_view::npos ? Held().size() > maxRecord : length > maxRecord;
    if (record.broken) {
        record.text = {};
        SkipRestOfRecord();
        return true;
    }
    record.text = Held().substr(0, length);
    begin_ += record.text.size() + (length == std::string_view::npos ? 0 : 1);
    if (coding_ != Coding::bytes)
        record.broken = record.text.find(brokenMark) != std::string_view::npos;
    record.carriageReturn = end_ == '\n' && record.text.ends_with('\r');
    if (record.carriageReturn)
        record.text.remove_suffix(1);
    return true;
}

void ListReader::Start() {
    started_ = true;
    while (buffer_.size() < 3 && Fill()) {
    }
    TakeByteOrderMark();
    while (Held().size() <= maxRecord && Fill()) {
    }
    if (Held().find('\0') != std::string_view::npos)
        end_ = '\0';
}

void ListReader::TakeByteOrderMark() {
    if (buffer_.starts_with("\xef\xbb\xbf")) {
        begin_ = 3;
        mark_ = buffer_.substr(0, 3);
        return;
    }
    if (buffer_.starts_with("\xff\xfe"))
        coding_ = Coding::littleEndian;
    else if (buffer_.starts_with("\xfe\xff"))
        coding_ = Coding::bigEndian;
    else
        return;
    mark_ = buffer_.substr(0, 2);
    const std::string bytes = std::exchange(buffer_, {}).substr(2);
    AppendUtf16(bytes);
}

// Reads a piece more; false at the end of the list.
bool ListReader::Fill() {
    if (sourceEnded_)
        return false;
    buffer_.erase(0, begin_);
    begin_ = 0;
    piece_.resize(pieceSize);
    const std::size_t count = source_(piece_);
    const std::span<const char> read = std::span(piece_).first(count);
    sourceEnded_ = count == 0;
    if (coding_ == Coding::bytes) {
        buffer_.append(read.data(), read.size());
        return !sourceEnded_;
    }
    AppendUtf16(read);
    const bool cut = sourceEnded_ && (!utf16_.empty() || surrogate_ != 0);
    if (cut)
        AppendBroken();
    return !sourceEnded_ || cut;
}

void ListReader::AppendUtf16(std::span<const char> bytes) {
    for (const char byte : bytes) {
        utf16_ += byte;
        if (utf16_.size() < 2)
            continue;
        const unsigned first = static_cast<unsigned char>(utf16_[0]);
        const unsigned second = static_cast<unsigned char>(utf16_[1]);
        utf16_.clear();
        AppendUnit(coding_ == Coding::littleEndian ? first | second << 8U : first << 8U | second);
    }
}

void ListReader::AppendUnit(unsigned unit) {
    const bool isFirst = unit >= 0xD800 && unit < 0xDC00;
    const bool isSecond = unit >= 0xDC00 && unit < 0xE000;
    const unsigned first = std::exchange(surrogate_, isFirst ? unit : 0U);
    if (first != 0 && isSecond) {
        AppendPoint(0x10000 + ((first - 0xD800) << 10) + (unit - 0xDC00));
        return;
    }
    if (first != 0 || isSecond)
        AppendBroken();
    if (!isFirst && !isSecond)
        AppendPoint(unit);
}

void ListReader::AppendPoint(unsigned point) {
    const auto append = [this](unsigned byte) { buffer_ += static_cast<char>(byte); };
    if (point < 0x80) {
        append(point);
        return;
    }
    if (point < 0x800) {
        append(0xC0 | point >> 6);
    } else {
        if (point < 0x10000) {
            append(0xE0 | point >> 12);
        } else {
            append(0xF0 | point >> 18);
            append(0x80 | (point >> 12 & 0x3F));
        }
        append(0x80 | (point >> 6 & 0x3F));
    }
    append(0x80 | (point & 0x3F));
}

void ListReader::SkipRestOfRecord() {
    for (;;) {
        const std::size_t length = Held().find(end_);
        if (length != std::string_view::npos) {
            begin_ += length + 1;
            return;
        }
        begin_ = buffer_.size();
        if (!Fill())
            return;
    }
}

} // namespace sum
