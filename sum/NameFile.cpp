// SPDX-License-Identifier: MIT
#include "sum/NameFile.h"

#include <utility>

namespace sum {

NameFile::NameFile(const Name& file, char end)
    : end_(end),
      file_(file == "-" ? platform::ByteFile::StandardInput() : platform::ByteFile::Open(file, error_)) {}

// Adds what one reading gives; false when there is no more.
bool NameFile::Fill() {
    constexpr std::size_t pieceSize = 16 * 1024;
    if (!file_)
        return false;
    buffer_.erase(0, std::exchange(place_, 0));
    const std::size_t kept = buffer_.size();
    buffer_.resize(kept + pieceSize);
    const std::ptrdiff_t count = file_.Read(buffer_.data() + kept, pieceSize, error_);
    buffer_.resize(kept + static_cast<std::size_t>(count > 0 ? count : 0));
    if (count <= 0)
        file_.Close();
    return count > 0;
}

std::optional<std::string> NameFile::Next() {
    std::size_t searched = place_;
    std::size_t found;
    while ((found = buffer_.find(end_, searched)) == std::string::npos) {
        searched = buffer_.size() - place_; // counted without what Fill takes away
        if (Fill())
            continue;
        if (error_ != 0 || place_ == buffer_.size())
            return std::nullopt;
        return buffer_.substr(std::exchange(place_, buffer_.size()));
    }
    std::string piece = buffer_.substr(place_, found - place_);
    place_ = found + 1;
    return piece;
}

} // namespace sum
