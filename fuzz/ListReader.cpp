// SPDX-License-Identifier: MIT
// Checksum lists: whatever their bytes, they are read alike in one piece and in many, each line is
// told at most once and in order, and what is told of it fits it.
#include "fuzz/FuzzInput.h"
#include "sum/Guess.h"
#include "sum/ListLines.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace {

// Hands the list out in pieces.
sum::ListReader::Source From(std::string_view list, std::size_t piece) {
    return [list, piece](std::span<char> space) mutable {
        const std::size_t count = std::min({piece, space.size(), list.size()});
        std::copy_n(list.begin(), count, space.begin());
        list.remove_prefix(count);
        return count;
    };
}

std::string Records(std::string_view list, std::size_t piece) {
    sum::ListReader reader(From(list, piece));
    sum::ListRecord record;
    std::string records;
    for (std::uint64_t number = 1; reader.Next(record); ++number) {
        fuzz::Require(record.number == number, "records are counted");
        const bool ends = record.text.find(reader.EndsInNul() ? '\0' : '\n') != std::string_view::npos;
        fuzz::Require(!ends, "a record holds no end of one");
        records += record.broken ? "!" : "[" + std::string(record.text) + "]";
    }
    return records;
}

void CheckDigest(const sum::ListDigest& digest) {
    fuzz::Require(!digest.text.empty(), "a digest is there");
    const bool isText = sum::HexBytes(digest.text) || sum::Base64Bytes(digest.text);
    const bool isNumber = digest.text.find_first_not_of("0123456789") == std::string::npos;
    fuzz::Require(digest.decimal ? isNumber : isText, "a digest is what it is read as");
}

void CheckLine(const sum::ListLine& line, std::string_view list) {
    fuzz::Require(line.name.find('\0') == sum::Name::npos, "a name has no NUL");
    fuzz::Require(line.name.size() <= 2 * list.size(), "a name comes from the list");
    fuzz::Require(!line.digests.empty() || line.size.has_value(), "an entry asks something of its file");
    for (const sum::ListDigest& digest : line.digests)
        CheckDigest(digest);
}

void CheckFunctions(sum::ListFunctions& functions, sum::ListLine& line) {
    const std::size_t digests = line.digests.size();
    const sum::LineFunctions found = functions.Of(line);
    if (!found.functions)
        return;
    fuzz::Require(found.functions->size() == line.digests.size() && line.digests.size() <= digests,
                  "each digest that is checked has its function");
    fuzz::Require(digests == 0 || !line.digests.empty(), "a digest is checked where the line has one");
    for (std::size_t i = 0; i < line.digests.size(); ++i) {
        const std::vector<std::byte> zeros((*found.functions)[i].digestSize);
        const std::string& text = line.digests[i].text;
        if (!line.digests[i].decimal)
            fuzz::Require(sum::HexBytes(text) == zeros.size() || sum::Base64Bytes(text) == zeros.size(),
                          "a digest has the length of its function's");
        sum::IsDigest(text, zeros);
    }
}

// The lines in brackets by their numbers, so that two readings can be compared.
std::string Lines(std::string_view list, std::size_t piece, const sum::GivenFunctions& given, bool gnuOnly) {
    sum::ListReader reader(From(list, piece));
    sum::ListFunctions functions(given, "list");
    sum::LineRules rules;
    rules.sizes = functions.Sizes();
    rules.gnuOnly = gnuOnly;
    sum::ListLines lines(reader, rules);
    sum::ListLine line;
    std::string told;
    std::size_t count = 0;
    for (sum::LineKind kind = lines.Next(line); kind != sum::LineKind::end; kind = lines.Next(line)) {
        fuzz::Require(++count <= list.size(), "no line is told more than once");
        told +=
            std::to_string(line.number) + (kind == sum::LineKind::malformed ? "!" : "[" + line.name + "]");
        if (kind == sum::LineKind::malformed)
            continue;
        if (kind == sum::LineKind::entry)
            CheckLine(line, list);
        CheckFunctions(functions, line);
    }
    return told;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const auto options = input.Take<std::uint8_t>();
    const std::size_t piece = 1 + options % 16;
    const std::span<const std::uint8_t> rest = input.TakeRest();
    const std::string_view list(reinterpret_cast<const char*>(rest.data()), rest.size());

    static const std::vector<sum::FunctionChoice> all;
    static const std::vector<sum::FunctionChoice> some = {sum::ChoiceOf(fyrn::Function::Named("sha256")),
                                                          sum::ChoiceOf(fyrn::Function::Named("blake2b"))};
    const bool gnuOnly = (options & 16) != 0;
    const sum::GivenFunctions given{(options & 32) != 0 ? some : all, gnuOnly};
    fuzz::RequireEqual(Records(list, piece), Records(list, list.size()), "records in pieces");
    fuzz::RequireEqual(Lines(list, piece, given, gnuOnly), Lines(list, list.size(), given, gnuOnly),
                       "lines in pieces");
    return 0;
}
