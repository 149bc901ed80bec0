// SPDX-License-Identifier: MIT
// One object of every engine hashes thousands of files, and nothing of them stays.
#include "app/HashTable.h"

#include "tests/helpers/Bytes.h"
#include "tests/helpers/OpenDescriptors_Posix.h"
#include "tests/helpers/ScratchFiles.h"

#include <gtest/gtest.h>
#include <malloc.h>

#include <map>

namespace {

#ifdef __SANITIZE_ADDRESS__
constexpr std::size_t fileCount = 1'000; // large buffers are slow there
#else
constexpr std::size_t fileCount = 10'000;
#endif

struct Holdings {
    std::size_t memory;      // bytes that are allocated
    std::size_t descriptors; // that are open
};

Holdings HoldingsNow() {
    const struct mallinfo2 memory = mallinfo2();
    return {memory.uordblks + memory.hblkhd, OpenDescriptors()};
}

// The rows by family: "MD6-128" is one of "MD6".
std::map<std::wstring, std::vector<const HashRow*>> Families() {
    std::map<std::wstring, std::vector<const HashRow*>> families;
    for (const HashRow& row : hashTable) {
        const std::wstring name = row.name;
        families[name.substr(0, name.find(L'-'))].push_back(&row);
    }
    return families;
}

class Sequence : public testing::Test {
  protected:
    Sequence() {
        for (std::size_t length = 0; length < 4000; length += 97)
            paths_.push_back(
                files_.Write(std::to_string(length), helpers::PseudoRandomBytes(length, length)));
        saltPath_ = files_.Write("salt", helpers::PseudoRandomBytes(77, 1));
    }

    void LoadSalt(RunContext& context) const {
        for (const HashRow& row : hashTable)
            if (row.saltedEngine != nullptr)
                row.saltedEngine(context).SetSalt_FromFile(saltPath_.c_str(), EnumSaltType::Both);
        context.blake2.SetSalt_FromFile(saltPath_.c_str(), EnumSaltType::Both);
    }

    // The digest that an engine gives which has hashed nothing before.
    std::string FreshText(const HashRow& row, const std::wstring& path, bool salted) const {
        const auto context = std::make_unique<RunContext>();
        if (salted)
            LoadSalt(*context);
        return row.hash(*context, path.c_str()) ? context->hashText : "failed";
    }

    void ExpectFreshDigests(bool salted) {
        if (salted)
            LoadSalt(context_);
        for (const auto& [name, rows] : Families()) {
            std::map<std::pair<const HashRow*, std::size_t>, std::string> expected;
            for (const HashRow* row : rows)
                for (std::size_t i = 0; i < paths_.size(); ++i)
                    expected[{row, i}] = FreshText(*row, paths_[i], salted);
            const Holdings before = HoldingsNow();
            for (std::size_t i = 0; i < fileCount; ++i) {
                const HashRow* const row = rows[i % rows.size()];
                const std::size_t file = i * 29 % paths_.size();
                ASSERT_TRUE(row->hash(context_, paths_[file].c_str()));
                ASSERT_EQ(context_.hashText, (expected[{row, file}])) << row->name << ", file " << i;
            }
            const Holdings after = HoldingsNow();
            EXPECT_LE(after.memory, before.memory + 4096) << name;
            EXPECT_EQ(after.descriptors, before.descriptors) << name;
        }
    }

    helpers::ScratchFiles files_;
    std::vector<std::wstring> paths_;
    std::wstring saltPath_;
    RunContext context_;
};

TEST_F(Sequence, TenThousandFilesPerEngineLeaveNothingBehind) {
    ExpectFreshDigests(false);
}

TEST_F(Sequence, TenThousandSaltedFilesPerEngineLeaveNothingBehind) {
    ExpectFreshDigests(true);
}

} // namespace
