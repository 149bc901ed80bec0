// SPDX-License-Identifier: MIT
#include "sum/FunctionRequest.h"

#include "sum/CommandLine.h"
#include "sum/Messages.h"

#include <algorithm>
#include <cerrno>
#include <charconv>

namespace sum {

namespace {

constexpr std::string_view cksumNames[] = {"bsd",  "sysv",   "crc",     "crc32b", "md5",
                                           "sha1", "sha224", "sha256",  "sha384", "sha512",
                                           "sha2", "sha3",   "blake2b", "sm3"};

constexpr std::size_t familyBits[] = {224, 256, 384, 512};

bool IsFamily(std::string_view name) {
    return name == "sha2" || name == "sha3";
}

bool IsOpenInLength(const std::string& name) {
    const auto function = fyrn::Function::Find(name);
    return IsFamily(name) || (function && TakesLength(*function));
}

std::string Upper(std::string_view name) {
    std::string upper(name);
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
    return upper;
}

// Names in the spelling of the families above, which the library does not know.
std::string Plain(std::string_view name) {
    std::string plain;
    for (const char c : Upper(name))
        if (c != '-' && c != '_' && c != '/' && c != ' ')
            plain += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    return plain;
}

[[noreturn]] void Fail(const std::string& message) {
    throw UsageError(message, UsageError::Advice::none);
}

[[noreturn]] void FailForLength(const std::string& text, const std::string& reason) {
    Say("invalid length: " + QuotedPlain(text));
    Fail(reason);
}

void AddNew(std::vector<FunctionChoice>& choices, const FunctionChoice& choice) {
    if (std::find(choices.begin(), choices.end(), choice) == choices.end())
        choices.push_back(choice);
}

} // namespace

void FunctionRequest::Add(std::string_view names) {
    if (tool_.kind != ToolKind::fyrnsum)
        return AddName(names);
    for (;;) {
        const std::size_t comma = names.find(',');
        AddName(names.substr(0, comma));
        if (comma == std::string_view::npos)
            return;
        names.remove_prefix(comma + 1);
    }
}

void FunctionRequest::AddName(std::string_view name) {
    const auto* const end = std::end(cksumNames);
    if (tool_.kind == ToolKind::fyrnsum && (IsFamily(Plain(name)) || fyrn::Function::Find(name)))
        names_.push_back(IsFamily(Plain(name)) ? Plain(name) : std::string(name));
    else if (tool_.kind != ToolKind::fyrnsum && std::find(std::begin(cksumNames), end, name) != end)
        names_.assign(1, std::string(name)); // the last one counts
    else
        FailForName(name);
}

void FunctionRequest::FailForName(std::string_view name) const {
    std::string message = "invalid argument " + QuotedPlain(name) + " for '--algorithm'";
    if (tool_.kind == ToolKind::fyrnsum)
        throw UsageError(message + "\nTry 'fyrnsum --list-functions' for the valid ones.");
    message += "\nValid arguments are:";
    for (const std::string_view valid : cksumNames)
        message += "\n  - '" + std::string(valid) + "'";
    throw UsageError(message);
}

void FunctionRequest::SetLength(const std::string& text) {
    std::size_t bits = 0;
    const std::size_t start = std::min(text.find_first_not_of(" \t"), text.size());
    const char* const end = text.data() + text.size();
    const char* const digits = text.data() + start + (text[start] == '+' ? 1 : 0);
    const auto [stop, error] = std::from_chars(digits, end, bits);
    if (error == std::errc::result_out_of_range && stop == end)
        Fail("invalid length: " + QuotedPlain(text) + ": " + ErrorText(EOVERFLOW));
    if (error != std::errc() || stop != end)
        Fail("invalid length: " + QuotedPlain(text));
    if (bits % 8 != 0)
        FailForLength(text, "length is not a multiple of 8");
    lengthText_ = text;
    bits_ = bits == 0 ? std::nullopt : std::optional(bits);
}

void FunctionRequest::CheckThatLengthIsOfUse(const std::vector<std::string>& names) const {
    if (!bits_ || std::any_of(names.begin(), names.end(), IsOpenInLength))
        return;
    if (tool_.kind == ToolKind::fyrnsum)
        Fail("--length is only supported with --algorithm blake2b, sha2, sha3, shake128 or shake256");
    Fail("--length is only supported with --algorithm blake2b, sha2, or sha3");
}

std::vector<FunctionChoice> FunctionRequest::Family(std::string_view name, bool anyLength) const {
    std::vector<FunctionChoice> choices;
    for (const std::size_t bits : familyBits)
        if (bits == bits_ || (!bits_ && anyLength))
            choices.push_back(
                ChoiceOf(fyrn::Function::Named(std::string(name) + "-" + std::to_string(bits))));
    if (!choices.empty())
        return choices;
    if (!bits_)
        Fail("--algorithm=" + std::string(name) + " requires specifying --length 224, 256, 384, or 512");
    FailForLength(lengthText_, "digest length for '" + Upper(name) + "' must be 224, 256, 384, or 512");
}

FunctionChoice FunctionRequest::Sized(fyrn::Function function) const {
    constexpr std::size_t blake2bBits = 512;
    if (!bits_ || !TakesLength(function))
        return ChoiceOf(function);
    if (function.Tag() == "BLAKE2b" && *bits_ > blake2bBits)
        FailForLength(lengthText_, "maximum digest length for 'BLAKE2b' is 512 bits");
    return *ChoiceOf(function, *bits_);
}

std::vector<FunctionChoice> FunctionRequest::Choices(const std::string& name, bool anyLength) const {
    if (IsFamily(name))
        return Family(name, anyLength);
    const auto function = fyrn::Function::Named(name);
    FunctionChoice choice = Sized(function);
    if (anyLength && TakesLength(function))
        return {ChoiceOf(function)};
    if (tool_.kind == ToolKind::cksum && name == "crc32b")
        choice.legacy = Legacy::crc; // which cksum writes in the form of crc
    return {choice};
}

std::vector<FunctionChoice> FunctionRequest::Resolve(bool anyLength) const {
    const std::vector<std::string> names = IsGiven() ? names_ : std::vector{std::string(tool_.function)};
    std::vector<FunctionChoice> choices;
    CheckThatLengthIsOfUse(names);
    for (const std::string& name : names)
        for (const FunctionChoice& choice : Choices(name, anyLength))
            AddNew(choices, choice);
    return choices;
}

} // namespace sum
