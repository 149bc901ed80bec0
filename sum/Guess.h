// SPDX-License-Identifier: MIT
// Which functions the digests of a list are of.
#pragma once

#include "sum/DigestText.h"
#include "sum/FileHasher.h"
#include "sum/Functions.h"
#include "sum/ListLine.h"
#include "sum/Name.h"

#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace sum {

// The functions that the user named, if any.
struct GivenFunctions {
    std::span<const FunctionChoice> choices; // none: the list tells
    bool gnuOnly = false;                    // tags are spelt as GNU's tools spell them
};

// A name of a function that a list's own name holds: "SHA256SUMS", "disk.iso.sha512",
// "manifest-md5.txt", "SHA3SUMS". Empty when it holds none.
std::string FunctionInName(const Name& list);

// What a line's functions are, and whether that is certain.
struct LineFunctions {
    enum class Kind {
        certain,
        guessed,   // told by the length alone, or by the name of the list
        malformed, // no function that may stand there has a digest like this
        unknown    // a tag of a function that is not known: `unknownTag`
    };

    Kind kind = Kind::malformed;
    FunctionSet functions; // one for each digest of the line that is checked
    std::string unknownTag;
};

// The functions of one list. What is guessed may be decided once, by a file that was read.
class ListFunctions {
  public:
    ListFunctions(const GivenFunctions& given, const Name& list);

    // The lengths of digests without a tag that make a line one of the list.
    const DigestSizes& Sizes() const { return sizes_; }

    // Finds the functions of a line. Takes those digests off the line that are not to be checked,
    // because the user named other functions, or because it has others besides that are known.
    LineFunctions Of(ListLine& line);

    bool IsDecided() const { return decided_.has_value(); }

    // All functions that a digest without a tag may be of, likely ones first.
    const std::vector<FunctionChoice>& Candidates(std::string_view digest);

    // From now on, digests of this length are of this function, and nothing more is to be decided.
    void Decide(const FunctionChoice& choice);

  private:
    struct Found {
        LineFunctions::Kind kind = LineFunctions::Kind::malformed;
        std::optional<FunctionChoice> choice;
    };

    // What was found for lines that look alike: of the same tags, with digests of the same lengths.
    struct Remembered {
        LineFunctions found;
        std::vector<std::size_t> kept; // the digests that are checked
    };
    static std::string LookOf(const ListLine& line);

    Remembered FindAll(const ListLine& line);
    Found OfDigest(const ListDigest& digest);
    Found OfTag(const ListDigest& digest) const;
    Found OfDecimal() const;
    Found OfUntagged(const ListDigest& digest);
    bool IsGiven(const FunctionChoice& choice) const;
    DigestSizes FindSizes() const;
    std::vector<FunctionChoice> FindCandidates(std::size_t bytes) const;

    GivenFunctions given_;
    std::string named_; // by the list's name
    DigestSizes sizes_;
    std::map<std::size_t, std::vector<FunctionChoice>> candidates_; // by the digest's length
    std::optional<FunctionChoice> decided_;
    std::unordered_map<std::string, Remembered> remembered_;
};

// One file, read to find out what a digest without a tag is of.
struct Guess {
    FileResult result;                   // of the first reading; without digests
    std::optional<FunctionChoice> match; // the candidate whose digest of the file this is
    bool isFirst = false;                // it is the likeliest one
};

// Reads the file with the likeliest candidate and, if that does not match, once more with all
// others.
Guess GuessFunction(FileHasher& hasher, const Name& file, std::string_view digest,
                    const std::vector<FunctionChoice>& candidates);

} // namespace sum
