// SPDX-License-Identifier: MIT
#include "sum/CheckReport.h"

#include "sum/Escape.h"
#include "sum/Messages.h"
#include "sum/Output.h"

#include <cerrno>

namespace sum {

namespace {

// A list may make up as many names of functions as it likes.
constexpr std::size_t maxUnknownTags = 20;

// What the lines of the list are called. Where the length of a digest may differ from line to line,
// it is no part of that.
std::string LineTerm(const Options& options) {
    if (!options.functionsGiven)
        return "checksum line";
    const FunctionChoice& choice = options.functions[0];
    const std::string tag = choice.tag.starts_with("BLAKE2b") ? "BLAKE2b" : choice.tag;
    return tag + " checksum line";
}

// "1 line is improperly formatted", "2 lines are improperly formatted"
void Warn(std::uint64_t count, std::string_view one, std::string_view more) {
    if (count > 0)
        Say("WARNING: " + std::to_string(count) + " " + std::string(count == 1 ? one : more));
}

} // namespace

CheckReport::CheckReport(const Options& options, const Name& list)
    : options_(options), list_(Quoted(list == "-" ? "standard input" : list)), lines_(LineTerm(options)) {}

void CheckReport::File(const Name& name, int error, bool holds) {
    if (error == ENOENT && options_.checking.ignoreMissing) {
        ++totals_.missing;
        return;
    }
    if (error != 0) {
        SayError(name, error);
        Unread(name);
        return;
    }
    ++(holds ? totals_.good : totals_.different);
    if (!holds)
        Print(name, "FAILED");
    else if (!options_.checking.quiet)
        Print(name, "OK");
}

void CheckReport::ListItself(const Name& name) {
    Say(Quoted(name) + ": standard input is the list");
    Unread(name);
}

void CheckReport::Unread(const Name& name) {
    ++totals_.unread;
    Print(name, "FAILED open or read");
}

void CheckReport::Print(const Name& name, std::string_view result) {
    if (options_.checking.status)
        return;
    std::string line;
    if (options_.form == Form::json)
        line = '{' + JsonPath(name) + ",\"result\":\"";
    else
        line = Quoted(name) + ": ";
    Out().Write(line.append(result).append(options_.form == Form::json ? "\"}\n" : "\n"));
}

void CheckReport::Malformed(std::uint64_t line) {
    ++totals_.malformed;
    if (options_.checking.warn)
        SayOfList(std::to_string(line) + ": improperly formatted " + lines_);
}

void CheckReport::UnknownFunction(std::uint64_t line, std::string_view tag) {
    ++totals_.unknown;
    Malformed(line);
    if (unknownTags_.size() == maxUnknownTags || !unknownTags_.emplace(tag).second)
        return;
    if (!options_.checking.status)
        SayOfList("unknown function " + QuotedPlain(tag) + ", first in line " + std::to_string(line));
}

void CheckReport::Guessed(const FunctionChoice& choice) {
    if (!options_.checking.status)
        SayOfList("nothing tells the function; the digests are of " + choice.tag);
}

void CheckReport::ListUnreadable() {
    SayOfList("read error");
}

void CheckReport::SayOfList(std::string_view text) {
    Say(list_ + ": " + std::string(text));
}

void CheckReport::WarnOfMalformed() const {
    if (!options_.checking.status)
        Warn(totals_.malformed, "line is improperly formatted", "lines are improperly formatted");
}

bool CheckReport::Finish() {
    const std::uint64_t entries = totals_.good + totals_.different + totals_.unread + totals_.missing;
    if (entries == 0) {
        SayOfList("no properly formatted checksum lines found");
        return false;
    }
    WarnOfMalformed();
    if (!options_.checking.status) {
        Warn(totals_.unread, "listed file could not be read", "listed files could not be read");
        Warn(totals_.different, "computed checksum did NOT match", "computed checksums did NOT match");
        if (options_.checking.ignoreMissing && totals_.good == 0)
            SayOfList("no file was verified");
    }
    return totals_.good > 0 && totals_.different == 0 && totals_.unread == 0 && totals_.unknown == 0 &&
           (totals_.malformed == 0 || !options_.checking.strict);
}

} // namespace sum
