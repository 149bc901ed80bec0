// SPDX-License-Identifier: MIT
#include "sum/TreeList.h"

#include "sum/DigestText.h"
#include "sum/FileTime.h"
#include "sum/ListedName.h"
#include "sum/Messages.h"
#include "sum/OwnFiles.h"
#include "sum/PathKey.h"
#include "sum/StateFile.h"
#include "sum/TreeError.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace sum {

TreeList::TreeList(const Options& options, const Scope& scope, ReadWatcher& watcher, std::int64_t start)
    : options_(options), start_(start), hasher_(&watcher, Opening::stored),
      functions_(FunctionsGivenBy(options), *options.list), report_(options, *options.list), scope_(scope) {}

void TreeList::Refuse(const std::string& reason) const {
    throw TreeError(Quoted(*options_.list) + ": " + reason);
}

void TreeList::Load() {
    ListFile file = Lines();
    if (const int error = file.Open())
        Refuse(ErrorText(error));
    try {
        ReadLines(file);
    } catch (const ListError& error) {
        Refuse(ErrorText(error.error));
    }
    if (entries_.All().empty() && report_.Totals().malformed != 0)
        Refuse("no properly formatted checksum lines found");
    if (entries_.All().empty())
        LearnFromNone(file);
    if (options_.update)
        CheckThatItCanBeUpdated(file);
    ChooseFunctionsOfNew();
}

void TreeList::ReadLines(ListFile& file) {
    ListLine line;
    for (LineKind kind = file.Next(line); kind != LineKind::end; kind = file.Next(line)) {
        if (kind == LineKind::entry) {
            Take(line, file);
            continue;
        }
        report_.Malformed(line.number);
        if (options_.update && file.Lines().Record().broken)
            Refuse(std::to_string(line.number) + ": this line is too long, or no text, to be kept");
    }
}

void TreeList::Take(ListLine& line, ListFile& file) {
    const LineFunctions found = functions_.Of(line);
    if (found.kind == LineFunctions::Kind::malformed)
        return report_.Malformed(line.number);
    if (found.kind == LineFunctions::Kind::unknown)
        return report_.UnknownFunction(line.number, found.unknownTag);
    if (!line.name.empty() && IsBlank(line.name[0]))
        FileOf(line.name, options_); // the name may be without its blanks
    Entry& entry = EntryOf(line);
    std::vector<std::uint32_t> numbers = AddDigests(entry, line, found);
    if (line.size) {
        entry.listedSize = *line.size;
        entry.sizeUnit = static_cast<std::uint16_t>(line.sizeUnit);
    }
    if (options_.update)
        Learn(entry, line, found, std::move(numbers), file);
    if (found.kind == LineFunctions::Kind::guessed && !functions_.IsDecided())
        Guess(entry, line);
}

// The lines of one file may be apart; then they are in no order.
Entry& TreeList::EntryOf(const ListLine& line) {
    const std::size_t count = entries_.All().size();
    if (count == 0)
        isDotted_ = line.name.starts_with("./");
    const Entry* const last = count == 0 ? nullptr : &entries_.All().back();
    Entry& entry = entries_.At(line.name);
    if (last == nullptr || !isSorted_ || !options_.update)
        return entry;
    if (entries_.All().size() == count) {
        isSorted_ = &entry == last;
        return entry;
    }
    const std::size_t place = scope_.PlaceOf(entry.key);
    const std::size_t before = scope_.PlaceOf(last->key);
    isSorted_ = place != before ? before < place : last->key < entry.key;
    return entry;
}

