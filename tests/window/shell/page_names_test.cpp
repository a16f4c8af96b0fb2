#include "window/shell/page_names.h"

#include "support/master_pages.h"

#include <gtest/gtest.h>

namespace varda::test {
namespace {

class PageNamesTest : public testing::TestWithParam<MasterPage> {
protected:
    Mode bitMode() const { return Mode{GetParam().bitMode}; }
    const window::PageNames& names() const { return *window::findPageNames(bitMode()); }
};

INSTANTIATE_TEST_SUITE_P(Pages, PageNamesTest, testing::ValuesIn(masterPages()), PageName());

TEST_P(PageNamesTest, RouteIsFoundByBothModesOfThePage) {
    const Mode wordMode{GetParam().wordMode};
    ASSERT_NE(findRoute(bitMode()), nullptr);
    EXPECT_EQ(findRoute(bitMode()), findRoute(wordMode));
    EXPECT_EQ(findRoute(bitMode())->bitMode, bitMode());
    EXPECT_EQ(findRoute(bitMode())->wordMode, wordMode);
    EXPECT_EQ(findRoute(bitMode())->repeatsOnlyWhenAnswered, GetParam().repeatsOnlyWhenAnswered);
    EXPECT_EQ(&names(), window::findPageNames(wordMode));
}

TEST_P(PageNamesTest, AreThoseOfThePage) {
    EXPECT_EQ(names().periodField, GetParam().periodField);
    EXPECT_EQ(names().sendButton, GetParam().sendButton);
    EXPECT_EQ(names().answer, GetParam().answer);
}

TEST_P(PageNamesTest, KeepTheWrongTargetsOfTheMixedPages) {
    EXPECT_EQ(names().enabledByOpening, GetParam().enabledByOpening);
    EXPECT_EQ(names().completionStatus, GetParam().completionStatus);
    EXPECT_EQ(names().silenceStatus, GetParam().silenceStatus);
}

TEST(RoutesTest, StandInTheOrderOfTheModeOptions) {
    const auto pages = masterPages();
    ASSERT_EQ(masterRoutes().size(), pages.size());
    for (std::size_t i = 0; i < pages.size(); ++i) {
        EXPECT_EQ(masterRoutes()[i].bitMode, Mode{pages[i].bitMode});
        EXPECT_EQ(window::pageNames()[i].bitMode, Mode{pages[i].bitMode});
    }
}

TEST(RoutesTest, NoOtherModeHasARoute) {
    for (int mode = -32768; mode <= 32767; ++mode) {
        const bool isMaster = mode >= 0x21 && mode <= 0x26;
        ASSERT_EQ(findRoute(Mode{static_cast<std::int16_t>(mode)}) != nullptr, isMaster) << mode;
    }
}

} // namespace
} // namespace varda::test
