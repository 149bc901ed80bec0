// SPDX-License-Identifier: MIT
#include "app/CommandLine.h"

#include "app/HashTable.h"
#include "support/StringHelper.h"

#include <cwchar>
#include <iterator>
#include <optional>

namespace {

bool EqualNoCase(const wchar_t* a, const wchar_t* b) {
    return CompareNoCase(a, b) == 0;
}

// What follows `prefix`, where the argument begins with it; else null.
const wchar_t* ValueAfter(const wchar_t* argument, const wchar_t* prefix) {
    for (; *prefix != L'\0'; ++prefix, ++argument)
        if (ToLowerAscii(*argument) != ToLowerAscii(*prefix))
            return nullptr;
    return argument;
}

void SelectHash(RunContext& context, SaltChoice&, const wchar_t* name) {
    for (std::size_t row = 0; row < hashRowCount; ++row)
        if (EqualNoCase(name, hashTable[row].name))
            return SelectRow(context, row);
    if (EqualNoCase(name, L"ALL"))
        SelectAllRows(context);
}

std::optional<unsigned int> HexDigit(wchar_t character) {
    if (character >= L'0' && character <= L'9')
        return character - L'0';
    const wchar_t lower = ToLowerAscii(character);
    if (lower >= L'a' && lower <= L'f')
        return lower - L'a' + 10;
    return std::nullopt;
}

// The polynomial of a value of exactly `length` characters. Deliberate, since recorded CRC values depend on
// it: only the first four digits count, and their two bytes are taken in swapped order.
std::optional<std::uint16_t> Polynomial(const wchar_t* value, std::size_t length) {
    if (std::wcslen(value) != length)
        return std::nullopt;
    unsigned int digits[4];
    for (std::size_t i = 0; i < 4; ++i) {
        const std::optional<unsigned int> digit = HexDigit(value[i]);
        if (!digit)
            return std::nullopt;
        digits[i] = *digit;
    }
    return static_cast<std::uint16_t>(digits[2] << 12 | digits[3] << 8 | digits[0] << 4 | digits[1]);
}

void SetPolynomial16(RunContext& context, SaltChoice&, const wchar_t* value) {
    if (const auto polynomial = Polynomial(value, 4))
        context.crc.Crc16_SetPolynomial(*polynomial);
}

// Deliberately, any polynomial given for the two wider functions also makes 0xFFFF their initial value and
// final XOR, which without the option are all ones.
void SetPolynomial32(RunContext& context, SaltChoice&, const wchar_t* value) {
    if (const auto polynomial = Polynomial(value, 8))
        context.crc.Crc32_SetPolynomial(*polynomial, 0xFFFF);
}

void SetPolynomial64(RunContext& context, SaltChoice&, const wchar_t* value) {
    if (const auto polynomial = Polynomial(value, 16))
        context.crc.Crc64_SetPolynomial(*polynomial, 0xFFFF);
}

void SetSaltPath(RunContext&, SaltChoice& salt, const wchar_t* value) {
    FormatToBuffer(salt.path, std::size(salt.path), L"%s", value);
}

void SetSaltPlacement(RunContext&, SaltChoice& salt, const wchar_t* value) {
    if (EqualNoCase(value, L"before"))
        salt.placement = EnumSaltType::Before;
    else if (EqualNoCase(value, L"after"))
        salt.placement = EnumSaltType::After;
    else if (EqualNoCase(value, L"both"))
        salt.placement = EnumSaltType::Both;
    else
        salt.placement = EnumSaltType::None;
}

// The later of the two options decides what becomes of a file whose digest name is taken.
void RequestRename(RunContext& context, SaltChoice&, const wchar_t*) {
    context.rename = true;
    context.deleteOnCollision = false;
}

void RequestRenameOrDelete(RunContext& context, SaltChoice&, const wchar_t*) {
    context.rename = true;
    context.deleteOnCollision = true;
}

void RequestRecursion(RunContext& context, SaltChoice&, const wchar_t*) {
    context.recurse = true;
}

void SetVerbosity(RunContext& context, SaltChoice&, const wchar_t* value) {
    if (*value >= L'1' && *value <= L'3')
        context.verbosity = static_cast<std::uint8_t>(*value - L'0');
}

// Whether an option's text is the whole argument or is followed by a value.
enum class Match { Whole, Prefix };

// Whether the argument is still looked up as a target afterwards, as the polynomial options always were.
enum class Afterwards { UsedUp, StaysTarget };

struct Option {
    const wchar_t* text;
    Match match;
    Afterwards afterwards;
    void (*apply)(RunContext& context, SaltChoice& salt, const wchar_t* value);
};

constexpr Option options[] = {
    {L"-hash=", Match::Prefix, Afterwards::UsedUp, SelectHash},
    {L"-poly16=0x", Match::Prefix, Afterwards::StaysTarget, SetPolynomial16},
    {L"-poly32=0x", Match::Prefix, Afterwards::StaysTarget, SetPolynomial32},
    {L"-poly64=0x", Match::Prefix, Afterwards::StaysTarget, SetPolynomial64},
    {L"-salt=", Match::Prefix, Afterwards::UsedUp, SetSaltPath},
    {L"-salttype=", Match::Prefix, Afterwards::UsedUp, SetSaltPlacement},
    {L"-rename", Match::Whole, Afterwards::UsedUp, RequestRename},
    {L"-renamedel", Match::Whole, Afterwards::UsedUp, RequestRenameOrDelete},
    {L"-subdirs", Match::Whole, Afterwards::UsedUp, RequestRecursion},
    {L"-verbosity=", Match::Prefix, Afterwards::UsedUp, SetVerbosity},
};

void ParseArgument(wchar_t* argument, RunContext& context, SaltChoice& salt) {
    for (const Option& option : options) {
        const wchar_t* const value = ValueAfter(argument, option.text);
        if (value == nullptr || (option.match == Match::Whole && *value != L'\0'))
            continue;
        option.apply(context, salt, value);
        if (option.afterwards == Afterwards::UsedUp)
            *argument = L'\0';
        return;
    }
}

} // namespace

void ParseCommandLine(int argc, wchar_t* argv[], RunContext& context, SaltChoice& salt) {
    for (int i = 1; i < argc; ++i)
        ParseArgument(argv[i], context, salt);
}
