// SPDX-License-Identifier: MIT
// Every option of every tool, from which the command line is read and the help is written.
#pragma once

#include "sum/Tool.h"

#include <span>
#include <string_view>

namespace sum {

enum class OptionId {
    acceptChanges,
    algorithm,
    audit,
    baseName,
    base64,
    binary,
    bsd,
    check,
    debug,
    directory,
    exclude,
    excludeFrom,
    files0From,
    filesFrom,
    follow,
    format,
    help,
    ignoreMissing,
    include,
    jobs,
    json,
    length,
    listFunctions,
    noProgress,
    oneFileSystem,
    output,
    progress,
    quick,
    quiet,
    raw,
    recursive,
    resume,
    status,
    strict,
    sysv,
    tag,
    text,
    untagged,
    update,
    verbose,
    version,
    warn,
    zero
};

struct OptionRow {
    OptionId id;
    char letter;               // 0: none
    std::string_view name;     // empty: only the letter
    std::string_view argument; // what help calls it; empty: it takes none; in brackets: it may
                               // take one
    unsigned tools;            // ToolKind bits
    std::string_view help;     // a sentence without a stop; empty: not shown, another spelling
};

// In the order of the help, which is also that of the tools' own help.
std::span<const OptionRow> OptionTable();

// Whether the option takes an argument only if one follows its '='.
inline bool IsOptional(const OptionRow& row) {
    return row.argument.starts_with('[');
}

inline bool Has(const OptionRow& row, const Tool& tool) {
    return (row.tools & static_cast<unsigned>(tool.kind)) != 0;
}

} // namespace sum