// Returns the numbers of the functions.
std::vector<std::uint32_t> TreeList::AddDigests(Entry& entry, const ListLine& line,
                                                const LineFunctions& found) {
    const bool guessed = found.kind == LineFunctions::Kind::guessed;
    std::vector<std::uint32_t> numbers(line.digests.size());
    for (std::size_t i = line.digests.size(); i-- > 0;) {
        const FunctionChoice& choice = (*found.functions)[i];
        const std::uint32_t number = entries_.Functions().Of(choice, guessed);
        const std::vector<std::byte> bytes =
            DigestBytes(line.digests[i].text, line.digests[i].decimal, choice.digestSize);
        const KeptDigest* const known = DigestOf(entry.listed.digests, number);
        if (known == nullptr || !std::ranges::equal(known->Bytes(), bytes)) {
            entry.listed.digests = entries_.Keep(number, bytes, entry.listed.digests);
            entry.isKnown = false; // of the other digests only
            entry.listed.hasTime = false;
        }
        numbers[i] = number;
    }
    return numbers;
}

void TreeList::Learn(const Entry& entry, const ListLine& line, const LineFunctions& found,
                     std::vector<std::uint32_t> numbers, ListFile& file) {
    if (std::ranges::find(styles_, numbers, &Style::numbers) != styles_.end())
        return;
    const std::string_view text = file.Lines().Record().text;
    const auto style = LineStyle::Of({text, line, *found.functions, file.Lines().Columns(),
                                      file.HasPercentNames(), file.Reader().EndsInNul()});
    if (!style)
        Refuse(std::to_string(line.number) + ": lines of this form cannot be written");
    styles_.push_back({std::move(numbers), *style, &entry == &entries_.All().front()});
}

// A list without entries may have a header, or a name, that tells its form.
void TreeList::LearnFromNone(ListFile& file) {
    FunctionNumbers& functions = entries_.Functions();
    std::vector<std::uint32_t> numbers;
    const std::vector<std::string>& columns = file.Lines().Columns();
    for (const std::string& column : columns)
        if (const auto function = fyrn::Function::Find(column))
            numbers.push_back(functions.Of(ChoiceOf(*function), false));
    if (!columns.empty())
        return styles_.push_back({numbers, LineStyle::Table(columns), true});
    const Name& list = *options_.list;
    const auto named = fyrn::Function::Find(FunctionInName(list));
    const bool isSfv = list.ends_with(".sfv");
    if (isSfv)
        numbers.push_back(functions.Of(ChoiceOf(fyrn::Function::Named("CRC-32")), false));
    else if (named && !options_.functionsGiven)
        numbers.push_back(functions.Of(ChoiceOf(*named), false));
    else
        numbers.push_back(functions.Of(options_.functions[0], false));
    isDotted_ = options_.operands[0] == "." || options_.operands[0].starts_with("./");
    styles_.push_back(
        {numbers,
         isSfv ? LineStyle::Sfv() : LineStyle::Untagged(file.HasPercentNames(), file.Reader().EndsInNul()),
         true});
}

void TreeList::CheckThatItCanBeUpdated(ListFile& file) const {
    if (file.Lines().IsSigned())
        Refuse("the list is signed, and cannot be updated");
    if (file.Lines().IsReport() || styles_.empty())
        Refuse("a list of this form cannot be updated");
}

// What is remembered holds for the list as long as it has the same digests.
void TreeList::LoadState() {
    StateFile file(StateOf(*options_.list));
    StateRecord record;
    Name buffer;
    while (file.Next(record)) {
        Entry* const entry = entries_.Find(KeyOf(record.path, buffer));
        if (entry == nullptr || entry->isKnown || entry->state == Entry::Found::same ||
            !HasDigestsOf(record, *entry))
            continue;
        entry->listed.size = record.size;
        entry->listed.hasTime = record.modified.has_value();
        entry->listed.modified = record.modified.value_or(0);
        entry->isStale = record.stale;
    }
}

bool TreeList::HasDigestsOf(const StateRecord& record, const Entry& entry) const {
    const auto isThere = [&](const KeptDigest& digest) {
        const std::string& name = entries_.Functions()[digest.function].name;
        return std::ranges::any_of(record.digests, [&](const auto& known) {
            return known.first == name && IsDigest(known.second, digest.Bytes());
        });
    };
    for (const KeptDigest* digest = entry.listed.digests; digest != nullptr; digest = digest->next)
        if (!isThere(*digest))
            return false;
    return entry.listed.digests != nullptr;
}

