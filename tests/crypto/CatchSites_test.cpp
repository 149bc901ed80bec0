// SPDX-License-Identifier: MIT
// The catch sites as they stand in the sources, compared with a typed list.
#include "tests/helpers/VectorLines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>

namespace {

using Lines = std::vector<std::string>;

// The sources that hold members with catch sites.
std::vector<std::filesystem::path> Sources() {
    std::vector<std::filesystem::path> sources = {FYRN_SOURCE_DIR "/support/StringHelper.cpp"};
    for (const auto& entry : std::filesystem::directory_iterator(FYRN_SOURCE_DIR "/crypto"))
        if (entry.path().extension() == ".cpp")
            sources.push_back(entry.path());
    return sources;
}

std::string Read(const std::filesystem::path& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::ptrdiff_t Count(const std::string& text, const char* pattern) {
    const std::regex regex(pattern);
    return std::distance(std::sregex_iterator(text.begin(), text.end(), regex), std::sregex_iterator());
}

// The texts of adjacent literals as one.
std::string Joined(const std::string& literals) {
    return std::regex_replace(literals, std::regex("\"\\s*\""), "");
}

// The sites of one source, each as "source line signature".
Lines SitesIn(const std::filesystem::path& source) {
    static const std::regex site("\\}\\s*CATCH_SITE(?:_AT\\(\\s*([0-9]+),|_WITH\\([^\"]*,|\\()\\s*"
                                 "\"([^\"]*(?:\"\\s*\"[^\"]*)*)\"\\)");
    const std::string text = Read(source);
    Lines sites;
    for (std::sregex_iterator match(text.begin(), text.end(), site), end; match != end; ++match) {
        const std::string line = (*match)[1].matched ? (*match)[1].str() : "-";
        sites.push_back(source.stem().string() + " " + line + " " + Joined((*match)[2]));
    }
    return sites;
}

Lines AllSites() {
    Lines all;
    for (const auto& source : Sources())
        std::ranges::copy(SitesIn(source), std::back_inserter(all));
    return all;
}

TEST(CatchSites, AreThoseThatAreListed) {
    const Lines listed = helpers::VectorLines("catch_sites.txt");
    EXPECT_GE(listed.size(), 66u);
    EXPECT_THAT(AllSites(), testing::UnorderedElementsAreArray(listed));
}

TEST(CatchSites, StandBehindEveryTryAndAreTheOnlyWayToCatch) {
    for (const auto& source : Sources()) {
        const std::string text = Read(source);
        EXPECT_EQ(Count(text, "\\btry \\{"), std::ssize(SitesIn(source))) << source;
        EXPECT_EQ(Count(text, "\\bcatch\\b\\s*\\("), 0) << source;
    }
}

} // namespace
