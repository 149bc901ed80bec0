// SPDX-License-Identifier: MIT
#include "sum/Inputs.h"

#include "sum/Messages.h"
#include "sum/NameFile.h"
#include "sum/PathRules.h"

namespace sum {

namespace {

class Inputs {
  public:
    Inputs(const Options& options, const std::vector<platform::FileIdentity>& ownFiles, InputSink& sink)
        : options_(options), sink_(sink), walk_(options, ownFiles, sink) {}

    void Take(const Name& name) {
        if (options_.recursive && name != "-" && IsDirectory(name))
            walk_.Enter(name);
        else if (name == "-" || Counts(options_.rules, std::string_view(name).substr(options_.hidden), 0))
            sink_.File(name);
    }

    void TakeFrom(const Name& file);

  private:
    static bool IsDirectory(const Name& name) {
        platform::EntryStatus status;
        return platform::LookAt(name, true, status) == 0 && status.kind == platform::EntryKind::directory;
    }

    const Options& options_;
    InputSink& sink_;
    Walk walk_;
};

void Inputs::TakeFrom(const Name& file) {
    NameFile names(file, options_.namesEndInNul ? '\0' : '\n');
    for (std::uint64_t number = 1; const auto name = names.Next(); ++number) {
        if (file == "-" && *name == "-")
            sink_.Trouble(*name,
                          "when reading file names from standard input, no file name of '-' is allowed");
        else if (!name->empty())
            Take(*name);
        else if (options_.namesEndInNul)
            sink_.Trouble(file, std::to_string(number) + ": invalid zero-length file name");
    }
    if (names.Error() != 0)
        sink_.Trouble(file, ErrorText(names.Error()));
}

} // namespace

void ForEachInput(const Options& options, const std::vector<platform::FileIdentity>& ownFiles,
                  InputSink& sink) {
    Inputs inputs(options, ownFiles, sink);
    if (options.namesFrom)
        return inputs.TakeFrom(*options.namesFrom);
    for (const Name& name : options.operands)
        inputs.Take(name);
}

} // namespace sum
