// SPDX-License-Identifier: MIT
#include "sum/Entries.h"

#include "sum/PathKey.h"

#include <algorithm>
#include <functional>
#include <new>

namespace sum {

std::uint32_t FunctionNumbers::Of(const FunctionChoice& choice, bool guessed) {
    for (std::uint32_t i = 0; i < rows_.size(); ++i)
        if (rows_[i].guessed == guessed && rows_[i].choice == choice)
            return i;
    rows_.push_back({choice, guessed});
    return static_cast<std::uint32_t>(rows_.size() - 1);
}

void FunctionNumbers::Decide(const FunctionChoice& choice) {
    for (Row& row : rows_)
        if (row.guessed && row.choice.digestSize == choice.digestSize)
            row = {choice, true};
}

std::uint32_t FunctionNumbers::Smallest(std::uint32_t number) const {
    std::uint32_t smallest = 0;
    while (!(rows_[smallest].choice == rows_[number].choice))
        ++smallest;
    return smallest;
}

std::span<const std::byte> FunctionNumbers::Empty(std::uint32_t number) {
    Row& row = rows_[number];
    if (row.empty.empty())
        row.empty = fyrn::Hasher(row.choice.function, row.choice.digestSize).Finish();
    return row.empty;
}

std::uint32_t Reasons::Of(std::string_view text) {
    const auto place = std::ranges::find(texts_, text);
    const auto number = static_cast<std::uint32_t>(place - texts_.begin());
    if (place == texts_.end())
        texts_.emplace_back(text);
    return number;
}

Entries::Slot& Entries::SlotOf(std::string_view key, std::uint32_t hash) {
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t place = hash & mask;; place = (place + 1) & mask) {
        Slot& slot = slots_[place];
        if (slot.entry == none || (slot.hash == hash && entries_[slot.entry].key == key))
            return slot;
    }
}

void Entries::Grow() {
    constexpr std::size_t fewest = 1024;
    std::vector<Slot> old(std::max(fewest, slots_.size() * 2));
    std::swap(old, slots_);
    const std::size_t mask = slots_.size() - 1;
    for (const Slot& slot : old) {
        if (slot.entry == none)
            continue;
        std::size_t place = slot.hash & mask;
        while (slots_[place].entry != none)
            place = (place + 1) & mask;
        slots_[place] = slot;
    }
}

namespace {

std::uint32_t HashOf(std::string_view key) {
    return static_cast<std::uint32_t>(std::hash<std::string_view>{}(key));
}

} // namespace

Entry& Entries::At(std::string_view name) {
    if (entries_.size() * 4 >= slots_.size() * 3)
        Grow();
    Name buffer;
    const std::string_view key = KeyOf(name, buffer);
    const std::uint32_t hash = HashOf(key);
    Slot& slot = SlotOf(key, hash);
    if (slot.entry != none)
        return entries_[slot.entry];
    Entry& entry = entries_.emplace_back();
    entry.name = arena_.Keep(name);
    const bool isPart = key.data() >= name.data() && key.data() <= name.data() + name.size();
    entry.key = isPart ? entry.name.substr(static_cast<std::size_t>(key.data() - name.data()), key.size())
                       : arena_.Keep(key);
    slot = {static_cast<std::uint32_t>(entries_.size() - 1), hash};
    return entry;
}

Entry* Entries::Find(std::string_view key) {
    if (slots_.empty())
        return nullptr;
    const Slot& slot = SlotOf(key, HashOf(key));
    return slot.entry == none ? nullptr : &entries_[slot.entry];
}

const KeptDigest* Entries::Keep(std::uint32_t function, std::span<const std::byte> digest,
                                const KeptDigest* next) {
    std::byte* const place = arena_.Take(sizeof(KeptDigest) + digest.size());
    auto* const kept = new (place) KeptDigest{next, function, static_cast<std::uint32_t>(digest.size())};
    std::ranges::copy(digest, place + sizeof(KeptDigest));
    return kept;
}

const Content* Entries::Keep(const Content& content) {
    return new (arena_.Take(sizeof content)) Content(content);
}

const KeptDigest* DigestOf(const KeptDigest* digests, std::uint32_t function) {
    while (digests != nullptr && digests->function != function)
        digests = digests->next;
    return digests;
}

bool HoldsAll(const KeptDigest* listed, const KeptDigest* found) {
    for (; listed != nullptr; listed = listed->next) {
        const KeptDigest* const digest = DigestOf(found, listed->function);
        if (digest == nullptr || !std::ranges::equal(listed->Bytes(), digest->Bytes()))
            return false;
    }
    return true;
}

} // namespace sum
