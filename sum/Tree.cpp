// SPDX-License-Identifier: MIT
#include "sum/Tree.h"

#include "sum/FileTime.h"
#include "sum/Findings.h"
#include "sum/HashQueue.h"
#include "sum/Inputs.h"
#include "sum/Measure.h"
#include "sum/Messages.h"
#include "sum/Output.h"
#include "sum/OwnFiles.h"
#include "sum/Pairing.h"
#include "sum/PathKey.h"
#include "sum/Progress.h"
#include "sum/Scope.h"
#include "sum/TreeError.h"
#include "sum/TreeList.h"
#include "sum/TreeReport.h"
#include "sum/Update.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <unordered_set>

namespace sum {

namespace {

bool IsNotThere(int error) {
    return error == ENOENT || error == ENOTDIR;
}

// The operands as the walk needs them.
Options WalkedBy(const Options& options) {
    Options walked = options;
    walked.recursive = true;
    if (!options.directory)
        return walked;
    const Name root = *options.directory + '/';
    walked.hidden = root.size();
    for (Name& operand : walked.operands)
        operand.insert(0, root);
    return walked;
}

class Comparison : public InputSink {
  public:
    explicit Comparison(const Options& options);

    int Run();

    void File(const Name& name) override;
    void Trouble(const Name& name, const std::string& reason) override;

  private:
    std::string_view KeyOfPath(const Name& path) {
        return KeyOf(std::string_view(path).substr(walked_.hidden), buffer_);
    }
    void Meet(Entry& entry, const Name& name);
    void MeetNew(std::string_view key, const Name& name);
    bool HasLookedTheSame(Entry& entry, const Name& name);
    void Told(Entry& entry, const FileResult& result);
    void Told(FoundFile& file, const FileResult& result);
    Content ContentOf(const FileResult& result, const std::vector<std::uint32_t>& numbers);
    void Settle();
    void Settle(Entry& entry);
    LineSink& Sink();
    bool NeedsState();
    void Fail(Entry& entry, std::uint32_t reason);
    void Report();
    int Status() const;

