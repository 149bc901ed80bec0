// SPDX-License-Identifier: MIT
// The start of a run can be taken away here while a walk is somewhere else.
#include "app/TargetEnumeration.h"

#include "app/HashTable.h"
#include "support/ReadObserver.h"
#include "tests/helpers/ScratchFiles.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace {

namespace fs = std::filesystem;

fs::path startDirectory;

struct RemoveStart final : ReadObserver {
    void Begin(std::int64_t) noexcept override { fs::remove_all(startDirectory); }
    bool Read(std::size_t) noexcept override { return true; }
};

class WhereTheStartIsLost : public testing::Test {
  protected:
    WhereTheStartIsLost() {
        for (const char* const name : {"start", "one", "two"})
            fs::create_directory(scratch.Directory() / name);
        for (const char* const name : {"one/a", "two/b", "c"})
            scratch.Write(name, "x");
        startDirectory = scratch.Directory() / "start";
        fs::current_path(startDirectory);
        readObserver = &removeStart; // while the first file is read
        SelectRow(context, 14);
    }
    ~WhereTheStartIsLost() override {
        readObserver = nullptr;
        fs::current_path(before);
    }

    // What is printed for these targets.
    std::string Report(std::initializer_list<std::wstring> targets) {
        testing::internal::CaptureStdout();
        for (const std::wstring& target : targets)
            ProcessTarget(context, target.c_str());
        return testing::internal::GetCapturedStdout();
    }
    std::wstring Path(const char* name) const { return (scratch.Directory() / name).wstring(); }

    RemoveStart removeStart;
    const std::string digest = "  9dd4e461268c8034f5c8564e155c67a6\n"; // MD5 of "x"

    const fs::path before = fs::current_path();
    const helpers::ScratchFiles scratch;
    RunContext context;
};

TEST_F(WhereTheStartIsLost, FullPathsAreStillProcessedAndRelativeOnesAreNot) {
    EXPECT_EQ(Report({Path("one"), L"a", L"..\\c", Path("two"), L"*", Path("c")}),
              "a\n" + digest + "b\n" + digest + "c\n" + digest);
    EXPECT_FALSE(fs::exists(startDirectory));
}

TEST_F(WhereTheStartIsLost, AFileNamedDirectlyKeepsItsName) {
    context.rename = true;
    Report({Path("one"), Path("c"), Path("two")});
    EXPECT_TRUE(fs::exists(scratch.Directory() / "c"));
    EXPECT_FALSE(fs::exists(scratch.Directory() / "one" / "a"));
    EXPECT_FALSE(fs::exists(scratch.Directory() / "two" / "b"));
}

} // namespace
