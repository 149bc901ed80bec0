// SPDX-License-Identifier: MIT
#include "support/ExceptionReporter.h"

#include "platform/Directory.h"
#include "tests/fakes/Process.h"
#include "tests/helpers/FailingNew.h"
#include "tests/helpers/ScratchFiles.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace {

const std::string separatorLine = "\n" + std::string(79, '-') + "\n";
constexpr auto timeStamp = "Fri Aug  1 08:39:08 2025";

std::string Record(const std::string& computer, const std::string& info) {
    return "Exception error\nComputer : " + computer +
           "\nFile     : crypto/Some.cpp (Fri Aug  1 08:39:08 2025)\n"
           "Function : bool __cdecl Some::Member(const wchar_t *)\nLine     : 123\nInfo     :\n" +
           info + "\n";
}

int Report(const wchar_t* info = nullptr) {
    return ReportException(0, "crypto/Some.cpp", 123, "bool __cdecl Some::Member(const wchar_t *)", timeStamp,
                           info);
}

// The executable lies in a scratch directory, and another one is the current directory.
class ReportExceptionTest : public testing::Test {
  protected:
    ReportExceptionTest() {
        Process() = fakes::Process();
        Process().executablePath = beside.Path("fyrn");
        Process().computerName = L"BOX";
        std::filesystem::current_path(current.Directory());
    }
    ~ReportExceptionTest() override { std::filesystem::current_path(previous); }

    static fakes::Process& Process() { return fakes::TheProcess(); }

    // A file's text with the line ends of C; "(no file)" when there is none.
    static std::string Text(const std::filesystem::path& path) {
        std::ifstream file(path); // text mode
        if (!file)
            return "(no file)";
        return std::string(std::istreambuf_iterator<char>(file), {});
    }
    std::string LogText() const { return Text(beside.Directory() / "Error.log"); }

    const std::filesystem::path previous = std::filesystem::current_path();
    const helpers::ScratchFiles beside;
    const helpers::ScratchFiles current;
};

TEST_F(ReportExceptionTest, AppendsOneRecordAndItsSeparator) {
    EXPECT_EQ(Report(), platform::answerYes);
    EXPECT_EQ(LogText(), Record("BOX", "(null)") + separatorLine);
}

TEST_F(ReportExceptionTest, LeavesNothingElse) {
    Report();
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(beside.Directory()), {}), 1);
    EXPECT_TRUE(std::filesystem::is_empty(current.Directory()));
}

TEST_F(ReportExceptionTest, AppendsARecordPerFaultToWhatIsThere) {
    beside.Write("Error.log", "of an earlier run\n");
    Report();
    Report(L"second");
    EXPECT_EQ(LogText(), "of an earlier run\n" + Record("BOX", "(null)") + separatorLine +
                             Record("BOX", "second") + separatorLine);
}

TEST_F(ReportExceptionTest, AsksWhetherToGoOn) {
    Report(L"more to tell");
    EXPECT_EQ(Process().questionCount, 1u);
    EXPECT_STREQ(Process().caption, L"Exception error");
    EXPECT_STREQ(Process().question,
                 L"The following exception occurred:\n\nFile\n  crypto/Some.cpp (Fri Aug  1 08:39:08 2025)\n"
                 L"Function\n  bool __cdecl Some::Member(const wchar_t *)\nLine\n  123\n"
                 L"--------------------\nmore to tell\n--------------------\n\n"
                 L"Do you want to try and continue? (may fail)");
    Report();
    EXPECT_NE(std::wstring(Process().question).find(L"---\n(null)\n---"), std::wstring::npos);
}

TEST_F(ReportExceptionTest, ReturnsAnyAnswerButNo) {
    for (int answer : {platform::answerYes, 0, 2, -1}) {
        Process().answer = answer;
        EXPECT_EQ(Report(), answer);
    }
}

TEST_F(ReportExceptionTest, EndsTheProcessAfterNoWithTheRecordWritten) {
    Process().answer = platform::answerNo;
    EXPECT_THROW(Report(), fakes::ProcessEnded);
    EXPECT_EQ(LogText(), Record("BOX", "(null)") + separatorLine);
}

TEST_F(ReportExceptionTest, NamesAComputerOfUpTo15Characters) {
    Process().computerName = L"FIFTEEN-LETTERS";
    Report();
    EXPECT_EQ(LogText(), Record("FIFTEEN-LETTERS", "(null)") + separatorLine);
}

TEST_F(ReportExceptionTest, CallsAComputerUnknownWhoseNameIsLongerOrNotTold) {
    Process().computerName = L"SIXTEEN--LETTERS";
    Report();
    Process().computerName = L"";
    Report();
    const std::string expected = Record("< Unknown >", "(null)") + separatorLine;
    EXPECT_EQ(LogText(), expected + expected);
}

TEST_F(ReportExceptionTest, LogsInTheCurrentDirectoryWhenTheExecutableIsUnknown) {
    Process().executablePath = L"";
    Report();
    EXPECT_EQ(LogText(), "(no file)");
    EXPECT_EQ(Text("Error.log"), Record("BOX", "(null)") + separatorLine);
}

