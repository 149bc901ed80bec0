// SPDX-License-Identifier: MIT
#include "tests/emulated/Sources.h"

#include <filesystem>

namespace emulated {
namespace {

std::set<std::string>& Noted() {
    static std::set<std::string> noted;
    return noted;
}

} // namespace

bool NoteSource(const char* path) {
    Noted().insert(std::filesystem::path(path).filename().string());
    return true;
}

const std::set<std::string>& Sources() {
    return Noted();
}

} // namespace emulated
