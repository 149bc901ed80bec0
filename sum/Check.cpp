// SPDX-License-Identifier: MIT
#include "sum/Check.h"

#include "sum/CheckAmount.h"
#include "sum/CheckReport.h"
#include "sum/Guess.h"
#include "sum/HashQueue.h"
#include "sum/ListFile.h"
#include "sum/ListedName.h"
#include "sum/Messages.h"
#include "sum/Progress.h"

#include <memory>
#include <span>
#include <string>
#include <utility>

namespace sum {

namespace {

const Name standardInput = "-";

// What a line asks of a file.
struct Expectation {
    std::vector<ListDigest> digests;
    std::optional<std::uint64_t> size;
    std::uint64_t sizeUnit = 1;

    bool HasSize(const FileResult& result) const {
        return !size || result.size / sizeUnit + (result.size % sizeUnit != 0) == *size;
    }

    bool Holds(const FileResult& result) const {
        if (!HasSize(result))
            return false;
        for (std::size_t i = 0; i < digests.size(); ++i)
            if (!IsExpected(digests[i], result.digests[i]))
                return false;
        return true;
    }

    static bool IsExpected(const ListDigest& expected, std::span<const std::byte> digest) {
        return expected.decimal ? IsDecimalDigest(expected.text, digest) : IsDigest(expected.text, digest);
    }
};

// The check of one list.
class ListCheck {
  public:
    ListCheck(const Options& options, const Name& list, HashQueue& queue, ReadWatcher& watcher)
        : options_(options), list_(list), queue_(queue), hasher_(&watcher, Opening::stored),
          functions_(FunctionsGivenBy(options), list), report_(options, list) {}

    bool Run();

  private:
    void TakeMalformed(const ListLine& line);
    void TakeEntry(ListLine& line);
    void TakeGuessed(const Name& listed, const Name& file, const Expectation& expectation);

    const Options& options_;
    const Name& list_;
    HashQueue& queue_;
    FileHasher hasher_; // for guessing
    ListFunctions functions_;
    CheckReport report_;
};

bool ListCheck::Run() {
    ListFile file(options_, list_, functions_);
    if (const int error = file.Open()) {
        SayError(list_, error);
        return false;
    }
    try {
        ListLine line;
        for (LineKind kind = file.Next(line); kind != LineKind::end; kind = file.Next(line))
            kind == LineKind::malformed ? TakeMalformed(line) : TakeEntry(line);
    } catch (const ListError&) {
        queue_.Finish();
        report_.ListUnreadable();
        return false;
    }
    queue_.Finish();
    return report_.Finish();
}

void ListCheck::TakeMalformed(const ListLine& line) {
    queue_.AddNote([this, number = line.number] { report_.Malformed(number); });
}

void ListCheck::TakeEntry(ListLine& line) {
    LineFunctions found = functions_.Of(line);
    if (found.kind == LineFunctions::Kind::malformed)
        return TakeMalformed(line);
    if (found.kind == LineFunctions::Kind::unknown)
        return queue_.AddNote([this, number = line.number, tag = std::move(found.unknownTag)] {
            report_.UnknownFunction(number, tag);
        });
    if (line.name == standardInput && list_ == standardInput) // what is left of it is the list's
        return queue_.AddNote([this, name = line.name] { report_.ListItself(name); });

    Name file = FileOf(line.name, options_);
    Expectation expectation{line.digests, line.size, line.sizeUnit};
    if (found.kind == LineFunctions::Kind::guessed && !functions_.IsDecided())
        return TakeGuessed(line.name, file, expectation);
    queue_.Add(std::move(file), std::move(found.functions),
               [this, name = line.name, expectation = std::move(expectation)](const FileResult& result) {
                   report_.File(name, result.error, result.error == 0 && expectation.Holds(result));
               });
}

// The first file that can be read decides what the digests are of, so it is read before the next
// line is looked at.
void ListCheck::TakeGuessed(const Name& listed, const Name& file, const Expectation& expectation) {
    const std::string& digest = expectation.digests[0].text;
    const std::vector<FunctionChoice>& candidates = functions_.Candidates(digest);
    const Guess guess = GuessFunction(hasher_, file, digest, candidates);
    if (guess.result.error == 0)
        functions_.Decide(guess.match ? *guess.match : FunctionChoice(candidates[0]));
    queue_.AddNote([this, listed, guess, rightSize = expectation.HasSize(guess.result)] {
        if (guess.match && !guess.isFirst)
            report_.Guessed(*guess.match);
        report_.File(listed, guess.result.error, guess.match && rightSize);
    });
}

} // namespace

int Check(const Options& options) {
    Progress progress(options);
    if (progress.IsShown())
        progress.SetTotal(AmountToCheck(options));
    HashQueue queue(options.jobs, &progress, Opening::stored);
    bool good = true;
    for (const Name& list : options.operands)
        good = ListCheck(options, list, queue, progress).Run() && good;
    return good ? 0 : 1;
}

} // namespace sum
