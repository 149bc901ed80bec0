// SPDX-License-Identifier: MIT
// The lines that are written for a file.
#pragma once

#include "sum/FileHasher.h"
#include "sum/Options.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace sum {

// How the oldest checksums are written: "4294967295 0", "00000     0" or "0 0", checksum and size or
// blocks. The digest is the number, the most significant byte first.
std::string LegacyText(Legacy legacy, std::span<const std::byte> digest, std::uint64_t size);

class LineWriter {
  public:
    // For these functions, in this order: all of the options', or the one whose output this is.
    LineWriter(const Options& options, FunctionSet functions);

    // What stands before all lines; mostly nothing.
    std::string Header() const;

    // Appends the line or lines of a file. With no name, the oldest checksums stand alone. False,
    // with nothing appended, when the form has no way to write the name. `first` is the place of
    // this writer's first digest in the result.
    bool Append(std::string& lines, const Name* name, const FileResult& result, std::size_t first) const;

  private:
    void AppendLine(std::string& lines, const FunctionChoice& choice, const std::vector<std::byte>& digest,
                    const Name* name, std::uint64_t size) const;
    void AppendJson(std::string& lines, const Name& name, const FileResult& result, std::size_t first) const;
    void AppendHashdeep(std::string& lines, const Name& name, const FileResult& result,
                        std::size_t first) const;
    std::string Text(const std::vector<std::byte>& digest) const;
    char End() const { return options_.zero ? '\0' : '\n'; }

    const Options& options_;
    FunctionSet functions_;
};

} // namespace sum
