// SPDX-License-Identifier: MIT
#include "sum/Tool.h"

namespace sum {

namespace {

constexpr Tool tools[] = {
    {"fyrnsum", ToolKind::fyrnsum, "sha256"},
    {"md5sum", ToolKind::digest, "md5"},
    {"sha1sum", ToolKind::digest, "sha1"},
    {"sha224sum", ToolKind::digest, "sha224"},
    {"sha256sum", ToolKind::digest, "sha256"},
    {"sha384sum", ToolKind::digest, "sha384"},
    {"sha512sum", ToolKind::digest, "sha512"},
    {"b2sum", ToolKind::blake2, "blake2b"},
    {"sm3sum", ToolKind::digest, "sm3"},
    {"cksum", ToolKind::cksum, "crc"},
    {"sum", ToolKind::sum, "bsd"},
};

std::string_view PlainName(std::string_view program) {
    program.remove_prefix(program.find_last_of("/\\") + 1); // npos + 1 is 0
    if (program.ends_with(".exe"))
        program.remove_suffix(4);
    return program;
}

} // namespace

std::span<const Tool> Tools() {
    return tools;
}

const Tool& ToolCalled(std::string_view program) {
    for (const Tool& tool : tools)
        if (tool.name == PlainName(program))
            return tool;
    return tools[0];
}

} // namespace sum
