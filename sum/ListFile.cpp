// SPDX-License-Identifier: MIT
#include "sum/ListFile.h"

#include "sum/ListedName.h"

namespace sum {

namespace {

DecimalLines DecimalsOf(const Options& options) {
    if (!options.functionsGiven)
        return DecimalLines::crc;
    for (const FunctionChoice& choice : options.functions) {
        if (choice.legacy == Legacy::crc)
            return DecimalLines::crc;
        if (choice.legacy != Legacy::none)
            return choice.legacy == Legacy::bsd ? DecimalLines::bsd : DecimalLines::sysv;
    }
    return DecimalLines::none;
}

LineRules RulesOf(const Options& options, const Name& list, const ListFunctions& functions) {
    LineRules rules;
    rules.sizes = functions.Sizes();
    rules.decimals = DecimalsOf(options);
    rules.gnuOnly = options.checking.gnuOnly;
    rules.untagged = options.functionsGiven || !options.checking.gnuOnly;
    rules.percent = !options.checking.gnuOnly && IsBagItManifest(list);
    return rules;
}

} // namespace

GivenFunctions FunctionsGivenBy(const Options& options) {
    GivenFunctions given;
    given.gnuOnly = options.checking.gnuOnly;
    if (options.functionsGiven)
        given.choices = options.functions;
    return given;
}

ListFile::ListFile(const Options& options, const Name& list, const ListFunctions& functions)
    : options_(options), list_(list), rules_(RulesOf(options, list, functions)),
      reader_([this](std::span<char> space) { return Read(space); }), lines_(reader_, rules_) {}

int ListFile::Open() {
    int error = 0;
    file_ = list_ == "-" ? platform::ByteFile::StandardInput() : platform::ByteFile::Open(list_, error);
    return error;
}

bool ListFile::IsStored() const {
    std::int64_t size;
    return list_ != "-" && file_.Look(size) == platform::ByteFile::Kind::regular;
}

std::size_t ListFile::Read(std::span<char> space) {
    int error = 0;
    const std::ptrdiff_t count = file_.Read(space.data(), space.size(), error);
    if (count < 0)
        throw ListError{error};
    return static_cast<std::size_t>(count);
}

LineKind ListFile::Next(ListLine& line) {
    const LineKind kind = lines_.Next(line);
    if (kind != LineKind::lone)
        return kind;
    line.name = SubjectOf(list_, options_);
    return line.name.empty() ? LineKind::malformed : LineKind::entry;
}

} // namespace sum
