// SPDX-License-Identifier: MIT
#include "sum/Guess.h"

#include <algorithm>
#include <utility>

namespace sum {

namespace {

// A shorter run of hexadecimal digits without a tag is more likely a word.
constexpr std::size_t shortestUntagged = 4;

std::string Lower(std::string_view text) {
    std::string lower(text);
    for (char& character : lower)
        if (character >= 'A' && character <= 'Z')
            character = static_cast<char>(character | 0x20);
    return lower;
}

// "sha256sums" and "sha256sum" are of "sha256"; "sums" alone is of nothing.
std::string_view WithoutSum(std::string_view word) {
    for (const std::string_view ending : {"checksums", "checksum", "sums", "sum"})
        if (word.ends_with(ending))
            return word.substr(0, word.size() - ending.size());
    return word;
}

// Lists have few kinds of lines. One that has many is looked at anew.
constexpr std::size_t maxRemembered = 256;

// Families whose members the length of a digest tells.
std::optional<FunctionChoice> OfFamily(std::string_view name, std::size_t bytes) {
    const std::string bits = std::to_string(bytes * 8);
    if (name == "sha2")
        return ChoiceOfTag("SHA" + bits, bytes);
    if (name == "sha3")
        return ChoiceOfTag("SHA3-" + bits, bytes);
    if (name == "sha")
        return ChoiceOfTag(bytes == 20 ? "SHA1" : "SHA" + bits, bytes);
    const auto function = fyrn::Function::Find(name == "b2" ? "blake2b" : name);
    if (!function || ChoiceOf(*function).legacy != Legacy::none)
        return std::nullopt;
    return TakesLength(*function) || function->DigestSize() == bytes ? ChoiceOf(*function, bytes * 8)
                                                                     : std::nullopt;
}

bool IsFamily(std::string_view name) {
    return name == "sha2" || name == "sha3" || name == "sha" || name == "b2" || fyrn::Function::Find(name);
}

// Whether the name alone, or without a length at its end, is that of a function.
bool IsKnownTag(std::string_view tag) {
    return fyrn::Function::Find(tag) || fyrn::Function::Find(tag.substr(0, tag.rfind('-')));
}

// What GNU's tools write and read: their own tag, and for SHA-2 that of OpenSSL.
bool IsGnuTag(std::string_view tag, const FunctionChoice& choice) {
    return tag == choice.tag ||
           (tag.starts_with("SHA2-") && choice.tag == "SHA" + std::string(tag.substr(5)));
}

FunctionSet SetOf(std::vector<FunctionChoice> choices) {
    return std::make_shared<const std::vector<FunctionChoice>>(std::move(choices));
}

} // namespace

std::string FunctionInName(const Name& list) {
    const std::string name = Lower(std::string_view(list).substr(list.find_last_of("/\\") + 1));
    constexpr std::string_view separators = ".-_ ";
    std::vector<std::size_t> starts = {0};
    std::vector<std::size_t> ends;
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (separators.find(name[i]) == std::string_view::npos)
            continue;
        ends.push_back(i);
        starts.push_back(i + 1);
    }
    ends.push_back(name.size());

    std::string_view found; // the longest, of these the last
    for (std::size_t first = 0; first < starts.size(); ++first) {
        for (std::size_t last = first; last < std::min(ends.size(), first + 4); ++last) {
            const auto words = std::string_view(name).substr(starts[first], ends[last] - starts[first]);
            const std::string_view word = WithoutSum(words);
            if (!word.empty() && word.size() >= found.size() && IsFamily(word))
                found = word;
        }
    }
    return std::string(found);
}

ListFunctions::ListFunctions(const GivenFunctions& given, const Name& list)
    : given_(given), named_(given.choices.empty() ? FunctionInName(list) : std::string()),
      sizes_(FindSizes()) {}

DigestSizes ListFunctions::FindSizes() const {
    DigestSizes sizes;
    const auto add = [&sizes](std::size_t bytes) {
        if (bytes <= DigestSizes::longest)
            sizes.each.set(bytes);
    };
    for (const FunctionChoice& choice : given_.choices) {
        add(choice.digestSize);
        sizes.anyLength = sizes.anyLength || TakesLength(choice.function);
    }
    if (!given_.choices.empty())
        return sizes;
    for (const fyrn::Function function : fyrn::Function::All())
        if (function.DigestSize() >= shortestUntagged)
            add(function.DigestSize());
    for (std::size_t bytes = 1; !named_.empty() && bytes <= DigestSizes::longest; ++bytes)
        if (OfFamily(named_, bytes))
            add(bytes);
    return sizes;
}

LineFunctions ListFunctions::Of(ListLine& line) {
    const std::string look = LookOf(line);
    auto known = remembered_.find(look);
    if (known == remembered_.end()) {
        if (remembered_.size() == maxRemembered)
            remembered_.clear();
        known = remembered_.emplace(look, FindAll(line)).first;
    }
    const std::vector<std::size_t>& kept = known->second.kept;
    for (std::size_t i = 0; i < kept.size(); ++i)
        if (kept[i] != i)
            line.digests[i] = std::move(line.digests[kept[i]]);
    line.digests.resize(kept.size());
    return known->second.found;
}

std::string ListFunctions::LookOf(const ListLine& line) {
    std::string look;
    for (const ListDigest& digest : line.digests) {
        const std::optional<std::size_t> hexBytes = HexBytes(digest.text);
        look += digest.tag;
        look += digest.decimal ? '#' : hexBytes ? ':' : '=';
        look += std::to_string(hexBytes ? *hexBytes : Base64Bytes(digest.text).value_or(0));
        look += ' ';
    }
    return look;
}

