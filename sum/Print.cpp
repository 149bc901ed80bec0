// SPDX-License-Identifier: MIT
#include "sum/Print.h"

#include "sum/FileTime.h"
#include "sum/HashQueue.h"
#include "sum/Inputs.h"
#include "sum/Journal.h"
#include "sum/Line.h"
#include "sum/Measure.h"
#include "sum/Messages.h"
#include "sum/Output.h"
#include "sum/OwnFiles.h"
#include "sum/Progress.h"

#include <algorithm>
#include <deque>
#include <optional>

namespace sum {

namespace {

// One list: where its lines go, and of which digests of a file they are.
struct List {
    LineWriter writer;
    LineSink* sink;
    std::size_t first;
};

class Printer : public InputSink {
  public:
    explicit Printer(const Options& options);

    // Hashes all files. Returns the exit status.
    int Run();

    void File(const Name& name) override;
    void Trouble(const Name& name, const std::string& reason) override;

  private:
    std::vector<platform::FileIdentity> OwnIdentities() const;
    void AddList(FunctionSet functions, std::size_t first, const std::optional<Name>& output);
    void Told(const Name& name, const FileResult& result);
    void Fail(const Name& name, const std::string& reason);

    const Options& options_;
    FunctionSet functions_;
    Progress progress_;
    HashQueue queue_;
    std::deque<OutputFile> outputs_;
    std::vector<OwnFiles> own_; // of each output
    std::vector<List> lists_;
    std::optional<Journal> journal_; // with --resume
    std::string lines_;
    bool failed_ = false;
};

Name OutputNameFor(const FunctionChoice& choice, Name output) {
    for (std::size_t place = 0; (place = output.find(functionPlace, place)) != Name::npos;
         place += choice.name.size())
        output.replace(place, functionPlace.size(), choice.name);
    return output;
}

Printer::Printer(const Options& options)
    : options_(options), functions_(std::make_shared<const std::vector<FunctionChoice>>(options.functions)),
      progress_(options), queue_(options.jobs, &progress_) {
    if (options.resume)
        journal_.emplace(JournalOf(*options.output), functions_, Now());
    if (!HasOneOutputForEach(options)) {
        AddList(functions_, 0, options.output);
        return;
    }
    for (std::size_t i = 0; i < options.functions.size(); ++i) {
        const FunctionChoice& choice = options.functions[i];
        AddList(std::make_shared<const std::vector<FunctionChoice>>(1, choice), i,
                OutputNameFor(choice, *options.output));
    }
}

void Printer::AddList(FunctionSet functions, std::size_t first, const std::optional<Name>& output) {
    LineSink* sink = &Out();
    if (output) {
        sink = &outputs_.emplace_back(*output);
        own_.emplace_back(*output);
        own_.back().Add(JournalOf(*options_.output));
    }
    lists_.push_back({LineWriter(options_, std::move(functions)), sink, first});
    sink->Write(lists_.back().writer.Header());
}

// What the lists are before the run, with what belongs to them, and what they are being written to.
std::vector<platform::FileIdentity> Printer::OwnIdentities() const {
    std::vector<platform::FileIdentity> own;
    for (const OutputFile& output : outputs_)
        own.push_back(output.Identity());
    for (const OwnFiles& files : own_)
        own.insert(own.end(), files.Identities().begin(), files.Identities().end());
    return own;
}

void Printer::File(const Name& name) {
    if (std::ranges::any_of(own_, [&](const OwnFiles& own) { return own.IsTemporary(name); }))
        return;
    const bool isNoted = journal_ && name != "-";
    const std::optional<FileResult> known = isNoted ? journal_->Find(name) : std::nullopt;
    if (known)
        return queue_.AddNote([this, name, result = *known] { Told(name, result); });
    queue_.Add(name, functions_, [this, name, isNoted](const FileResult& result) {
        Told(name, result);
        if (isNoted && result.error == 0)
            journal_->Add(name, result);
    });
}

void Printer::Trouble(const Name& name, const std::string& reason) {
    queue_.AddNote([this, name, reason] { Fail(name, reason); });
}

void Printer::Fail(const Name& name, const std::string& reason) {
    failed_ = true;
    Say(Quoted(name) + ": " + reason);
}

void Printer::Told(const Name& name, const FileResult& result) {
    if (result.error != 0)
        return Fail(name, ErrorText(result.error));
    const bool unnamed = !options_.namesGiven && !options_.namesFrom;
    for (const List& list : lists_) {
        lines_.clear();
        if (!list.writer.Append(lines_, unnamed ? nullptr : &name, result, list.first))
            return Fail(name, "this name cannot be written in lists of this form");
        list.sink->Write(lines_);
    }
}

int Printer::Run() {
    const std::vector<platform::FileIdentity> ownFiles = OwnIdentities();
    if (progress_.IsShown() && options_.namesFrom != "-")
        progress_.SetTotal(AmountOfInputs(options_, ownFiles));
    ForEachInput(options_, ownFiles, *this);
    queue_.Finish();
    Out().Flush();
    for (OutputFile& output : outputs_)
        output.Complete();
    if (journal_)
        journal_->Remove();
    return failed_ ? 1 : 0;
}

} // namespace

int Print(const Options& options) {
    return Printer(options).Run();
}

} // namespace sum
