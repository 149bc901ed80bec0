// SPDX-License-Identifier: MIT
#include "sum/OptionTable.h"

namespace sum {

namespace {

constexpr unsigned own = static_cast<unsigned>(ToolKind::fyrnsum),
                   digest = static_cast<unsigned>(ToolKind::digest),
                   blake2 = static_cast<unsigned>(ToolKind::blake2),
                   cksum = static_cast<unsigned>(ToolKind::cksum),
                   sums = static_cast<unsigned>(ToolKind::sum);
constexpr unsigned digests = digest | blake2, checkers = own | digests | cksum, all = checkers | sums;

using enum OptionId;

// clang-format off
constexpr OptionRow table[] = {
    {algorithm, 'a', "algorithm", "NAME[,NAME]...", own, "hash functions; all are computed from one reading"},
    {algorithm, 'a', "algorithm", "NAME", cksum, "hash function: bsd, sysv, crc, crc32b, md5, sha1, sha2, sha224, sha256, sha384, sha512, sha3, blake2b or sm3"},
    {length, 'l', "length", "BITS", own | blake2 | cksum, "length of the digest, where the function leaves it open"},
    {binary, 'b', "binary", "", own | digests, "put '*' before the name; the reading is the same"},
    {binary, 'b', "binary", "", cksum, ""},
    {bsd, 'r', "", "", sums, "the BSD checksum and blocks of 1024 bytes (the default)"},
    {check, 'c', "check", "", checkers, "read lists of digests and check the files that they name"},
    {sysv, 's', "sysv", "", sums, "the System V checksum and blocks of 512 bytes"},
    {tag, 0, "tag", "", checkers, "write lines of the form SHA256 (NAME) = DIGEST"},
    {text, 't', "text", "", own | digests, "put a blank before the name (the default)"},
    {text, 't', "text", "", cksum, ""},
    {untagged, 0, "untagged", "", own | cksum, "write lines of the form DIGEST  NAME"},
    {base64, 0, "base64", "", own | cksum, "write digests in base64"},
    {raw, 0, "raw", "", own | cksum, "write the digest of one file as bytes and nothing else"},
    {zero, 'z', "zero", "", checkers, "end lines with NUL, and write names as they are"},
    {json, 0, "json", "", own, "write one JSON object a line for each file"},
    {format, 0, "format", "FORM", own, "write lines for other programs: gnu, bsd, sfv, hashdeep or bagit"},
    {output, 'o', "output", "FILE", own, "write to FILE, which appears when it is complete; with {alg} in its name one file for each function"},
    {resume, 0, "resume", "", own, "with --output, go on where a run was killed, and keep a journal for that"},
    {recursive, 'r', "recursive", "", own, "hash all files below directories"},
    {follow, 'L', "follow", "", own, "follow symbolic links in directories"},
    {oneFileSystem, 'x', "one-file-system", "", own, "stay on the file system where a directory begins"},
    {exclude, 0, "exclude", "GLOB", own, "leave out what matches: its name, or the path if GLOB holds a slash"},
    {include, 0, "include", "GLOB", own, "take in files that match; the last rule that matches decides"},
    {excludeFrom, 0, "exclude-from", "FILE", own, "leave out what matches a line of FILE"},
    {filesFrom, 0, "files-from", "FILE", own, "take the names from the lines of FILE"},
    {files0From, 0, "files0-from", "FILE", own, "take the names from FILE, in which NUL ends each"},
    {directory, 'C', "directory", "DIR", own, "names in lists are relative to DIR"},
    {baseName, 0, "basename", "", own, "look for the last component of listed names only"},
    {ignoreMissing, 0, "ignore-missing", "", checkers, "pass over listed files that are not there"},
    {quiet, 0, "quiet", "", checkers, "do not print OK for each file"},
    {status, 0, "status", "", checkers, "print nothing; the exit status tells"},
    {strict, 0, "strict", "", checkers, "fail on malformed lines of a list"},
    {warn, 'w', "warn", "", checkers, "tell of each malformed line of a list"},
    {audit, 0, "audit", "LIST", own, "compare a tree with LIST, and print what differs"},
    {update, 0, "update", "LIST", own, "do the same, and write LIST anew; the old one is kept as LIST~"},
    {acceptChanges, 0, "accept-changes", "[all]", own, "list changed files anew; with all, also those whose size and time are the same"},
    {quick, 0, "quick", "", own, "do not read files whose size and time are as when LIST was updated"},
    {verbose, 'v', "verbose", "", own, "also tell of what is the same"},
    {jobs, 'j', "jobs", "N", own, "files that are hashed at the same time"},
    {jobs, 0, "num-threads", "N", own, ""},
    {progress, 0, "progress", "", own, "show on standard error how far the run has come"},
    {noProgress, 0, "no-progress", "", own, "do not; by default a terminal shows it after 2 seconds"},
    {debug, 0, "debug", "", own | cksum, "tell which implementations are in use"},
    {listFunctions, 0, "list-functions", "", own, "list the hash functions and leave"},
    {help, 0, "help", "", all, "show this help and leave"},
    {version, 0, "version", "", all, "show the version and leave"},
};
// clang-format on

} // namespace

std::span<const OptionRow> OptionTable() {
    return table;
}

} // namespace sum
