// SPDX-License-Identifier: MIT
// What the command line asks for.
#pragma once

#include "sum/Functions.h"
#include "sum/Name.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sum {

enum class Form { untagged, tagged, json, sfv, hashdeep, bagit };
enum class Encoding { hex, base64, raw };
enum class Watch { automatic, always, never };

// Of --status, --quiet and --warn, --status and --warn undo each other and --quiet, as in GNU's
// tools.
struct CheckOptions {
    bool ignoreMissing = false;
    bool quiet = false;   // no "OK"
    bool status = false;  // no output but messages of trouble
    bool strict = false;  // a malformed line is a failure
    bool warn = false;    // each malformed line is told
    bool gnuOnly = false; // no lists but those that GNU's tools read: called by the name of one
};

// Which entries of a walk count, in the order of the command line: the last rule that matches
// decides.
struct PathRule {
    std::string glob;
    bool include = false;
};

// What --update does with files that changed.
enum class Acceptance {
    none,    // their lines stay
    changed, // they are listed anew
    all      // also those whose size and time are the same, which may be decay
};

struct Options {
    std::vector<Name> operands; // "-" alone when none was given; lists with --check

    bool namesGiven = false; // there were operands

    std::vector<FunctionChoice> functions; // never empty: those given, or else the default
    bool functionsGiven =
        false; // by -a, or by the name under which the program was called; a check then takes no
               // other, but BLAKE2b and SHAKE without a length in their name have any length

    bool check = false;
    CheckOptions checking;
    std::optional<Name> directory; // -C: names in lists are relative to it
    bool baseName = false;         // of a listed name only the last component counts

    std::optional<Name> list; // of --audit and --update: is compared with the tree of the operands
    bool update = false;      // writes the list anew
    Acceptance acceptance = Acceptance::none;
    bool quick = false;     // files whose size and time are those of the list's state are not read
    bool verbose = false;   // what is the same is told, too
    std::size_t hidden = 0; // bytes at the beginning of paths that the user did not write: --directory

    Form form = Form::untagged;
    Encoding encoding = Encoding::hex;
    bool star = false; // '*' before the name
    bool zero = false; // NUL ends each line

    bool recursive = false;
    bool follow = false;
    bool oneFileSystem = false;
    std::vector<PathRule> rules;
    std::optional<Name> namesFrom; // --files-from, --files0-from
    bool namesEndInNul = false;

    std::optional<Name> output;
    bool resume = false; // goes on where a run with the same output was killed
    unsigned jobs = 1;   // the command line's default: the processors that can be used
    Watch progress = Watch::automatic;
    bool debug = false;
};

// What stands in the name of an output for the function, when each has one of its own.
inline constexpr std::string_view functionPlace = "{alg}";
bool HasOneOutputForEach(const Options& options);

} // namespace sum
