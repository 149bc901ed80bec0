// SPDX-License-Identifier: MIT
// The bytes of a checksum list as records, in bounded memory whatever the list holds.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace sum {

struct ListRecord {
    std::string_view text;       // UTF-8 or bytes, without its end; valid until the next is read
    std::uint64_t number = 0;    // of the line, from 1
    bool broken = false;         // longer than ListReader::maxRecord, or no whole UTF-16
    bool carriageReturn = false; // stood before its end
    bool ended = false;          // false for a last one without an end
};

// Takes off a byte order mark, turns UTF-16 that begins with one (of either order) into UTF-8, and
// splits at line ends. A line may end with CR LF, and the last one without any. When the beginning
// of the list holds a NUL, records end with NUL, and line ends are part of names.
class ListReader {
  public:
    // A longer record is cut and told as broken.
    static constexpr std::size_t maxRecord = std::size_t{1} << 20;

    // Fills the beginning of the span and returns how much; 0 at the end of the list.
    using Source = std::function<std::size_t(std::span<char>)>;

    // Reads ahead when the first record is asked for: maxRecord bytes, where a list with NULs must
    // have its first one.
    explicit ListReader(Source source) : source_(std::move(source)) {}

    // Reads the next record; false at the end. Throws std::bad_alloc and what the source throws.
    bool Next(ListRecord& record);

    // Whether records end with NUL. Known after the first Next, as are the next two.
    bool EndsInNul() const { return end_ == '\0'; }

    enum class Coding { bytes, littleEndian, bigEndian }; // the latter two are UTF-16
    Coding Encoding() const { return coding_; }

    // The byte order mark as it stood there; mostly empty.
    std::string_view Mark() const { return mark_; }

  private:
    void Start();
    void TakeByteOrderMark();
    bool Fill();
    void AppendUtf16(std::span<const char> bytes);
    void AppendUnit(unsigned unit);
    void AppendPoint(unsigned point);
    void AppendBroken() { buffer_ += brokenMark; }
    std::string_view Held() const { return std::string_view(buffer_).substr(begin_); }
    void SkipRestOfRecord();

    // Stands for what is no UTF-16. No UTF-8 text holds this byte.
    static constexpr char brokenMark = '\xff';

    Source source_;
    std::vector<char> piece_; // as it was read
    std::string buffer_;
    std::size_t begin_ = 0; // of what is not taken yet
    bool started_ = false;
    bool sourceEnded_ = false;
    char end_ = '\n';
    std::uint64_t number_ = 0;

    Coding coding_ = Coding::bytes;
    std::string mark_;
    std::string utf16_;      // an odd byte that waits for its other half
    unsigned surrogate_ = 0; // the first half of a pair
};

} // namespace sum
