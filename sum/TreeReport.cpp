// SPDX-License-Identifier: MIT
#include "sum/TreeReport.h"

#include "sum/Escape.h"
#include "sum/Messages.h"

namespace sum {

namespace {

std::uint32_t ReasonOf(const Finding& finding) {
    return finding.entry != nullptr ? finding.entry->reason : finding.file->reason;
}

} // namespace

Name TreeReport::NameOf(const Finding& finding) const {
    return finding.entry != nullptr ? Name(finding.entry->name) : list_.Spelled(finding.key);
}

std::string TreeReport::Line(const Finding& finding) const {
    const Name name = NameOf(finding);
    return options_.form == Form::json ? JsonLine(finding, name) : PlainLine(finding, name);
}

std::string TreeReport::PlainLine(const Finding& finding, const Name& name) const {
    std::string line = Quoted(name) + ": ";
    line += TextOf(finding.outcome);
    if (finding.outcome == Outcome::renamed)
        line += " from " + Quoted(finding.file->origin->name);
    else if (finding.outcome == Outcome::copy)
        line += " of " + Quoted(finding.file->origin->name);
    else if (finding.outcome == Outcome::unread)
        line += ": " + reasons_[ReasonOf(finding)];
    return line + '\n';
}

std::string TreeReport::JsonLine(const Finding& finding, const Name& name) const {
    std::string line = '{' + JsonPath(name) + ",\"result\":\"";
    line.append(TextOf(finding.outcome)).append("\"");
    if (finding.outcome == Outcome::renamed)
        line += ',' + JsonName("from", finding.file->origin->name);
    else if (finding.outcome == Outcome::copy)
        line += ',' + JsonName("of", finding.file->origin->name);
    else if (finding.outcome == Outcome::unread)
        line += ",\"reason\":\"" + JsonEscaped(reasons_[ReasonOf(finding)]) + '"';
    return line + "}\n";
}

std::string TreeReport::Summary(const Totals& totals) {
    std::string text = std::to_string(totals[0]) + ' ' + std::string(TextOf(Outcome::same));
    for (std::size_t i = 1; i < totals.size(); ++i)
        if (totals[i] != 0)
            text += "; " + std::to_string(totals[i]) + ' ' + std::string(TextOf(static_cast<Outcome>(i)));
    return text;
}

} // namespace sum
