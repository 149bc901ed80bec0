// SPDX-License-Identifier: MIT
#include "sum/Arguments.h"

#include "sum/CommandLine.h"

namespace sum {

namespace {

std::string InQuotes(std::string_view text) {
    return "'" + std::string(text) + "'";
}

} // namespace

std::string Arguments::Take() {
    const std::string& taken = rest_.front();
    rest_ = rest_.subspan(1);
    return taken;
}

std::optional<GivenOption> Arguments::Next() {
    if (!letters_.empty())
        return Short();
    while (!rest_.empty()) {
        const std::string& argument = rest_.front();
        rest_ = rest_.subspan(1);
        if (argument == "--") {
            operands_.insert(operands_.end(), rest_.begin(), rest_.end());
            rest_ = {};
        } else if (argument.starts_with("--")) {
            return Long(std::string_view(argument).substr(2));
        } else if (argument.size() > 1 && argument[0] == '-') {
            letters_ = std::string_view(argument).substr(1);
            return Short();
        } else {
            operands_.push_back(argument);
        }
    }
    return std::nullopt;
}

// An exact name, or the only option that begins so. Spellings of one option do not compete.
const OptionRow& Arguments::FindLong(std::string_view name, std::string_view text) const {
    const OptionRow* found = nullptr;
    bool ambiguous = false;
    std::string possibilities;
    for (const OptionRow& row : OptionTable()) {
        if (!Has(row, tool_) || row.name.empty() || !row.name.starts_with(name))
            continue;
        if (row.name == name)
            return row;
        ambiguous = ambiguous || (found != nullptr && found->id != row.id);
        found = found == nullptr ? &row : found;
        possibilities += " '--" + std::string(row.name) + "'";
    }
    if (found == nullptr)
        throw UsageError("unrecognized option " + InQuotes("--" + std::string(text)));
    if (ambiguous)
        throw UsageError("option " + InQuotes("--" + std::string(text)) +
                         " is ambiguous; possibilities:" + possibilities);
    return *found;
}

GivenOption Arguments::Long(std::string_view text) {
    const std::size_t equals = text.find('=');
    const OptionRow& row = FindLong(text.substr(0, equals), text);
    const bool given = equals != std::string_view::npos;
    const std::string name = InQuotes("--" + std::string(row.name));
    if (row.argument.empty() && given)
        throw UsageError("option " + name + " doesn't allow an argument");
    if (row.argument.empty())
        return {row.id, {}};
    if (given)
        return {row.id, std::string(text.substr(equals + 1))};
    if (IsOptional(row))
        return {row.id, {}};
    if (rest_.empty())
        throw UsageError("option " + name + " requires an argument");
    return {row.id, Take()};
}

GivenOption Arguments::Short() {
    const char letter = letters_.front();
    letters_.remove_prefix(1);
    for (const OptionRow& row : OptionTable()) {
        if (row.letter != letter || letter == '\0' || !Has(row, tool_))
            continue;
        if (row.argument.empty())
            return {row.id, {}};
        if (!letters_.empty())
            return {row.id, std::string(std::exchange(letters_, {}))};
        if (rest_.empty())
            throw UsageError("option requires an argument -- " + InQuotes(std::string_view(&letter, 1)));
        return {row.id, Take()};
    }
    throw UsageError("invalid option -- " + InQuotes(std::string_view(&letter, 1)));
}

} // namespace sum
