// SPDX-License-Identifier: MIT
#include "platform/Snapshot_Posix.h"

#include <algorithm>
#include <cstdint>
#include <dirent.h>
#include <vector>

namespace platform {

namespace {

constexpr char recordStart = '\0'; // stands in no name
constexpr std::size_t headerSize = 2;

char UpperAscii(char character) {
    return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A') : character;
}

bool IsSelfOrParent(std::string_view name) {
    return name == "." || name == "..";
}

// Whether `a` is handed out before `b`.
bool ComesFirst(std::string_view a, std::string_view b) {
    if (IsSelfOrParent(a) != IsSelfOrParent(b))
        return IsSelfOrParent(a);
    for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i)
        if (UpperAscii(a[i]) != UpperAscii(b[i]))
            return static_cast<unsigned char>(UpperAscii(a[i])) <
                   static_cast<unsigned char>(UpperAscii(b[i]));
    return a.size() != b.size() ? a.size() < b.size() : a < b;
}

// The records in the order in which the system lists them.
std::string ReadRecords(DIR* directory, const std::function<bool(std::string_view)>& accepts) {
    std::string records;
    while (const dirent* const entry = readdir(directory)) {
        if (!accepts(entry->d_name))
            continue;
        records += recordStart;
        records += static_cast<char>(entry->d_type + 1); // never zero
        records += entry->d_name;
    }
    return records;
}

std::string_view RecordAt(std::string_view records, std::size_t offset) {
    return records.substr(offset, records.find(recordStart, offset + 1) - offset);
}

std::string_view NameOf(std::string_view record) {
    return record.substr(headerSize);
}

// The same records, the first in order at the end.
std::string SortRecords(std::string_view records) {
    std::vector<std::size_t> offsets;
    for (std::size_t i = 0; i < records.size(); i = records.find(recordStart, i + 1))
        offsets.push_back(i);
    std::sort(offsets.begin(), offsets.end(), [records](std::size_t a, std::size_t b) {
        return ComesFirst(NameOf(RecordAt(records, b)), NameOf(RecordAt(records, a)));
    });
    std::string sorted;
    sorted.reserve(records.size());
    for (const std::size_t offset : offsets)
        sorted += RecordAt(records, offset);
    return sorted;
}

} // namespace

Snapshot::Snapshot(const char* path, const std::function<bool(std::string_view)>& accepts) {
    struct Directory {
        DIR* stream;
        ~Directory() {
            if (stream != nullptr)
                closedir(stream);
        }
    };
    const Directory directory{opendir(path)};
    if (directory.stream != nullptr)
        records_ = SortRecords(ReadRecords(directory.stream, accepts));
}

bool Snapshot::TakeNext(Entry& entry) {
    if (records_.empty())
        return false;
    const std::size_t start = records_.rfind(recordStart);
    entry.type = static_cast<unsigned char>(records_[start + 1] - 1);
    entry.name = records_.substr(start + headerSize);
    records_.resize(start);
    if (records_.size() < records_.capacity() / 2)
        records_.shrink_to_fit();
    return true;
}

} // namespace platform