ListFunctions::Remembered ListFunctions::FindAll(const ListLine& line) {
    Remembered result;
    LineFunctions& all = result.found;
    all.kind = LineFunctions::Kind::certain;
    std::vector<FunctionChoice> choices;
    for (std::size_t i = 0; i < line.digests.size(); ++i) {
        const Found found = OfDigest(line.digests[i]);
        if (found.choice) {
            if (found.kind == LineFunctions::Kind::guessed)
                all.kind = found.kind;
            choices.push_back(*found.choice);
            result.kept.push_back(i);
        } else if (found.kind == LineFunctions::Kind::unknown) {
            all.unknownTag = line.digests[i].tag;
        }
    }
    if (!line.digests.empty() && choices.empty())
        all.kind = all.unknownTag.empty() ? LineFunctions::Kind::malformed : LineFunctions::Kind::unknown;
    else
        all.functions = SetOf(std::move(choices));
    return result;
}

ListFunctions::Found ListFunctions::OfDigest(const ListDigest& digest) {
    if (digest.decimal)
        return OfDecimal();
    return digest.tag.empty() ? OfUntagged(digest) : OfTag(digest);
}

ListFunctions::Found ListFunctions::OfTag(const ListDigest& digest) const {
    for (const auto& bytes : {HexBytes(digest.text), Base64Bytes(digest.text)}) {
        std::optional<FunctionChoice> choice = bytes ? ChoiceOfTag(digest.tag, *bytes) : std::nullopt;
        if (!choice || choice->legacy != Legacy::none || (given_.gnuOnly && !IsGnuTag(digest.tag, *choice)))
            continue;
        if (given_.choices.empty() || IsGiven(*choice))
            return {LineFunctions::Kind::certain, std::move(choice)};
    }
    const bool unknown = !given_.gnuOnly && !IsKnownTag(digest.tag);
    return {unknown ? LineFunctions::Kind::unknown : LineFunctions::Kind::malformed, {}};
}

ListFunctions::Found ListFunctions::OfDecimal() const {
    for (const FunctionChoice& choice : given_.choices)
        if (choice.legacy != Legacy::none)
            return {LineFunctions::Kind::certain, choice};
    if (const auto crc = fyrn::Function::Find("crc"); crc && given_.choices.empty())
        return {LineFunctions::Kind::certain, ChoiceOf(*crc)};
    return {};
}

ListFunctions::Found ListFunctions::OfUntagged(const ListDigest& digest) {
    const std::vector<FunctionChoice>& candidates = Candidates(digest.text);
    if (candidates.empty())
        return {};
    const bool certain = decided_.has_value() || candidates.size() == 1;
    return {certain ? LineFunctions::Kind::certain : LineFunctions::Kind::guessed, candidates[0]};
}

const std::vector<FunctionChoice>& ListFunctions::Candidates(std::string_view digest) {
    static const std::vector<FunctionChoice> none;
    for (const auto& bytes : {HexBytes(digest), Base64Bytes(digest)}) {
        if (!bytes || !sizes_.Has(*bytes))
            continue;
        auto known = candidates_.find(*bytes);
        if (known == candidates_.end()) {
            if (candidates_.size() == maxRemembered)
                candidates_.clear();
            known = candidates_.emplace(*bytes, FindCandidates(*bytes)).first;
        }
        if (!known->second.empty())
            return known->second;
    }
    return none;
}

std::vector<FunctionChoice> ListFunctions::FindCandidates(std::size_t bytes) const {
    if (decided_ && decided_->digestSize == bytes)
        return {*decided_};
    std::vector<FunctionChoice> candidates;
    const auto add = [&candidates](std::optional<FunctionChoice> choice) {
        if (choice && std::ranges::find(candidates, *choice) == candidates.end())
            candidates.push_back(std::move(*choice));
    };
    for (const FunctionChoice& choice : given_.choices) {
        if (choice.digestSize == bytes)
            add(choice);
        else if (TakesLength(choice.function))
            add(ChoiceOf(choice.function, bytes * 8));
    }
    if (!given_.choices.empty())
        return candidates;
    if (!named_.empty())
        add(OfFamily(named_, bytes));
    for (FunctionChoice& choice : ChoicesOfSize(bytes))
        add(std::move(choice));
    return candidates;
}

bool ListFunctions::IsGiven(const FunctionChoice& choice) const {
    return std::ranges::any_of(given_.choices, [&](const FunctionChoice& given) {
        return given == choice ||
               (TakesLength(given.function) && ChoiceOf(given.function, choice.digestSize * 8) == choice);
    });
}

void ListFunctions::Decide(const FunctionChoice& choice) {
    decided_ = choice;
    candidates_.clear();
    remembered_.clear();
}

Guess GuessFunction(FileHasher& hasher, const Name& file, std::string_view digest,
                    const std::vector<FunctionChoice>& candidates) {
    // Standard input can be read only once.
    const std::size_t atFirst = file == "-" ? candidates.size() : 1;
    Guess guess;
    const auto readWith = [&](std::size_t begin, std::size_t end) {
        const auto place = [&](std::size_t i) { return candidates.begin() + static_cast<std::ptrdiff_t>(i); };
        FileResult result = hasher.Hash(file, SetOf({place(begin), place(end)}));
        for (std::size_t i = 0; i < result.digests.size() && !guess.match; ++i) {
            if (!IsDigest(digest, result.digests[i]))
                continue;
            guess.match = candidates[begin + i];
            guess.isFirst = begin + i == 0;
        }
        return result;
    };
    guess.result = readWith(0, atFirst);
    if (guess.result.error == 0 && !guess.match && atFirst < candidates.size())
        readWith(atFirst, candidates.size());
    guess.result.digests.clear();
    return guess;
}

} // namespace sum
