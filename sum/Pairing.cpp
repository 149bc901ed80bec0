// SPDX-License-Identifier: MIT
#include "sum/Pairing.h"

#include "sum/PathKey.h"

#include <algorithm>
#include <set>
#include <tuple>
#include <unordered_map>
#include <vector>

namespace sum {

namespace {

// Functions that the digests of an entry are of, in their order, each by the smallest number that it
// has. Lists have few such sets.
using Numbers = std::vector<std::uint32_t>;

class Pairing {
  public:
    Pairing(Entries& entries, std::deque<FoundFile>& files) : entries_(entries), files_(files) {
        for (std::uint32_t i = 0; i < entries.Functions().Count(); ++i)
            smallest_.push_back(entries.Functions().Smallest(i));
    }

    void Run();

  private:
    // All missing entries and new files of the same content.
    struct Group {
        std::vector<Entry*> missing;
        std::vector<FoundFile*> found;
    };

    bool IsEmpty(const Entry& entry);
    std::set<Numbers> Sets(Entry::Found state);
    void FindRenamed(const Numbers& numbers);
    static void FindRenamed(Group& group);
    void FindCopies(const Numbers& numbers);
    bool MayBePaired(const FoundFile& file) const {
        return file.kind == FoundFile::Kind::isNew && file.content.size != 0;
    }
    Numbers NumbersOf(const Entry& entry) const;
    std::string Bytes(const KeptDigest* digests, const Numbers& numbers) const;

    Entries& entries_;
    std::deque<FoundFile>& files_;
    Numbers smallest_; // for each number the smallest of the same function
};

Numbers Pairing::NumbersOf(const Entry& entry) const {
    Numbers numbers;
    for (const KeptDigest* digest = entry.listed.digests; digest != nullptr; digest = digest->next)
        numbers.push_back(smallest_[digest->function]);
    return numbers;
}

// The digests of one entry or file by these functions, one after the other.
std::string Pairing::Bytes(const KeptDigest* digests, const Numbers& numbers) const {
    std::string bytes;
    for (const std::uint32_t number : numbers) {
        const KeptDigest* digest = digests;
        while (digest != nullptr && smallest_[digest->function] != number)
            digest = digest->next;
        if (digest == nullptr)
            return {};
        bytes.append(reinterpret_cast<const char*>(digest->Bytes().data()), digest->size);
    }
    return bytes;
}

void Pairing::Run() {
    if (std::ranges::none_of(files_, [this](const FoundFile& file) { return MayBePaired(file); }))
        return;
    for (const Numbers& numbers : Sets(Entry::Found::missing))
        FindRenamed(numbers);
    if (std::ranges::none_of(files_, [this](const FoundFile& file) { return MayBePaired(file); }))
        return;
    for (const Numbers& numbers : Sets(Entry::Found::same))
        FindCopies(numbers);
}

bool Pairing::IsEmpty(const Entry& entry) {
    if (entry.sizeUnit != 0 && entry.listedSize == 0)
        return true;
    const KeptDigest* const digest = entry.listed.digests;
    return digest == nullptr ||
           std::ranges::equal(digest->Bytes(), entries_.Functions().Empty(digest->function));
}

std::set<Numbers> Pairing::Sets(Entry::Found state) {
    std::set<Numbers> sets;
    Numbers last;
    for (const Entry& entry : entries_.All()) {
        if (entry.state != state)
            continue;
        Numbers numbers = NumbersOf(entry);
        if (numbers.empty() || numbers == last)
            continue;
        sets.insert(numbers);
        last = std::move(numbers);
    }
    return sets;
}

void Pairing::FindRenamed(const Numbers& numbers) {
    std::unordered_map<std::string, Group> groups;
    for (Entry& entry : entries_.All())
        if (entry.state == Entry::Found::missing && entry.file == nullptr && !IsEmpty(entry) &&
            NumbersOf(entry) == numbers)
            groups[Bytes(entry.listed.digests, numbers)].missing.push_back(&entry);
    for (FoundFile& file : files_) {
        if (!MayBePaired(file))
            continue;
        const auto group = groups.find(Bytes(file.content.digests, numbers));
        if (group != groups.end())
            group->second.found.push_back(&file);
    }
    for (auto& [bytes, group] : groups)
        FindRenamed(group);
}

// Sorts both sides by last component and path, or by path alone, and pairs what meets.
void Pairing::FindRenamed(Group& group) {
    const auto byBase = [](const auto* a, const auto* b) {
        return std::tuple(BaseOf(a->key), a->key) < std::tuple(BaseOf(b->key), b->key);
    };
    const auto byPath = [](const auto* a, const auto* b) { return a->key < b->key; };
    const auto pair = [](Entry& entry, FoundFile& file) {
        entry.file = &file;
        file.origin = &entry;
        file.kind = FoundFile::Kind::renamed;
    };
    std::ranges::sort(group.missing, byBase);
    std::ranges::sort(group.found, byBase);
    auto file = group.found.begin();
    for (Entry* const entry : group.missing) {
        while (file != group.found.end() && BaseOf((*file)->key) < BaseOf(entry->key))
            ++file;
        if (file != group.found.end() && BaseOf((*file)->key) == BaseOf(entry->key))
            pair(*entry, **file++);
    }
    std::erase_if(group.missing, [](const Entry* entry) { return entry->file != nullptr; });
    std::erase_if(group.found, [](const FoundFile* found) { return found->origin != nullptr; });
    std::ranges::sort(group.missing, byPath);
    std::ranges::sort(group.found, byPath);
    for (std::size_t i = 0; i < std::min(group.missing.size(), group.found.size()); ++i)
        pair(*group.missing[i], *group.found[i]);
}

// Of several entries with the content, the first path is named.
void Pairing::FindCopies(const Numbers& numbers) {
    std::unordered_map<std::string, std::vector<FoundFile*>> found;
    for (FoundFile& file : files_)
        if (MayBePaired(file))
            found[Bytes(file.content.digests, numbers)].push_back(&file);
    std::unordered_map<std::string, const Entry*> first;
    for (const Entry& entry : entries_.All()) {
        if (entry.state != Entry::Found::same || NumbersOf(entry) != numbers)
            continue;
        const std::string bytes = Bytes(entry.listed.digests, numbers);
        if (!found.contains(bytes))
            continue;
        const auto [place, isNew] = first.emplace(bytes, &entry);
        if (!isNew && entry.key < place->second->key)
            place->second = &entry;
    }
    for (const auto& [bytes, entry] : first) {
        for (FoundFile* const file : found[bytes]) {
            file->kind = FoundFile::Kind::copy;
            file->origin = entry;
        }
    }
}

} // namespace

void PairFiles(Entries& entries, std::deque<FoundFile>& files) {
    Pairing(entries, files).Run();
}

} // namespace sum
