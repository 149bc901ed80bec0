// SPDX-License-Identifier: MIT
#include "support/StringHelper.h"
#include "tests/fakes/Process.h"
#include "tests/helpers/FailingNew.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace {

constexpr std::size_t largeBufferBytes = 10'000'000 * sizeof(wchar_t);

class OutputDebugMessageTest : public testing::Test {
  protected:
    void SetUp() override { fakes::TheProcess() = fakes::Process(); }

    // A message of `length` characters, appended with the format "%s".
    unsigned int AppendText(std::size_t length) {
        const std::wstring text(length, L'x');
        return OutputDebugMessage(&log, L"%s", text.c_str());
    }

    DebugLog log;
};

TEST_F(OutputDebugMessageTest, AppendsMessagesAndReturnsTheirLengths) {
    EXPECT_EQ(OutputDebugMessage(&log, L"%s = %i\n", L"first", 1), 10u);
    EXPECT_EQ(OutputDebugMessage(&log, L"%S", "second"), 6u);
    EXPECT_EQ(OutputDebugMessage(&log, L""), 0u);
    EXPECT_EQ(log, L"first = 1\nsecond");
}

TEST_F(OutputDebugMessageTest, LooksAtNothingWithoutALog) {
    const auto nonsense = reinterpret_cast<const wchar_t*>(std::uintptr_t{8});
    EXPECT_EQ(OutputDebugMessage(nullptr, nonsense, nonsense), 0u);
}

TEST_F(OutputDebugMessageTest, AppendsNothingForANullFormat) {
    const wchar_t* const noFormat = nullptr;
    EXPECT_EQ(OutputDebugMessage(&log, noFormat, 1), 0u);
    EXPECT_EQ(log, L"");
}

TEST_F(OutputDebugMessageTest, Appends65534CharactersWithoutTheLargeBuffer) {
    const helpers::FailingNew failing = helpers::FailingNew::OfSize(largeBufferBytes);
    EXPECT_EQ(AppendText(65'534), 65'534u);
    EXPECT_EQ(failing.Failures(), 0u);
    EXPECT_EQ(log, std::wstring(65'534, L'x'));
}

TEST_F(OutputDebugMessageTest, Takes65535CharactersThroughTheLargeBuffer) {
    EXPECT_EQ(AppendText(65'535), 65'535u);
    EXPECT_EQ(log, std::wstring(65'535, L'x'));
    const helpers::FailingNew failing = helpers::FailingNew::OfSize(largeBufferBytes);
    EXPECT_EQ(AppendText(65'535), 0u);
    EXPECT_EQ(failing.Failures(), 1u);
    EXPECT_EQ(log.size(), 65'535u);
}

TEST_F(OutputDebugMessageTest, AppendsNothingOfAMessageThatDoesNotFitTheLargeBuffer) {
    EXPECT_EQ(AppendText(9'999'999), 9'999'999u);
    EXPECT_EQ(log.size(), 9'999'999u);
    EXPECT_EQ(AppendText(10'000'000), 0u);
    EXPECT_EQ(log.size(), 9'999'999u);
    EXPECT_EQ(fakes::TheProcess().questionCount, 0u);
}

// The part of the question that tells the info text of the fault.
std::wstring ReportedInfo() {
    const std::wstring question = fakes::TheProcess().question;
    const std::wstring rule = L"--------------------\n";
    const std::size_t begin = question.find(rule) + rule.size();
    return question.substr(begin, question.rfind(L"\n" + rule) - begin);
}

std::wstring LowHalfAsNumber(const void* address) {
    return std::to_wstring(
        static_cast<std::int32_t>(static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(address))));
}

TEST_F(OutputDebugMessageTest, ReportsAFailedAllocationAsItsOwnCatchSite) {
    const std::wstring text(65'535, L'x');
    const helpers::FailingNew failing = helpers::FailingNew::OfSize(largeBufferBytes);
    EXPECT_EQ(OutputDebugMessage(&log, L"%s", text.c_str()), 0u);
    EXPECT_EQ(fakes::TheProcess().questionCount, 1u);
    const std::wstring question = fakes::TheProcess().question;
    EXPECT_NE(question.find(L"\n  support/StringHelper.cpp ("), std::wstring::npos) << "the source file";
    EXPECT_NE(
        question.find(
            L"\n  unsigned int __cdecl OutputDebugMessage(class std::basic_string<wchar_t,struct "
            L"std::char_traits<wchar_t>,class std::allocator<wchar_t> > *,const wchar_t *,...)\nLine\n  "),
        std::wstring::npos);
}

// The quirk of the info text: an address of some text, then the low half of the log's address.
TEST_F(OutputDebugMessageTest, TellsTheLogsAddressInPlaceOfItsLength) {
    const helpers::FailingNew failing = helpers::FailingNew::OfTurn(1);
    EXPECT_EQ(OutputDebugMessage(&log, L"longer than a short string holds: %i", 42), 0u);
    EXPECT_EQ(failing.Failures(), 1u);
    const std::wstring info = ReportedInfo();
    const std::wstring head = L"pWstrDebugLog = 0x";
    ASSERT_EQ(info.substr(0, head.size()), head);
    const std::wstring address = info.substr(head.size(), 16);
    EXPECT_EQ(address.find_first_not_of(L"0123456789ABCDEF"), std::wstring::npos) << "an address";
    const auto text = reinterpret_cast<const wchar_t*>(std::stoull(address, nullptr, 16));
    EXPECT_STREQ(text, L"pwcFormat     = 0x%p  : %s\n") << "the address of the format that is not applied";
    EXPECT_EQ(info.substr(head.size() + 16), L"  : len = " + LowHalfAsNumber(&log) + L"\n");
    EXPECT_EQ(log, L"");
}

} // namespace