TEST_F(ReportExceptionTest, LogsInTheCurrentDirectoryWhenTheExecutablesPathHasNoSeparator) {
    Process().executablePath = L"fyrn";
    Report();
    EXPECT_EQ(LogText(), "(no file)");
    EXPECT_EQ(Text("Error.log"), Record("BOX", "(null)") + separatorLine);
}

TEST_F(ReportExceptionTest, CutsTheLogsNameWhereThePathIsFull) {
    std::wstring directory = beside.Path("");
    while (directory.size() < 254)
        directory += platform::pathSeparator;
    Process().executablePath = directory + platform::pathSeparator + L"fyrn";
    Report();
    EXPECT_EQ(Text(beside.Directory() / "Erro"), Record("BOX", "(null)") + separatorLine);
}

TEST_F(ReportExceptionTest, LogsBesideAnExecutableWhoseNameMakesThePathTooLong) {
    Process().executablePath = beside.Path("") + std::wstring(255, L'x');
    Report();
    EXPECT_EQ(LogText(), Record("BOX", "(null)") + separatorLine);
    EXPECT_TRUE(std::filesystem::is_empty(current.Directory()));
}

// Neither where the user happens to be, nor in a directory above the executable's.
TEST_F(ReportExceptionTest, WritesNoLogWhereTheExecutablesDirectoryIsTooLong) {
    for (const std::size_t directories : {1, 3, 20}) {
        Process().executablePath = beside.Path("");
        for (std::size_t i = 0; i < directories; ++i)
            Process().executablePath += std::wstring(254, L'd') + platform::pathSeparator;
        Process().executablePath += L"fyrn";
        EXPECT_EQ(Report(), platform::answerYes);
        EXPECT_TRUE(std::filesystem::is_empty(beside.Directory())) << directories;
        EXPECT_TRUE(std::filesystem::is_empty(current.Directory())) << directories;
    }
}

TEST_F(ReportExceptionTest, AsksWithoutALogWhereNoneCanBeWritten) {
    std::filesystem::create_directory(beside.Directory() / "Error.log");
    EXPECT_EQ(Report(), platform::answerYes);
    Process().executablePath = beside.Path("missing") + platform::pathSeparator + L"fyrn";
    EXPECT_EQ(Report(), platform::answerYes);
    EXPECT_EQ(Process().questionCount, 2u);
    EXPECT_TRUE(std::filesystem::is_empty(beside.Directory() / "Error.log"));
    EXPECT_TRUE(std::filesystem::is_empty(current.Directory()));
}

TEST_F(ReportExceptionTest, CutsALongRecordAndMessageButNotTheSeparator) {
    const std::wstring info(10'000, L'i');
    Report(info.c_str());
    const std::string record = Record("BOX", std::string(10'000, 'i'));
    EXPECT_EQ(LogText(), record.substr(0, 8191) + separatorLine);
    EXPECT_EQ(std::wstring(Process().question).size(), 8191u);
}

TEST_F(ReportExceptionTest, NeedsNoMemory) {
    std::size_t failures;
    {
        const helpers::FailingNew failing = helpers::FailingNew::Always();
        Report(L"nothing left");
        failures = failing.Failures();
    }
    EXPECT_EQ(failures, 0u);
    EXPECT_EQ(LogText(), Record("BOX", "nothing left") + separatorLine);
}

bool FailAtCatchSite() {
    try {
        throw std::exception();
    }
    CATCH_SITE("bool __cdecl FailAtCatchSite(void)")
    return false;
}

void FailAtFixedLine() {
    try {
        throw 1;
    }
    CATCH_SITE_AT(4711, "void __cdecl FailAtFixedLine(void)")
}

TEST_F(ReportExceptionTest, RecordsACatchSiteWithItsSourceLineAndSignature) {
    EXPECT_FALSE(FailAtCatchSite());
    const std::string expected = std::string("File     : tests/support/ExceptionReporter_test.cpp (") +
                                 build_stamp::sourceTime +
                                 ")\nFunction : bool __cdecl FailAtCatchSite(void)\nLine     : ";
    EXPECT_NE(LogText().find(expected), std::string::npos) << LogText();
    EXPECT_NE(LogText().find("\nInfo     :\n(null)\n"), std::string::npos);
}

TEST_F(ReportExceptionTest, RecordsACatchSiteWithAFixedLine) {
    FailAtFixedLine();
    EXPECT_NE(LogText().find("Function : void __cdecl FailAtFixedLine(void)\nLine     : 4711\n"),
              std::string::npos);
}

TEST(BuildStamp, TellsATimeIn24Characters) {
    const std::string time = build_stamp::sourceTime;
    ASSERT_EQ(time.size(), 24u) << time;
    const std::string shape = "Aaa Aaa d9 99:99:99 9999";
    for (std::size_t i = 0; i < shape.size(); ++i) {
        const char c = time[i];
        const bool digit = c >= '0' && c <= '9';
        const bool fits = shape[i] == 'A'   ? c >= 'A' && c <= 'Z'
                          : shape[i] == 'a' ? c >= 'a' && c <= 'z'
                          : shape[i] == 'd' ? digit || c == ' '
                          : shape[i] == '9' ? digit
                                            : c == shape[i];
        EXPECT_TRUE(fits) << "at " << i << " of " << time;
    }
}

} // namespace
