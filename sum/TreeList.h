// SPDX-License-Identifier: MIT
// A list that is compared with a tree, read into memory.
#pragma once

#include "sum/CheckReport.h"
#include "sum/Entries.h"
#include "sum/FileHasher.h"
#include "sum/Guess.h"
#include "sum/LineStyle.h"
#include "sum/ListFile.h"
#include "sum/Options.h"
#include "sum/Scope.h"
#include "sum/StateFile.h"

#include <cstdint>
#include <map>
#include <vector>

namespace sum {

class TreeList {
  public:
    // How lines of the list with digests of these functions are written.
    struct Style {
        std::vector<std::uint32_t> numbers;
        LineStyle style;
        bool isOfFirst; // a line of the first file is written so
    };

    // `start` is when the run began. Options, scope and watcher are not copied.
    TreeList(const Options& options, const Scope& scope, ReadWatcher& watcher, std::int64_t start);

    // Reads the list. Where nothing tells its function, the first of its files that can be read
    // does, and is known then. Throws TreeError.
    void Load();

    // Reads what is remembered of the files, but of those that were found to be as listed.
    void LoadState();

    // The lines once more, for an update; not opened yet. Load has decided what they mean.
    ListFile Lines() const { return {options_, *options_.list, functions_}; }
    ListFunctions& Functions() { return functions_; }

    const std::vector<Style>& Styles() const { return styles_; }

    // Whether all paths stand in the order of the operands and, of each, in that of their bytes.
    bool IsSorted() const { return isSorted_; }

    Entries& All() { return entries_; }

    // What to compute for a file of this entry, in the order of its digests.
    FunctionSet FunctionsOf(const Entry& entry);

    // What to compute for a file that the list does not tell of: all functions of the list.
    const FunctionSet& FunctionsOfNew() const { return allFunctions_; }
    const std::vector<std::uint32_t>& NumbersOfNew() const { return allNumbers_; }

    // How the list would spell the path.
    Name Spelled(std::string_view key) const;

    // Says how many lines were not understood. True when some of them make the comparison
    // incomplete.
    bool TellOfMalformed();
    bool HasMalformed() const { return report_.Totals().malformed != 0; }

  private:
    void ReadLines(ListFile& file);
    void Take(ListLine& line, ListFile& file);
    Entry& EntryOf(const ListLine& line);
    std::vector<std::uint32_t> AddDigests(Entry& entry, const ListLine& line, const LineFunctions& found);
    void Learn(const Entry& entry, const ListLine& line, const LineFunctions& found,
               std::vector<std::uint32_t> numbers, ListFile& file);
    void LearnFromNone(ListFile& file);
    void CheckThatItCanBeUpdated(ListFile& file) const;
    void Guess(Entry& entry, const ListLine& line);
    bool HasDigestsOf(const StateRecord& record, const Entry& entry) const;
    bool IsRemembered(const Entry& entry, std::string_view digest,
                      const std::vector<FunctionChoice>& candidates);
    [[noreturn]] void Refuse(const std::string& reason) const;
    void ChooseFunctionsOfNew();

    const Options& options_;
    const std::int64_t start_;
    FileHasher hasher_; // for guessing
    ListFunctions functions_;
    CheckReport report_;
    Entries entries_;
    const Scope& scope_;
    bool isDotted_ = false; // names begin with "./"
    bool isSorted_ = true;
    bool isStateAsked_ = false; // for the function
    std::vector<Style> styles_;
    std::map<std::vector<std::uint32_t>, FunctionSet> sets_;
    std::vector<FunctionSet> single_; // the sets of one function, by its number
    std::vector<std::uint32_t> allNumbers_;
    FunctionSet allFunctions_;
};

} // namespace sum
