// SPDX-License-Identifier: MIT
// Prints the MD5, SHA-256 and BLAKE2b-512 digests of the file that it is called with. Its own functions and namespaces
// bear names that stand in the library's sources, too.
#include <fyrn/fyrn.hpp>

#include <iostream>

bool CompareNoCase(const wchar_t* a, const wchar_t* b);
char ToLowerAscii(char c);

bool CompareNoCase(const wchar_t*, const wchar_t*) {
    return false;
}
char ToLowerAscii(char c) {
    return c;
}
namespace platform {
int RemoveFile(const wchar_t*) {
    return 1;
}
} // namespace platform
namespace kernels {
int Kernels() {
    return 2;
}
} // namespace kernels
namespace hash {
int AllFunctions() {
    return 3;
}
} // namespace hash

int main(int count, char* arguments[]) {
    if (count != 2 || CompareNoCase(L"a", L"a") || ToLowerAscii('A') != 'A' ||
        platform::RemoveFile(L"") + kernels::Kernels() + hash::AllFunctions() != 6)
        return 2;
    for (const char* name : {"md5", "sha256", "blake2b"})
        std::cout << fyrn::ToHex(fyrn::HashFile(arguments[1], name)) << '\n';
}