// The first file that can be read decides.
void TreeList::Guess(Entry& entry, const ListLine& line) {
    if (line.name == "-") // a file of that name is meant, but the reading would take standard input
        return;
    Name listed = line.name;
    const std::string& digest = line.digests[0].text;
    const std::vector<FunctionChoice>& candidates = functions_.Candidates(digest);
    if (IsRemembered(entry, digest, candidates))
        return;
    const sum::Guess guess = GuessFunction(hasher_, FileOf(listed, options_), digest, candidates);
    if (guess.result.error != 0)
        return;
    const FunctionChoice choice = guess.match ? *guess.match : candidates[0];
    functions_.Decide(choice);
    entries_.Functions().Decide(choice);
    if (!guess.match)
        return;
    if (!guess.isFirst)
        report_.Guessed(choice);
    const platform::EntryStatus& status = guess.result.status;
    entry.isKnown = entry.HasListedSize(guess.result.size);
    entry.listed.size = status.size;
    entry.listed.modified = status.modified;
    entry.listed.hasTime = IsSettled(status.modified, start_);
}

// Whether the state, which was made when the function was known, tells it. Saves reading a file that
// may be large.
bool TreeList::IsRemembered(const Entry& entry, std::string_view digest,
                            const std::vector<FunctionChoice>& candidates) {
    if (std::exchange(isStateAsked_, true))
        return false;
    StateFile state(StateOf(*options_.list));
    StateRecord record;
    Name buffer;
    if (!state.Next(record) || KeyOf(record.path, buffer) != entry.key)
        return false;
    for (const FunctionChoice& choice : candidates) {
        const std::vector<std::byte> bytes = DigestBytes(digest, false, choice.digestSize);
        const auto isThat = [&](const auto& known) {
            return known.first == choice.name && IsDigest(known.second, bytes);
        };
        if (std::ranges::none_of(record.digests, isThat))
            continue;
        const FunctionChoice decided = choice; // the candidates go with the decision
        functions_.Decide(decided);
        entries_.Functions().Decide(decided);
        return true;
    }
    return false;
}

void TreeList::ChooseFunctionsOfNew() {
    const FunctionNumbers& functions = entries_.Functions();
    std::vector<FunctionChoice> choices;
    for (std::uint32_t i = 0; i < functions.Count(); ++i) {
        single_.push_back(std::make_shared<const std::vector<FunctionChoice>>(1, functions[i]));
        if (functions.Smallest(i) != i)
            continue;
        allNumbers_.push_back(i);
        choices.push_back(functions[i]);
    }
    allFunctions_ = std::make_shared<const std::vector<FunctionChoice>>(std::move(choices));
}

FunctionSet TreeList::FunctionsOf(const Entry& entry) {
    const KeptDigest* digest = entry.listed.digests;
    if (digest != nullptr && digest->next == nullptr)
        return single_[digest->function];
    std::vector<std::uint32_t> numbers;
    for (; digest != nullptr; digest = digest->next)
        numbers.push_back(digest->function);
    FunctionSet& set = sets_[numbers];
    if (!set) {
        std::vector<FunctionChoice> choices;
        choices.reserve(numbers.size());
        for (const std::uint32_t number : numbers)
            choices.push_back(entries_.Functions()[number]);
        set = std::make_shared<const std::vector<FunctionChoice>>(std::move(choices));
    }
    return set;
}

Name TreeList::Spelled(std::string_view key) const {
    if (key.empty())
        return ".";
    const bool dotted = isDotted_ && !key.starts_with('/');
    return (dotted || key == "-" ? "./" : "") + Name(key);
}

bool TreeList::TellOfMalformed() {
    report_.WarnOfMalformed();
    const CheckTotals& totals = report_.Totals();
    return totals.unknown != 0 || (totals.malformed != 0 && options_.checking.strict);
}

} // namespace sum
