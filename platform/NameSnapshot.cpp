// SPDX-License-Identifier: MIT
// Sorting leaves the entries in one block, the last one first, so that taking the next one cuts the block's
// end; whenever half of the block is unused, it is given back. A long walk through a deep tree therefore holds
// little more than the names it has still to visit.
#include "platform/NameSnapshot.h"

#include <algorithm>
#include <utility>

namespace platform {

namespace {

constexpr std::size_t trailerLength = 3;

unsigned char Upper(char byte) {
    return static_cast<unsigned char>(byte >= 'a' && byte <= 'z' ? byte - 'a' + 'A' : byte);
}

int Rank(std::string_view name) {
    return name == "." ? 0 : name == ".." ? 1 : 2;
}

bool ComesBefore(std::string_view a, std::string_view b) {
    if (Rank(a) != Rank(b))
        return Rank(a) < Rank(b);
    const auto [inA, inB] = std::mismatch(a.begin(), a.end(), b.begin(), b.end(),
                                          [](char x, char y) { return Upper(x) == Upper(y); });
    if (inA != a.end() && inB != b.end())
        return Upper(*inA) < Upper(*inB);
    return a.size() != b.size() ? a.size() < b.size() : a < b; // char_traits<char> compares unsigned bytes
}

// The name of the entry that ends at `end`.
std::string_view NameEndingAt(const std::string& entries, std::size_t end) {
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(entries[i]); };
    const std::size_t length = byteAt(end - 3) | static_cast<std::size_t>(byteAt(end - 2)) << 8;
    return std::string_view(entries).substr(end - trailerLength - length, length);
}

} // namespace

void NameSnapshot::Add(std::string_view name, std::uint8_t tag) {
    entries_.append(name);
    for (const std::size_t value : {name.size(), name.size() >> 8, std::size_t{tag}})
        entries_.push_back(static_cast<char>(value));
    ends_.push_back(entries_.size());
}

void NameSnapshot::Sort() {
    std::sort(ends_.begin(), ends_.end(), [this](std::size_t a, std::size_t b) {
        return ComesBefore(NameEndingAt(entries_, b), NameEndingAt(entries_, a));
    });
    std::string sorted;
    sorted.reserve(entries_.size());
    for (const std::size_t end : ends_) {
        const std::size_t length = NameEndingAt(entries_, end).size() + trailerLength;
        sorted.append(entries_, end - length, length);
    }
    entries_ = std::move(sorted);
    std::vector<std::size_t>().swap(ends_);
}

bool NameSnapshot::Take(std::string_view& name, std::uint8_t& tag) {
    ReleaseTaken();
    if (entries_.empty())
        return false;
    name = NameEndingAt(entries_, entries_.size());
    tag = static_cast<std::uint8_t>(entries_.back());
    taken_ = name.size() + trailerLength;
    if (lookedAt_ != 0)
        --lookedAt_;
    return true;
}

bool NameSnapshot::LookAhead(std::string_view& name, std::uint8_t& tag) {
    if (lookedAt_ == 0)
        lookEnd_ = entries_.size() - taken_;
    if (lookEnd_ == 0)
        return false;
    name = NameEndingAt(entries_, lookEnd_);
    tag = static_cast<std::uint8_t>(entries_[lookEnd_ - 1]);
    lookEnd_ -= name.size() + trailerLength;
    ++lookedAt_;
    return true;
}

// Where memory is short, the block simply stays as large as it is: shrink_to_fit may fail quietly.
void NameSnapshot::ReleaseTaken() {
    entries_.resize(entries_.size() - taken_);
    taken_ = 0;
    if (entries_.size() < entries_.capacity() / 2)
        entries_.shrink_to_fit();
}

} // namespace platform
