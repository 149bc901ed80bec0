// SPDX-License-Identifier: MIT
// What the comparison of a list with a tree prints.
#pragma once

#include "sum/Findings.h"
#include "sum/Options.h"
#include "sum/Output.h"
#include "sum/TreeList.h"

#include <string>

namespace sum {

class TreeReport {
  public:
    // Options, list and reasons are not copied.
    TreeReport(const Options& options, const TreeList& list, const Reasons& reasons)
        : options_(options), list_(list), reasons_(reasons) {}

    // "name: CHANGED", or a JSON object with the same words, and a line end.
    std::string Line(const Finding& finding) const;

    // "3 OK; 1 NEW; 2 RENAMED"
    static std::string Summary(const Totals& totals);

  private:
    Name NameOf(const Finding& finding) const;
    std::string PlainLine(const Finding& finding, const Name& name) const;
    std::string JsonLine(const Finding& finding, const Name& name) const;

    const Options& options_;
    const TreeList& list_;
    const Reasons& reasons_;
};

} // namespace sum
