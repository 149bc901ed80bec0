// SPDX-License-Identifier: MIT
// The lines of a list that is updated.
#pragma once

#include "sum/Entries.h"
#include "sum/ListFile.h"
#include "sum/Options.h"
#include "sum/Output.h"
#include "sum/Scope.h"
#include "sum/TreeList.h"

#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace sum {

// Copies a list line by line. What need not change stays as it is, to the byte: comments, spelling,
// line ends, encoding. In a list that is sorted by paths new lines have their place; in any other a
// renamed file keeps its own, and new ones come last.
class NewLines {
  public:
    // Nothing is copied.
    NewLines(const Options& options, const Scope& scope, TreeList& list, LineSink& sink);

    // Throws TreeError, OutputError and ListError.
    void Write(const std::deque<FoundFile>& files);

    // Files that the form of the list has no way to name.
    const std::deque<const FoundFile*>& Refused() const { return refused_; }

  private:
    void TakeIn(const std::deque<FoundFile>& files);
    void TakeEntry(const ListLine& line, const LineFunctions& found, Entry& entry);
    void WriteBefore(std::string_view key);
    void WriteNew(const FoundFile& file);
    void Rewrite(const ListLine& line, const LineFunctions& found, const Entry& entry);
    bool IsBefore(std::string_view a, std::string_view b) const;
    bool IsReadAs(const std::string& text, const Name& name);
    void Put(std::string_view text);
    void PutRaw(const std::string& raw);
    void PutHeld();
    std::string Raw() const;
    std::string End() const;
    void PutEncoded(std::string_view text);

    const Options& options_;
    const Scope& scope_;
    TreeList& list_;
    LineSink& sink_;
    ListFile file_;
    ListLines checker_; // knows the beginning of the list
    ListRecord record_;
    std::string text_;                  // of the record
    bool isStarted_ = false;            // something was written
    bool needsEnd_ = false;             // the last line has none
    bool carriageReturns_ = false;      // lines end in CR LF
    bool hasEntry_ = false;             // a line with an entry was met
    std::vector<std::string> held_;     // comments that belong to the next entry, with their ends
    std::vector<const FoundFile*> new_; // sorted; each is put in its place
    std::size_t next_ = 0;
    std::deque<const FoundFile*> refused_;
};

} // namespace sum
