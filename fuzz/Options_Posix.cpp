// SPDX-License-Identifier: MIT
// The option reader of fyrnsum, under every name of a tool: options and operands are told apart as getopt_long of the C
// library does it, and what is read fits together. Input: a byte for the tool, then the arguments, each ended by a zero.
#include "fuzz/FuzzInput.h"
#include "sum/Arguments.h"
#include "sum/CommandLine.h"

#include <getopt.h>

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace {

// What was found, up to the first mistake.
struct Found {
    std::string options;
    std::vector<std::string> operands; // when there was no mistake
    bool failed = false;
};

void Append(std::string& options, int id, const std::string& argument) {
    options += std::to_string(id) + '=' + argument + '\n';
}

Found ReadByArguments(const sum::Tool& tool, std::span<const std::string> arguments) {
    sum::Arguments reader(tool, arguments);
    Found found;
    try {
        while (const std::optional<sum::GivenOption> option = reader.Next())
            Append(found.options, static_cast<int>(option->id), option->argument);
        found.operands = reader.Operands();
    } catch (const sum::UsageError& error) {
        fuzz::Require(*error.what() != '\0', "a mistake is told");
        found.failed = true;
    }
    return found;
}

// The table of options in the form of the C library.
struct LibraryTable {
    std::string letters;
    std::vector<std::string> names; // which `options` point to
    std::vector<option> options;

    explicit LibraryTable(const sum::Tool& tool) {
        names.reserve(sum::OptionTable().size());
        for (const sum::OptionRow& row : sum::OptionTable()) {
            if (!sum::Has(row, tool))
                continue;
            const int takes = row.argument.empty()   ? no_argument
                              : sum::IsOptional(row) ? optional_argument
                                                     : required_argument;
            if (row.letter != 0)
                letters.append(1, row.letter).append(static_cast<std::size_t>(takes), ':');
            if (row.name.empty())
                continue;
            const std::string& name = names.emplace_back(row.name);
            options.push_back({name.c_str(), takes, nullptr, IdOffset + static_cast<int>(row.id)});
        }
        options.push_back({});
    }

    static constexpr int IdOffset = 256; // above all letters
};

int IdOf(const sum::Tool& tool, int value) {
    if (value >= LibraryTable::IdOffset)
        return value - LibraryTable::IdOffset;
    const auto rows = sum::OptionTable();
    const auto row = std::find_if(rows.begin(), rows.end(), [&](const sum::OptionRow& candidate) {
        return candidate.letter == value && sum::Has(candidate, tool);
    });
    fuzz::Require(row != rows.end(), "the library knows the letters of the table only");
    return static_cast<int>(row->id);
}

Found ReadByLibrary(const sum::Tool& tool, std::vector<std::string> arguments) {
    const LibraryTable table(tool);
    std::string program = "program";
    std::vector<char*> pointers = {program.data()};
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    const int count = static_cast<int>(pointers.size());
    pointers.push_back(nullptr);

    Found found;
    opterr = 0;
    optind = 0; // begins anew
    for (;;) {
        const int value =
            getopt_long(count, pointers.data(), table.letters.c_str(), table.options.data(), nullptr);
        if (value == -1)
            break;
        if (value == '?') {
            found.failed = true;
            return found;
        }
        Append(found.options, IdOf(tool, value), optarg != nullptr ? optarg : "");
    }
    found.operands.assign(pointers.begin() + optind, pointers.begin() + count);
    return found;
}

void CheckOptions(const sum::Options& options) {
    fuzz::Require(!options.functions.empty(), "there is a function");
    for (const sum::FunctionChoice& choice : options.functions)
        fuzz::Require(choice.digestSize > 0 && !choice.tag.empty() && !choice.name.empty(),
                      "a function is whole");
    fuzz::Require(options.jobs > 0, "there is a job");
    fuzz::Require(options.namesFrom || !options.operands.empty(), "there is something to read");
    fuzz::Require(!options.namesFrom || !options.namesGiven, "names come from one place");
    fuzz::Require(!options.check || !options.list, "a list is checked or compared with a tree");
    fuzz::Require(!options.update || options.list != "-", "what is written anew is a file");
    fuzz::Require(!options.check || (!options.zero && !options.output && options.rules.empty()),
                  "a check has no option that would do nothing");
    const bool raw = options.encoding == sum::Encoding::raw;
    fuzz::Require(!raw || (options.functions.size() == 1 && options.operands.size() <= 1),
                  "raw digests are those of one file");
    fuzz::Require(!options.star || options.form == sum::Form::untagged, "only untagged lines have a star");
    fuzz::Require(options.form != sum::Form::sfv || options.functions.size() == 1, "SFV has one function");
    const sum::CheckOptions& checking = options.checking;
    fuzz::Require(checking.quiet + checking.status + checking.warn <= 1, "the last of three counts");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    unsetenv("POSIXLY_CORRECT"); // with which the library would stop at the first operand
    fuzz::Input input(data, size);
    const auto tools = sum::Tools();
    const sum::Tool& tool = tools[input.Take<std::uint8_t>() % tools.size()];
    std::vector<std::string> arguments(1);
    for (const std::uint8_t byte : input.TakeRest()) {
        if (byte != 0)
            arguments.back() += static_cast<char>(byte);
        else
            arguments.emplace_back();
    }
    arguments.pop_back();
    for (std::string& argument : arguments)
        if (argument.starts_with("--exclude-")) // no file is read here
            argument = "--exclude";

    const Found found = ReadByArguments(tool, arguments);
    const Found expected = ReadByLibrary(tool, arguments);
    fuzz::Require(found.failed == expected.failed, "a mistake is seen by both");
    fuzz::RequireEqual(found.options, expected.options, "options");
    fuzz::Require(found.operands == expected.operands, "operands");
    try {
        CheckOptions(sum::ReadCommandLine(tool, arguments));
    } catch (const sum::UsageError&) {
        return 0;
    } catch (const sum::Instead&) {
        return 0;
    }
    fuzz::Require(!found.failed, "no command line with a mistake is read");
    return 0;
}