    const Options& options_;
    const Options walked_;
    const std::int64_t start_ = Now();
    Progress progress_;
    HashQueue queue_;
    OwnFiles own_;
    std::optional<OutputFile> output_; // of the report, with --output
    Scope scope_;
    TreeList list_;
    std::optional<Update> update_;
    Reasons reasons_;
    std::deque<FoundFile> files_;
    std::unordered_set<std::string_view> metNew_;
    Totals totals_{};
    bool trouble_ = false;
    Name buffer_;
};

// Whether a link is on the way to a file, or has its name: walks do not follow it.
bool IsBehindLink(const Name& path) {
    platform::EntryStatus status;
    for (std::size_t end = path.find('/', 1);; end = path.find('/', end + 1)) {
        const bool isLink = platform::LookAt(path.substr(0, end), false, status) == 0 &&
                            status.kind == platform::EntryKind::link;
        if (isLink || end == Name::npos)
            return isLink;
    }
}

// A report in place of the list would be the end of the list.
void RequireOther(const Name& output, const Name& list) {
    platform::EntryStatus ofOutput;
    platform::EntryStatus ofList;
    const bool isSame = platform::LookAt(output, true, ofOutput) == 0 &&
                        platform::LookAt(list, true, ofList) == 0 && ofOutput.identity == ofList.identity;
    if (isSame)
        throw TreeError(Quoted(output) + ": the output file is the list");
}

Comparison::Comparison(const Options& options)
    : options_(options), walked_(WalkedBy(options)), progress_(options),
      queue_(options.jobs, &progress_, Opening::stored), own_(*options.list), scope_(walked_),
      list_(options, scope_, progress_, start_) {
    for (const Name& name : {StateOf(*options.list), OlderOf(*options.list)})
        if (!CanBeOwn(name))
            throw TreeError(Quoted(name) + cannotBeOwn);
    if (options.output) {
        RequireOther(*options.output, *options.list);
        output_.emplace(*options.output);
        own_.Add(*options.output);
        own_.Add(output_->Identity());
    }
}

void Comparison::File(const Name& name) {
    const std::string_view key = KeyOfPath(name);
    if (own_.IsTemporary(name))
        return;
    if (Entry* const entry = list_.All().Find(key))
        Meet(*entry, name);
    else
        MeetNew(key, name);
}

void Comparison::Meet(Entry& entry, const Name& name) {
    if (entry.isMet)
        return;
    entry.isMet = true;
    if (HasLookedTheSame(entry, name)) {
        entry.state = Entry::Found::same;
        return;
    }
    queue_.Add(name, list_.FunctionsOf(entry),
               [this, &entry](const FileResult& result) { Told(entry, result); });
}

// Whether the file need not be read.
bool Comparison::HasLookedTheSame(Entry& entry, const Name& name) {
    platform::EntryStatus status;
    const bool isTrusted = entry.isKnown || (options_.quick && entry.listed.hasTime && !entry.isStale);
    return isTrusted && platform::LookAt(name, true, status) == 0 && !own_.Has(status.identity) &&
           status.kind == platform::EntryKind::regular && status.size == entry.listed.size &&
           status.modified == entry.listed.modified;
}

void Comparison::MeetNew(std::string_view key, const Name& name) {
    if (options_.operands.size() > 1 && metNew_.contains(key)) // by another operand
        return;
    FoundFile& file = files_.emplace_back();
    file.key = list_.All().Keep(key);
    if (options_.operands.size() > 1)
        metNew_.insert(file.key);
    queue_.Add(name, list_.FunctionsOfNew(), [this, &file](const FileResult& result) { Told(file, result); });
}

void Comparison::Trouble(const Name& name, const std::string& reason) {
    const std::string_view key = KeyOfPath(name);
    const std::uint32_t number = reasons_.Of(reason);
    if (!scope_.AddTrouble(key, number) || list_.All().Find(key) != nullptr)
        return;
    FoundFile& file = files_.emplace_back();
    file.key = list_.All().Keep(key);
    file.kind = FoundFile::Kind::unread;
    file.reason = number;
}

Content Comparison::ContentOf(const FileResult& result, const std::vector<std::uint32_t>& numbers) {
    Content content;
    content.size = result.size;
    content.modified = result.status.modified;
    content.hasTime = IsSettled(content.modified, start_) && result.size == result.status.size;
    for (std::size_t i = numbers.size(); i-- > 0;)
        content.digests = list_.All().Keep(numbers[i], result.digests[i], content.digests);
    return content;
}

void Comparison::Fail(Entry& entry, std::uint32_t reason) {
    entry.state = Entry::Found::unread;
    entry.reason = reason;
}

void Comparison::Told(Entry& entry, const FileResult& result) {
    if (IsNotThere(result.error)) {
        entry.state = Entry::Found::missing;
        return;
    }
    if (result.error != 0)
        return Fail(entry, reasons_.Of(ErrorText(result.error)));
    if (own_.Has(result.status.identity)) {
        entry.state = Entry::Found::leftOut;
        return;
    }
    bool isSame = entry.HasListedSize(result.size);
    std::size_t i = 0;
    for (const KeptDigest* digest = entry.listed.digests; digest != nullptr; digest = digest->next)
        isSame = std::ranges::equal(digest->Bytes(), result.digests[i++]) && isSame;
    if (isSame) {
        entry.state = Entry::Found::same;
        const KeptDigest* const digests = entry.listed.digests;
        entry.listed = ContentOf(result, {});
        entry.listed.digests = digests;
        entry.isStale = false;
        return;
    }
    std::vector<std::uint32_t> numbers;
    for (const KeptDigest* digest = entry.listed.digests; digest != nullptr; digest = digest->next)
        numbers.push_back(digest->function);
    entry.state = Entry::Found::changed;
    entry.found = list_.All().Keep(ContentOf(result, numbers));
}

// A file that vanished since the walk met it was none of the tree.
void Comparison::Told(FoundFile& file, const FileResult& result) {
    if (own_.Has(result.status.identity))
        return;
    if (result.error == 0) {
        file.kind = FoundFile::Kind::isNew;
        file.content = ContentOf(result, list_.NumbersOfNew());
    } else if (!IsNotThere(result.error) || scope_.IsOperand(file.key)) {
        file.kind = FoundFile::Kind::unread;
        file.reason = reasons_.Of(ErrorText(result.error));
        if (scope_.IsOperand(file.key))
            scope_.AddTrouble(file.key, file.reason);
    }
}

// What is listed and was not met: missing, unless there is a reason why it could not be met. A link, or what lies below
// one, is not walked, but a list may name it.
void Comparison::Settle() {
    for (Entry& entry : list_.All().All())
        if (entry.state == Entry::Found::unmet && !entry.isMet)
            Settle(entry);
    queue_.Finish();
}

void Comparison::Settle(Entry& entry) {
    platform::EntryStatus status;
    if (!scope_.Holds(entry.key)) {
        entry.state = Entry::Found::leftOut;
        return;
    }
    if (const std::optional<std::uint32_t> reason = scope_.TroubleAbove(entry.key))
        return Fail(entry, *reason);
    const int error = platform::LookAt(scope_.PathOf(entry.key), false, status);
    if (error != 0 && !IsNotThere(error))
        return Fail(entry, reasons_.Of(ErrorText(error)));
    const Name path = scope_.PathOf(entry.key);
    if (error == 0 && (own_.Has(status.identity) || scope_.IsOnOtherFileSystem(entry.key, status)))
        entry.state = Entry::Found::leftOut;
    else if (error == 0 && IsBehindLink(path))
        Meet(entry, path);
    else // or found by another spelling of its name, which the walk has met
        entry.state = Entry::Found::missing;
}

// Where all is as listed, the state has nothing to tell.
bool Comparison::NeedsState() {
    return std::ranges::any_of(list_.All().All(), [this](const Entry& entry) {
        return entry.state == Entry::Found::changed ||
               (options_.update && entry.state != Entry::Found::same && entry.state != Entry::Found::missing);
    });
}

LineSink& Comparison::Sink() {
    if (output_)
        return *output_;
    return Out();
}

void Comparison::Report() {
    const TreeReport report(options_, list_, reasons_);
    LineSink& sink = Sink();
    if (!options_.checking.status)
        for (const Finding& finding : FindingsOf(list_.All(), files_, options_.verbose))
            sink.Write(report.Line(finding));
    if (output_)
        output_->Complete();
    Out().Flush();
    totals_ = TotalsOf(list_.All(), files_);
    if (!options_.checking.status && !options_.checking.quiet)
        Say(TreeReport::Summary(totals_));
}

int Comparison::Status() const {
    const auto count = [this](Outcome outcome) { return totals_[static_cast<std::size_t>(outcome)]; };
    if (trouble_ || count(Outcome::unread) != 0)
        return treeTrouble;
    const auto differs = [&](Outcome outcome) {
        return count(outcome) != 0 && !IsAccepted(outcome, options_.acceptance);
    };
    if (differs(Outcome::changed) || differs(Outcome::changedUnseen))
        return 1;
    const std::uint64_t others =
        count(Outcome::isNew) + count(Outcome::missing) + count(Outcome::renamed) + count(Outcome::copy);
    return others != 0 && !options_.update ? 1 : 0;
}

int Comparison::Run() {
    list_.Load();
    if (options_.quick)
        list_.LoadState();
    if (options_.update)
        own_.Add(update_.emplace(options_, scope_, list_).Identity());
    if (progress_.IsShown())
        progress_.SetTotal(AmountOfInputs(walked_, {}));
    ForEachInput(walked_, {}, *this);
    queue_.Finish();
    Settle();
    if (!options_.quick && NeedsState())
        list_.LoadState();
    PairFiles(list_.All(), files_);
    trouble_ = list_.TellOfMalformed() || (options_.update && list_.HasMalformed());
    Report();
    if (update_ && !update_->Write(files_))
        trouble_ = true;
    return Status();
}

} // namespace

int CompareTree(const Options& options) {
    return Comparison(options).Run();
}

} // namespace sum
