// SPDX-License-Identifier: MIT
#include "sum/PathRules.h"

#include "platform/Tree.h"
#include "sum/CommandLine.h"
#include "sum/Glob.h"
#include "sum/Messages.h"
#include "sum/NameFile.h"

namespace sum {

namespace {

bool Matches(const PathRule& rule, std::string_view path, std::size_t below) {
    if (rule.glob.find('/') == std::string::npos)
        return MatchesGlob(rule.glob, path.substr(platform::LengthOfDirectory(path)));
    return MatchesGlob(rule.glob, path) || MatchesGlob(rule.glob, path.substr(below));
}

const PathRule* LastMatch(const std::vector<PathRule>& rules, std::string_view path, std::size_t below) {
    for (auto rule = rules.rbegin(); rule != rules.rend(); ++rule)
        if (Matches(*rule, path, below))
            return &*rule;
    return nullptr;
}

} // namespace

void AppendExclusions(const Name& file, std::vector<PathRule>& rules) {
    NameFile lines(file, '\n');
    while (const auto line = lines.Next())
        if (!line->empty())
            rules.push_back({*line, false});
    if (lines.Error() != 0)
        throw UsageError(Quoted(file) + ": " + ErrorText(lines.Error()), UsageError::Advice::none);
}

bool Counts(const std::vector<PathRule>& rules, std::string_view path, std::size_t below) {
    const PathRule* const match = LastMatch(rules, path, below);
    if (match != nullptr)
        return match->include;
    return rules.empty() || !rules.front().include;
}

bool IsEntered(const std::vector<PathRule>& rules, std::string_view path, std::size_t below) {
    const PathRule* const match = LastMatch(rules, path, below);
    return match == nullptr || match->include;
}

} // namespace sum
