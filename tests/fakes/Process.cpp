// SPDX-License-Identifier: MIT
#include "tests/fakes/Process.h"

#include <cwchar>
#include <iterator>

namespace fakes {

Process& TheProcess() {
    static Process process;
    return process;
}

} // namespace fakes

namespace {

// False, and nothing written, for a text that is empty or does not fit.
bool Copy(const std::wstring& text, wchar_t* buffer, std::size_t capacity) {
    if (text.empty() || text.size() >= capacity)
        return false;
    std::wcscpy(buffer, text.c_str());
    return true;
}

} // namespace

namespace platform {

std::size_t ExecutablePath(wchar_t* buffer, std::size_t capacity) {
    const std::wstring& path = fakes::TheProcess().executablePath;
    return path.empty() || Copy(path, buffer, capacity) ? path.size() : capacity;
}

bool ComputerName(wchar_t* buffer, std::size_t capacity) {
    return Copy(fakes::TheProcess().computerName, buffer, capacity);
}

int AskYesNo(const wchar_t* text, const wchar_t* caption) {
    fakes::Process& process = fakes::TheProcess();
    ++process.questionCount;
    std::wcsncpy(process.question, text, std::size(process.question) - 1);
    std::wcsncpy(process.caption, caption, std::size(process.caption) - 1);
    return process.answer;
}

void EndAfterFault() {
    throw fakes::ProcessEnded();
}

} // namespace platform
