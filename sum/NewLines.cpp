// SPDX-License-Identifier: MIT
#include "sum/NewLines.h"

#include "sum/Findings.h"
#include "sum/ListedName.h"
#include "sum/Messages.h"
#include "sum/PathKey.h"
#include "sum/TreeError.h"
#include "sum/Utf8.h"

#include <algorithm>
#include <array>

namespace sum {

namespace {

using Spans = std::vector<std::span<const std::byte>>;

// The digests of these functions; less when some are not there.
Spans DigestsOf(const KeptDigest* digests, const std::vector<FunctionChoice>& choices,
                const FunctionNumbers& functions) {
    Spans spans;
    for (const FunctionChoice& choice : choices) {
        const KeptDigest* digest = digests;
        while (digest != nullptr && !(functions[digest->function] == choice))
            digest = digest->next;
        if (digest != nullptr)
            spans.push_back(digest->Bytes());
    }
    return spans;
}

// UTF-8 as UTF-16 of one byte order.
std::string Utf16Of(std::string_view text, bool bigEndian) {
    std::string units;
    const auto append = [&](std::uint32_t unit) {
        const std::array<char, 2> bytes = {static_cast<char>(unit >> 8), static_cast<char>(unit & 0xff)};
        units += bytes[bigEndian ? 0 : 1];
        units += bytes[bigEndian ? 1 : 0];
    };
    while (!text.empty()) {
        const Character character = FirstCharacter(text);
        text.remove_prefix(character.length);
        if (character.code < 0x10000) {
            append(character.code);
        } else {
            append(0xd800 + ((character.code - 0x10000) >> 10));
            append(0xdc00 + ((character.code - 0x10000) & 0x3ff));
        }
    }
    return units;
}

} // namespace

NewLines::NewLines(const Options& options, const Scope& scope, TreeList& list, LineSink& sink)
    : options_(options), scope_(scope), list_(list), sink_(sink), file_(list.Lines()),
      checker_(file_.OtherLines()) {}

bool NewLines::IsBefore(std::string_view a, std::string_view b) const {
    const std::size_t placeOfA = scope_.PlaceOf(a);
    const std::size_t placeOfB = scope_.PlaceOf(b);
    return placeOfA != placeOfB ? placeOfA < placeOfB : a < b;
}

void NewLines::TakeIn(const std::deque<FoundFile>& files) {
    for (const FoundFile& file : files) {
        const bool staysInPlace = file.kind == FoundFile::Kind::renamed && !list_.IsSorted();
        const bool isListed = file.kind == FoundFile::Kind::isNew || file.kind == FoundFile::Kind::copy ||
                              file.kind == FoundFile::Kind::renamed;
        if (isListed && !staysInPlace)
            new_.push_back(&file);
    }
    std::ranges::sort(new_,
                      [this](const FoundFile* a, const FoundFile* b) { return IsBefore(a->key, b->key); });
}

void NewLines::Write(const std::deque<FoundFile>& files) {
    TakeIn(files);
    if (const int error = file_.Open())
        throw ListError{error};
    ListLine line;
    Name buffer;
    while (file_.Reader().Next(record_)) {
        text_ = record_.text;
        if (record_.ended)
            carriageReturns_ = record_.carriageReturn;
        ListRecord copy = record_;
        if (!hasEntry_)
            checker_.Take(copy, line);
        const bool isLine = file_.Lines().Take(record_, line) == LineKind::entry;
        const LineFunctions found = isLine ? list_.Functions().Of(line) : LineFunctions();
        if (isLine && !line.name.empty() && IsBlank(line.name[0]))
            FileOf(line.name, options_);
        Entry* const entry = found.functions ? list_.All().Find(KeyOf(line.name, buffer)) : nullptr;
        if (entry != nullptr)
            TakeEntry(line, found, *entry);
        else if (hasEntry_)
            held_.push_back(Raw());
        else
            PutRaw(Raw());
    }
    while (next_ < new_.size())
        WriteNew(*new_[next_++]);
    PutHeld();
}

void NewLines::TakeEntry(const ListLine& line, const LineFunctions& found, Entry& entry) {
    hasEntry_ = true;
    const Outcome outcome = OutcomeOf(entry);
    if (list_.IsSorted())
        WriteBefore(entry.key);
    if (outcome == Outcome::missing || (outcome == Outcome::renamed && list_.IsSorted()))
        return;
    PutHeld();
    if (outcome == Outcome::renamed || IsAccepted(outcome, options_.acceptance))
        Rewrite(line, found, entry);
    else
        PutRaw(Raw());
}

// Writes what stands before the path.
void NewLines::WriteBefore(std::string_view key) {
    while (next_ < new_.size() && IsBefore(new_[next_]->key, key))
        WriteNew(*new_[next_++]);
}

void NewLines::WriteNew(const FoundFile& file) {
    const FunctionNumbers& functions = list_.All().Functions();
    const bool isRenamed = file.kind == FoundFile::Kind::renamed;
    const KeptDigest* const digests = isRenamed ? file.origin->listed.digests : file.content.digests;
    const Name name = list_.Spelled(file.key);
    std::vector<std::string> lines;
    std::vector<std::vector<FunctionChoice>> written;
    for (const TreeList::Style& style : list_.Styles()) {
        if (!isRenamed && !style.isOfFirst)
            continue;
        std::vector<FunctionChoice> choices;
        for (const std::uint32_t number : style.numbers)
            choices.push_back(functions[number]);
        const Spans spans = DigestsOf(digests, choices, functions);
        const bool isWritten = std::ranges::find(written, choices) != written.end();
        if (isWritten || spans.size() != choices.size())
            continue;
        lines.push_back(style.style.Line(name, file.content.size, spans));
        written.push_back(std::move(choices));
    }
    const bool holds =
        std::ranges::all_of(lines, [&](const std::string& line) { return IsReadAs(line, name); });
    if (lines.empty() || !holds) {
        refused_.push_back(&file);
        return;
    }
    for (const std::string& line : lines)
        Put(line);
}

// The same line with another name or digest.
void NewLines::Rewrite(const ListLine& line, const LineFunctions& found, const Entry& entry) {
    const auto style = LineStyle::Of({text_, line, *found.functions, file_.Lines().Columns(),
                                      file_.HasPercentNames(), file_.Reader().EndsInNul()});
    const bool isRenamed = entry.file != nullptr;
    const Content& content = isRenamed ? entry.file->content : *entry.found;
    const Spans spans = DigestsOf(isRenamed ? entry.listed.digests : content.digests, *found.functions,
                                  list_.All().Functions());
    const Name name = isRenamed ? list_.Spelled(entry.file->key) : line.name;
    const std::string text =
        style && spans.size() == line.digests.size() ? style->Line(name, content.size, spans) : std::string();
    if (text.empty())
        throw TreeError(Quoted(*options_.list) + ": " + std::to_string(record_.number) +
                        ": a line of this form cannot be written");
    if (IsReadAs(text, name))
        return Put(text);
    if (isRenamed)
        refused_.push_back(entry.file);
}

// Whether the line names what it is to name. Not every name fits into every form.
bool NewLines::IsReadAs(const std::string& text, const Name& name) {
    ListLine line;
    const bool endsInNul = file_.Reader().EndsInNul();
    const bool isWhole = text.find(endsInNul ? '\0' : '\n') == std::string::npos &&
                         (endsInNul || !text.ends_with('\r')) && text.size() <= ListReader::maxRecord;
    const bool isEncodable = file_.Reader().Encoding() == ListReader::Coding::bytes || IsUtf8(text);
    ListRecord record;
    record.text = text;
    return isWhole && isEncodable && checker_.Take(record, line) == LineKind::entry && line.name == name &&
           list_.Functions().Of(line).functions != nullptr;
}

void NewLines::PutEncoded(std::string_view text) {
    const ListReader& reader = file_.Reader();
    if (!isStarted_)
        sink_.Write(reader.Mark());
    isStarted_ = true;
    if (reader.Encoding() == ListReader::Coding::bytes)
        sink_.Write(text);
    else
        sink_.Write(Utf16Of(text, reader.Encoding() == ListReader::Coding::bigEndian));
}

std::string NewLines::End() const {
    if (file_.Reader().EndsInNul())
        return std::string(1, '\0');
    return carriageReturns_ ? "\r\n" : "\n";
}

// Writes a line, with the end that lines of the list have.
void NewLines::Put(std::string_view text) {
    PutRaw(std::string(text) + End());
}

// The record as it was read.
std::string NewLines::Raw() const {
    std::string raw = text_ + (record_.carriageReturn ? "\r" : "");
    if (record_.ended)
        raw += file_.Reader().EndsInNul() ? '\0' : '\n';
    return raw;
}

void NewLines::PutRaw(const std::string& raw) {
    if (needsEnd_)
        PutEncoded(End());
    PutEncoded(raw);
    needsEnd_ = !raw.ends_with(file_.Reader().EndsInNul() ? '\0' : '\n');
}

void NewLines::PutHeld() {
    for (const std::string& raw : held_)
        PutRaw(raw);
    held_.clear();
}

} // namespace sum
