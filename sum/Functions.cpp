// SPDX-License-Identifier: MIT
#include "sum/Functions.h"

#include <algorithm>
#include <charconv>
#include <new>
#include <stdexcept>

namespace sum {

namespace {

// The functions that lists have most often, one for each length.
constexpr std::string_view usual[] = {"CRC-32",   "XXH3-64",  "MD5",      "SHA1",
                                      "SHA2-224", "SHA2-256", "SHA2-384", "SHA2-512"};

// The functions whose digests are numbers that other tools write in either order of their bytes.
constexpr std::string_view eitherOrder[] = {"XXH32", "XXH64", "XXH3", "XXH128"};

constexpr std::string_view anyLength[] = {"BLAKE2b", "SHAKE128", "SHAKE256"};

// Lower case, and without the slash, because names of files are made of it.
std::string PlainName(std::string_view tag) {
    std::string name(tag);
    for (char& c : name)
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c == '/' ? '-' : c;
    return name;
}

Legacy LegacyOf(fyrn::Function function) {
    if (function == fyrn::Function::Find("crc"))
        return Legacy::crc;
    if (function == fyrn::Function::Find("bsd"))
        return Legacy::bsd;
    return function == fyrn::Function::Find("sysv") ? Legacy::sysv : Legacy::none;
}

bool HasSize(fyrn::Function function, std::size_t digestSize) {
    try {
        const fyrn::Hasher hasher(function, digestSize);
        return true;
    } catch (const std::invalid_argument&) {
        return false;
    }
}

FunctionChoice Sized(fyrn::Function function, std::size_t digestSize) {
    FunctionChoice choice = ChoiceOf(function);
    if (digestSize == choice.digestSize)
        return choice;
    choice.digestSize = digestSize;
    choice.tag += "-" + std::to_string(digestSize * 8);
    choice.name = PlainName(choice.tag);
    return choice;
}

std::optional<std::size_t> Number(std::string_view digits) {
    std::size_t value = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value);
    return error == std::errc() && stop == end ? std::optional(value) : std::nullopt;
}

// "BLAKE2b-200" and the like, which have no row of their own.
std::optional<FunctionChoice> ChoiceOfSizedTag(std::string_view tag) {
    const std::size_t dash = tag.rfind('-');
    if (dash == std::string_view::npos)
        return std::nullopt;
    const auto function = fyrn::Function::Find(tag.substr(0, dash));
    const auto bits = Number(tag.substr(dash + 1));
    return function && bits && TakesLength(*function) ? ChoiceOf(*function, *bits) : std::nullopt;
}

FunctionChoice LowestFirst(FunctionChoice choice) {
    choice.lowestFirst = true;
    choice.tag += "_LE";
    choice.name = PlainName(choice.tag);
    return choice;
}

// "XXH64_LE" and the like.
std::optional<FunctionChoice> ChoiceOfTurnedTag(std::string_view tag) {
    for (const std::string_view name : eitherOrder) {
        FunctionChoice turned = LowestFirst(ChoiceOf(fyrn::Function::Named(name)));
        if (turned.tag == tag)
            return turned;
    }
    return std::nullopt;
}

void AddNew(std::vector<FunctionChoice>& choices, FunctionChoice choice) {
    if (std::find(choices.begin(), choices.end(), choice) == choices.end())
        choices.push_back(std::move(choice));
}

} // namespace

std::vector<std::vector<std::byte>> FinishAll(std::span<const FunctionChoice> choices,
                                              std::span<fyrn::Hasher> hashers) {
    std::vector<std::vector<std::byte>> digests;
    digests.reserve(hashers.size());
    for (std::size_t i = 0; i < hashers.size(); ++i) {
        digests.push_back(hashers[i].Finish());
        if (choices[i].lowestFirst)
            std::reverse(digests[i].begin(), digests[i].end());
    }
    return digests;
}

bool TakesLength(fyrn::Function function) {
    return std::find(std::begin(anyLength), std::end(anyLength), function.Tag()) != std::end(anyLength);
}

FunctionChoice ChoiceOf(fyrn::Function function) {
    return {function, function.DigestSize(), std::string(function.Tag()), PlainName(function.Tag()),
            LegacyOf(function)};
}

std::optional<FunctionChoice> ChoiceOf(fyrn::Function function, std::size_t bits) {
    if (bits % 8 != 0 || bits == 0)
        return std::nullopt;
    // Where a length has a row of its own, as those of BLAKE2b have, both spellings mean that row.
    const auto own = fyrn::Function::Find(std::string(function.Tag()) + "-" + std::to_string(bits));
    if (own && TakesLength(function) && own->DigestSize() == bits / 8)
        return ChoiceOf(*own);
    return HasSize(function, bits / 8) ? std::optional(Sized(function, bits / 8)) : std::nullopt;
}

std::optional<FunctionChoice> ChoiceOfTag(std::string_view tag, std::size_t digestBytes) {
    const auto function = fyrn::Function::Find(tag);
    if (!function) {
        auto choice = ChoiceOfSizedTag(tag);
        if (!choice)
            choice = ChoiceOfTurnedTag(tag);
        return choice && choice->digestSize == digestBytes ? choice : std::nullopt;
    }
    if (function->DigestSize() == digestBytes)
        return ChoiceOf(*function);
    // Other tools write SHAKE128 whatever the length is; BLAKE2b alone is that of 512 bits
    // everywhere.
    const bool lengthUntold = TakesLength(*function) && function->Tag() != "BLAKE2b";
    return lengthUntold ? ChoiceOf(*function, digestBytes * 8) : std::nullopt;
}

std::vector<FunctionChoice> ChoicesOfSize(std::size_t digestBytes) {
    std::vector<FunctionChoice> choices;
    for (const std::string_view name : usual)
        if (const auto function = fyrn::Function::Named(name); function.DigestSize() == digestBytes)
            choices.push_back(ChoiceOf(function));
    for (const fyrn::Function function : fyrn::Function::All())
        if (function.DigestSize() == digestBytes && LegacyOf(function) == Legacy::none)
            AddNew(choices, ChoiceOf(function));
    for (const std::string_view name : anyLength)
        if (const auto choice = ChoiceOf(fyrn::Function::Named(name), digestBytes * 8))
            AddNew(choices, *choice);
    for (const std::string_view name : eitherOrder)
        if (const auto function = fyrn::Function::Named(name); function.DigestSize() == digestBytes)
            choices.push_back(LowestFirst(ChoiceOf(function)));
    return choices;
}

} // namespace sum
