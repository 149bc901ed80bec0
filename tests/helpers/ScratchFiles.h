// SPDX-License-Identifier: MIT
// Files for tests, in a directory of their own that goes away with the object.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>

namespace helpers {

class ScratchFiles {
  public:
    ScratchFiles();
    ~ScratchFiles();
    ScratchFiles(const ScratchFiles&) = delete;
    ScratchFiles& operator=(const ScratchFiles&) = delete;

    const std::filesystem::path& Directory() const { return directory_; }

    // The path of a name in the directory, as the program's wide text. The file need not exist.
    std::wstring Path(std::string_view name) const;

    // Writes a file, replacing one of that name, and returns its path.
    std::wstring Write(std::string_view name, std::span<const std::uint8_t> bytes) const;
    std::wstring Write(std::string_view name, std::string_view text) const;

  private:
    std::filesystem::path directory_;
};

} // namespace helpers
