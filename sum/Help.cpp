// SPDX-License-Identifier: MIT
#include "sum/Help.h"

#include "sum/OptionTable.h"

#include <algorithm>
#include <string_view>

namespace sum {

namespace {

constexpr std::size_t helpColumn = 27;
constexpr std::size_t lineWidth = 79;

// Moves to a column, on the next line if the text is there already. The text ends in a line that
// begins at `lineStart`.
void MoveTo(std::string& text, std::size_t lineStart, std::size_t column) {
    if (text.size() - lineStart < column)
        text.resize(lineStart + column, ' ');
    else
        text.append(1, '\n').append(column, ' ');
}

// Appends words in lines that begin at the column where the text ends.
void AppendWrapped(std::string& text, std::string_view words) {
    std::size_t column = helpColumn;
    while (!words.empty()) {
        const std::string_view word = words.substr(0, words.find(' '));
        words.remove_prefix(std::min(words.size(), word.size() + 1));
        if (column != helpColumn && column + 1 + word.size() > lineWidth) {
            text.append(1, '\n').append(helpColumn, ' ');
            column = helpColumn;
        }
        if (column != helpColumn) {
            text += ' ';
            ++column;
        }
        text += word;
        column += word.size();
    }
}

// "  -o, --output=FILE", and from a fixed column on what it does.
void AppendOption(std::string& text, const OptionRow& row) {
    const std::size_t start = text.size();
    text += row.letter != 0 ? std::string("  -") + row.letter : "    ";
    if (!row.name.empty())
        text.append(row.letter != 0 ? ", --" : "  --").append(row.name);
    if (IsOptional(row))
        text.append("[=").append(row.argument.substr(1));
    else if (!row.argument.empty())
        text.append("=").append(row.argument);
    MoveTo(text, start, helpColumn);
    AppendWrapped(text, row.help);
    text += '\n';
}

std::string UsageLines(const Tool& tool) {
    const std::string name(tool.name);
    std::string text = "Usage: " + name + " [OPTION]... [FILE]...\n";
    if (tool.kind == ToolKind::fyrnsum)
        text += "  or:  fyrnsum --recursive [OPTION]... [FILE|DIR]...\n"
                "  or:  fyrnsum --check [OPTION]... [LIST]...\n"
                "  or:  fyrnsum --audit=LIST [OPTION]... [FILE|DIR]...\n"
                "  or:  fyrnsum --update=LIST [OPTION]... [FILE|DIR]...\n";
    return text;
}

std::string Purpose(const Tool& tool) {
    const std::string given(tool.function);
    switch (tool.kind) {
    case ToolKind::fyrnsum:
        return "Print digests of files, by default SHA-256, or check lists of them.\n";
    case ToolKind::cksum:
        return "Print or check digests of files, by default the CRC of POSIX.\n";
    case ToolKind::sum:
        return "Print checksums and sizes in blocks of files.\n";
    default:
        return "Print or check " + std::string(fyrn::Function::Named(given).Tag()) + " digests of files.\n";
    }
}

std::string Padded(std::string text, std::size_t width) {
    text.resize(text.size() < width ? width : text.size(), ' ');
    return text;
}

} // namespace

std::string HelpText(const Tool& tool) {
    std::string text =
        UsageLines(tool) + Purpose(tool) + "With no FILE, or when FILE is -, read standard input.\n\n";
    for (const OptionRow& row : OptionTable())
        if (Has(row, tool) && !row.help.empty())
            AppendOption(text, row);
    text += "\nLong options may be shortened. The exit status is 0, or 1 upon any trouble.\n";
    if (tool.kind == ToolKind::fyrnsum)
        text += "fyrnsum(1) tells more; fyrnsum --list-functions names the hash functions.\n";
    return text;
}

std::string VersionText(const Tool& tool) {
    return std::string(tool.name) + " (fyrn) " + fyrn_version() + "\n";
}

std::string FunctionList() {
    std::string text;
    for (const fyrn::Function function : fyrn::Function::All())
        text += Padded(ChoiceOf(function).name, 14) + Padded(std::to_string(function.DigestSize() * 8), 6) +
                std::string(function.Name()) + '\n';
    return text;
}

std::string DebugText(const Options& options) {
    std::string text;
    for (const FunctionChoice& choice : options.functions)
        text += choice.tag + ": kernel " + std::string(choice.function.Kernel()) + '\n';
    return text + "jobs: " + std::to_string(options.jobs);
}

} // namespace sum
