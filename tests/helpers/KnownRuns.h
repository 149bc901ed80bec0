// SPDX-License-Identifier: MIT
// The digests of whole runs in tests/data/known_runs.txt, function by function, for tests of engines.
#pragma once

#include "crypto/CCrypto_Salt.h"
#include "tests/helpers/Bytes.h"
#include "tests/helpers/VectorLines.h"
#include "tests/reference/Keccak.h"

#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace helpers {

// A file of the runs: so many first bytes of SHAKE128 of its label.
struct KnownFile {
    std::string label;
    std::size_t size = 0;

    Bytes Content() const { return reference::Sponge(168, 0x1f, BytesOf(label), size); }
};

struct KnownRun {
    KnownFile file;
    KnownFile salt; // without a label: no salt
    EnumSaltType placement = EnumSaltType::None;
    std::string digest;
};

// The runs of one function.
inline std::vector<KnownRun> KnownRunsOf(const std::string& function) {
    static const std::map<std::string, EnumSaltType> placements = {{"none", EnumSaltType::None},
                                                                   {"before", EnumSaltType::Before},
                                                                   {"after", EnumSaltType::After},
                                                                   {"both", EnumSaltType::Both}};
    std::vector<KnownRun> runs;
    KnownRun run;
    for (const std::string& line : VectorLines("known_runs.txt")) {
        std::istringstream fields(line);
        std::string name, text;
        fields >> name >> text;
        if (name == "case") {
            run = KnownRun();
        } else if (name == "file" || name == "salt") {
            KnownFile& file = name == "file" ? run.file : run.salt;
            file.label = text;
            fields >> file.size;
        } else if (name == "salttype") {
            run.placement = placements.at(text);
        } else if (name == function) {
            run.digest = text;
            runs.push_back(run);
        }
    }
    return runs;
}

} // namespace helpers
