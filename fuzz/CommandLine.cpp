// SPDX-License-Identifier: MIT
// Command-line parsing against a second, plainer reading of the rules. Input: the arguments, each ended by a zero.
#include "app/CommandLine.h"
#include "app/HashTable.h"
#include "fuzz/FuzzInput.h"
#include "platform/Text.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace {

struct Expected {
    std::uint64_t rows = 0;
    bool rename = false, deleteOnCollision = false, recurse = false;
    unsigned int verbosity = 2;
    std::wstring saltPath;
    EnumSaltType placement = EnumSaltType::None;
    std::vector<std::wstring> targets; // one per argument, empty when it was used up
};

std::wstring Lower(std::wstring text) {
    for (wchar_t& character : text)
        if (character >= L'A' && character <= L'Z')
            character += L'a' - L'A';
    return text;
}

std::uint64_t RowsNamed(const std::wstring& name) {
    if (Lower(name) == L"all")
        return (std::uint64_t{1} << hashRowCount) - 1;
    for (std::size_t row = 0; row < hashRowCount; ++row)
        if (Lower(hashTable[row].name) == Lower(name))
            return std::uint64_t{1} << row;
    return 0;
}

EnumSaltType PlacementNamed(const std::wstring& name) {
    const wchar_t* const names[] = {L"none", L"before", L"after", L"both"};
    const auto* const found = std::find(std::begin(names), std::end(names), Lower(name));
    return found == std::end(names) ? EnumSaltType::None
                                    : EnumSaltType{static_cast<std::uint32_t>(found - names)};
}

// What is left of an argument.
std::wstring Read(const std::wstring& argument, Expected& expected) {
    const std::wstring lower = Lower(argument);
    const auto after = [&](const wchar_t* prefix) { return argument.substr(std::wstring(prefix).size()); };
    if (lower.starts_with(L"-hash=")) {
        expected.rows |= RowsNamed(after(L"-hash="));
    } else if (lower.starts_with(L"-salt=")) {
        expected.saltPath = after(L"-salt=").substr(0, platform::maxPath - 1);
    } else if (lower.starts_with(L"-salttype=")) {
        expected.placement = PlacementNamed(after(L"-salttype="));
    } else if (lower == L"-rename" || lower == L"-renamedel") {
        expected.rename = true;
        expected.deleteOnCollision = lower == L"-renamedel";
    } else if (lower == L"-subdirs") {
        expected.recurse = true;
    } else if (lower.starts_with(L"-verbosity=")) {
        if (lower.size() > 11 && lower[11] >= L'1' && lower[11] <= L'3')
            expected.verbosity = static_cast<unsigned int>(lower[11] - L'0');
    } else {
        return argument; // the polynomials, too
    }
    return {};
}

std::vector<std::wstring> Arguments(const std::uint8_t* data, std::size_t size) {
    std::vector<std::wstring> arguments = {L"fyrn"};
    for (std::size_t begin = 0; begin < size;) {
        const std::uint8_t* const end = std::find(data + begin, data + size, 0);
        const auto length = static_cast<std::size_t>(end - (data + begin));
        arguments.push_back(platform::DecodeName({reinterpret_cast<const char*>(data + begin), length}));
        begin += length + 1;
    }
    return arguments;
}

void Check(const RunContext& context, const SaltChoice& salt, const Expected& expected) {
    const std::uint64_t rows = context.selection[0] | std::uint64_t{context.selection[1]} << 32;
    fuzz::Require((rows & ((std::uint64_t{1} << hashRowCount) - 1)) == expected.rows,
                  "the rows named are selected");
    fuzz::Require(context.rename == expected.rename &&
                      context.deleteOnCollision == expected.deleteOnCollision,
                  "the last of the options to rename counts");
    fuzz::Require(context.recurse == expected.recurse, "-subdirs is seen");
    fuzz::Require(context.verbosity == expected.verbosity, "the verbosity is 1, 2 or 3");
    fuzz::Require(salt.path == expected.saltPath && salt.placement == expected.placement, "the salt is seen");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::vector<std::wstring> arguments = Arguments(data, size);
    Expected expected;
    for (const std::wstring& argument : arguments)
        expected.targets.push_back(&argument == arguments.data() ? argument : Read(argument, expected));
    std::vector<wchar_t*> pointers;
    for (std::wstring& argument : arguments)
        pointers.push_back(argument.data());

    const auto context = std::make_unique<RunContext>();
    SaltChoice salt;
    ParseCommandLine(static_cast<int>(pointers.size()), pointers.data(), *context, salt);
    Check(*context, salt, expected);
    for (std::size_t i = 0; i < pointers.size(); ++i)
        fuzz::Require(expected.targets[i] == pointers[i], "what is no option stays a target");
    return 0;
}
