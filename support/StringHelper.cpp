// SPDX-License-Identifier: MIT
#include "support/StringHelper.h"

#include "platform/Directory.h"
#include "support/ExceptionReporter.h"

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <iterator>
#include <memory>

namespace {

// Nearly every message fits on the stack. The heap buffer bounds the rest: what is longer is not logged.
constexpr std::size_t stackCapacity = 65'535;
constexpr std::size_t heapCapacity = 10'000'000;

unsigned int Append(DebugLog& log, const wchar_t* text, std::size_t length) {
    log.append(text, length);
    return static_cast<unsigned int>(length);
}

unsigned int AppendMessage(DebugLog& log, const wchar_t* format,
                           std::initializer_list<FormatArgument> arguments) {
    wchar_t onStack[stackCapacity];
    std::size_t length = FormatWide(onStack, stackCapacity, format, arguments.begin(), arguments.size());
    if (length < stackCapacity)
        return Append(log, onStack, length);
    const std::unique_ptr<wchar_t[]> onHeap(new wchar_t[heapCapacity]);
    length = FormatWide(onHeap.get(), heapCapacity, format, arguments.begin(), arguments.size());
    return length < heapCapacity ? Append(log, onHeap.get(), length) : 0;
}

// What a fault of OutputDebugMessage tells about its arguments. A deliberate quirk: the second format is
// only an argument of the first, so that its address and the log's stand in the two places. Readers of the
// error log know the text in this form.
struct MessageFaultInfo {
    MessageFaultInfo(const DebugLog* pWstrDebugLog, const wchar_t* pwcFormat) {
        FormatToBuffer(text, std::size(text), L"pWstrDebugLog = 0x%p  : len = %i\n",
                       L"pwcFormat     = 0x%p  : %s\n", pWstrDebugLog, pWstrDebugLog->length(), pwcFormat,
                       pwcFormat == nullptr ? L"" : pwcFormat);
    }
    wchar_t text[1024];
};

} // namespace

int FormatToBufferList(wchar_t* pwcDst, std::size_t capacity, const wchar_t* pwcFormat,
                       std::initializer_list<FormatArgument> arguments) {
    if (pwcDst == nullptr || capacity == 0)
        return 0;
    const std::size_t length = FormatWide(pwcDst, capacity, pwcFormat, arguments.begin(), arguments.size());
    return length < capacity ? static_cast<int>(length) : 0;
}

unsigned int OutputDebugMessageList(DebugLog* pWstrDebugLog, const wchar_t* pwcFormat,
                                    std::initializer_list<FormatArgument> arguments) {
    if (pWstrDebugLog == nullptr)
        return 0;
    try {
        return AppendMessage(*pWstrDebugLog, pwcFormat, arguments);
    }
    CATCH_SITE_WITH(MessageFaultInfo(pWstrDebugLog, pwcFormat).text,
                    "unsigned int __cdecl OutputDebugMessage(class std::basic_string<wchar_t,struct "
                    "std::char_traits<wchar_t>,class std::allocator<wchar_t> > *,const wchar_t *,...)")
    return 0;
}

int ReverseFindNoCase(const wchar_t* text, unsigned int, int start) {
    if (text == nullptr)
        return -1;
    const int length = static_cast<int>(std::wcslen(text));
    int position = start < 0 ? length - 1 : std::min(start, length);
    while (position >= 0 && text[position] != platform::pathSeparator)
        --position;
    return position;
}

int CompareNoCase(const wchar_t* a, const wchar_t* b) {
    const bool noA = a == nullptr || *a == L'\0';
    const bool noB = b == nullptr || *b == L'\0';
    if (noA)
        return noB ? 0 : -1;
    if (noB)
        return 1;
    int i = 0;
    while (a[i] != L'\0' && ToLowerAscii(a[i]) == ToLowerAscii(b[i]))
        ++i;
    const wchar_t lowerA = ToLowerAscii(a[i]);
    const wchar_t lowerB = ToLowerAscii(b[i]);
    if (lowerA == lowerB)
        return 0;
    return lowerA < lowerB ? ~i : i + 1;
}

wchar_t ToLowerAscii(wchar_t character) {
    return character >= L'A' && character <= L'Z' ? static_cast<wchar_t>(character - L'A' + L'a') : character;
}

void Safe_memmove(void* pvDst, std::size_t capacity, const void* pvSrc, std::size_t length,
                  DebugLog* pWstrDebugLog) {
    if (capacity < length)
        OutputDebugMessage(pWstrDebugLog,
                           L"Safe_memmove(pvDst, %I64u, pvSrc, %I64u) : Warning = dst size too small\n",
                           capacity, length);
    if (const std::size_t count = std::min(capacity, length))
        std::memmove(pvDst, pvSrc, count);
}
