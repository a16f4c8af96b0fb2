#include "core/files/profile_file.h"
#include "core/runs/scenario_file.h"

#include <gtest/gtest.h>

#include <vector>

namespace varda::test {
namespace {

ProfileFile parsed(const char* text) { return ProfileFile::parse(text); }

TEST(ScenarioFile, TwoLinesAreStoredUnderTheirKeys) {
    ProfileFile file = parsed("");
    storeScenario(std::vector<std::string>{"01 02 ", "03 04 "}, file);
    EXPECT_EQ(file.text(),
              "[Information]\r\nTotal=2\r\n[Scenario]\r\nScenario0=01 02\r\nScenario1=03 04\r\n");
}

TEST(ScenarioFile, StoredLinesAreLoadedInTheirOrder) {
    ProfileFile file = parsed("");
    std::vector<std::string> lines;
    for (int line = 0; line < 5000; ++line) {
        lines.push_back("01 " + std::to_string(line % 90 + 10));
    }
    storeScenario(lines, file);
    const auto loaded = loadScenario(file);
    ASSERT_TRUE(loaded.has_value());
    EXPECT_TRUE(loaded->isComplete);
    EXPECT_EQ(loaded->lines, lines);
}

TEST(ScenarioFile, MissingLineEndsTheLoading) {
    const auto loaded =
        loadScenario(parsed("[Information]\nTotal=3\n[Scenario]\nScenario0=01\nScenario1=02\n"));
    ASSERT_TRUE(loaded.has_value());
    EXPECT_FALSE(loaded->isComplete);
    EXPECT_EQ(loaded->lines, (std::vector<std::string>{"01", "02"}));
}

TEST(ScenarioFile, EmptyLineCountsAsMissing) {
    const auto loaded =
        loadScenario(parsed("[Information]\nTotal=3\n[Scenario]\nScenario0=01\nScenario1=\nScenario2=03\n"));
    ASSERT_TRUE(loaded.has_value());
    EXPECT_EQ(loaded->lines.size(), 1U);
}

TEST(ScenarioFile, TotalThatIsNoNumberAboveZeroIsNoScenario) {
    for (const char* const text :
         {"", "[Information]\n", "[Information]\nTotal=\n", "[Information]\nTotal=0\n",
          "[Information]\nTotal=-3\n", "[Information]\nTotal=many\n", "[Information]\nTotal=99999999999\n",
          "[Scenario]\nScenario0=01\n"}) {
        EXPECT_FALSE(loadScenario(parsed(text)).has_value()) << text;
    }
}

TEST(ScenarioFile, HugeTotalEndsAtTheFirstMissingLine) {
    const auto loaded = loadScenario(parsed("[Information]\nTotal=2147483647\n[Scenario]\nScenario0=01\n"));
    ASSERT_TRUE(loaded.has_value());
    EXPECT_EQ(loaded->lines.size(), 1U);
}

} // namespace
} // namespace varda::test
