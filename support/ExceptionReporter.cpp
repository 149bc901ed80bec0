// SPDX-License-Identifier: MIT
// Memory may be what has run out, so everything here lives on the stack.
#include "support/ExceptionReporter.h"

#include "platform/Directory.h"
#include "platform/File.h"
#include "platform/Process.h"
#include "support/StringHelper.h"

#include <cstddef>
#include <cwchar>
#include <iterator>

namespace {

constexpr wchar_t separatorLine[] =
    L"\n-------------------------------------------------------------------------------\n";
constexpr std::size_t messageCapacity = 8192;

using PathBuffer = wchar_t[platform::maxPath];

struct Fault {
    const char* sourceFile;
    int line;
    const char* signature;
    const char* timeStamp;
    const wchar_t* info;
};

// The path of a file beside the executable; an empty one where the executable's directory leaves no room for
// it. Where the executable's place is not known, the bare name, which is looked up in the current directory.
void ComposePathBesideExecutable(PathBuffer& path, const wchar_t* name) {
    wchar_t executable[2 * platform::maxPath]; // any directory that leaves room, and any name
    const std::size_t length = platform::ExecutablePath(executable, std::size(executable));
    path[0] = L'\0';
    if (length == std::size(executable))
        return;
    executable[length] = L'\0';
    const int directoryLength = ReverseFindNoCase(executable, 0, static_cast<int>(length)) + 1;
    const auto kept = static_cast<std::size_t>(directoryLength);
    if (kept >= std::size(path))
        return;
    std::wmemcpy(path, executable, kept);
    FormatToBuffer(path + kept, std::size(path) - kept, L"%s", name);
}

// Appends the record and its separator in one piece. A long record is cut, the separator never.
void AppendRecord(const Fault& fault, const wchar_t* logPath) {
    wchar_t computer[16];
    if (!platform::ComputerName(computer, std::size(computer)))
        FormatToBuffer(computer, std::size(computer), L"< Unknown >");

    wchar_t record[messageCapacity + std::size(separatorLine)];
    FormatToBuffer(record, messageCapacity,
                   L"Exception error\nComputer : %s\nFile     : %S (%S)\nFunction : %S\nLine     : %i\n"
                   L"Info     :\n%s\n",
                   computer, fault.sourceFile, fault.timeStamp, fault.signature, fault.line, fault.info);
    OutputDebugMessage(nullptr, L"%s", record);
    std::wcscat(record, separatorLine);
    platform::AppendText(logPath, record);
}

int AskToContinue(const Fault& fault) {
    wchar_t message[messageCapacity];
    FormatToBuffer(message, messageCapacity,
                   L"The following exception occurred:\n\nFile\n  %S (%S)\nFunction\n  %S\nLine\n  %i\n"
                   L"--------------------\n%s\n--------------------\n\n"
                   L"Do you want to try and continue? (may fail)",
                   fault.sourceFile, fault.timeStamp, fault.signature, fault.line, fault.info);
    return platform::AskYesNo(message, L"Exception error");
}

} // namespace

int ReportException(unsigned int, const char* sourceFile, int line, const char* signature,
                    const char* timeStamp, const wchar_t* info) {
    const Fault fault{sourceFile, line, signature, timeStamp, info};
    PathBuffer logPath;
    ComposePathBesideExecutable(logPath, L"Error.log");
    // The place of the report's settings. There is no setting so far, and nothing is read.
    PathBuffer settingsPath;
    ComposePathBesideExecutable(settingsPath, L"Error reporting.ini");

    AppendRecord(fault, logPath);
    const int answer = AskToContinue(fault);
    if (answer == platform::answerNo)
        platform::EndAfterFault();
    return answer;
}
