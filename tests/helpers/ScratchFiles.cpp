// SPDX-License-Identifier: MIT
#include "tests/helpers/ScratchFiles.h"

#include <fstream>
#include <random>
#include <stdexcept>

namespace helpers {

ScratchFiles::ScratchFiles() {
    std::random_device random;
    do
        directory_ = std::filesystem::temp_directory_path() / ("fyrn-test-" + std::to_string(random()));
    while (!std::filesystem::create_directory(directory_));
}

ScratchFiles::~ScratchFiles() {
    std::error_code ignored;
    std::filesystem::remove_all(directory_, ignored);
}

std::wstring ScratchFiles::Path(std::string_view name) const {
    return (directory_ / name).wstring();
}

std::wstring ScratchFiles::Write(std::string_view name, std::span<const std::uint8_t> bytes) const {
    return Write(name, std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
}

std::wstring ScratchFiles::Write(std::string_view name, std::string_view text) const {
    std::filesystem::remove(directory_ / name); // ext4 would write a file cut to zero to the disk at once
    std::ofstream file(directory_ / name, std::ios::binary);
    file.write(text.data(), static_cast<std::streamsize>(text.size()));
    file.close();
    if (!file)
        throw std::runtime_error("cannot write a scratch file");
    return Path(name);
}

} // namespace helpers
