#include "core/link/routes.h"

#include "core/link/master_pages.h"
#include "support/fake_form.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace varda::test {
namespace {

std::vector<std::string> sorted(std::vector<std::string> names) {
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<std::string> sorted(const std::vector<std::string_view>& names) {
    return sorted(std::vector<std::string>(names.begin(), names.end()));
}

class RouteTest : public testing::TestWithParam<MasterPage> {
protected:
    const Route& route() const { return *findRoute(GetParam().bitMode); }
    FakeForm form;
};

INSTANTIATE_TEST_SUITE_P(Pages, RouteTest, testing::ValuesIn(masterPages()), PageName());

TEST_P(RouteTest, IsFoundByBothModesOfThePage) {
    ASSERT_NE(findRoute(GetParam().bitMode), nullptr);
    EXPECT_EQ(findRoute(GetParam().bitMode), findRoute(GetParam().wordMode));
}

TEST_P(RouteTest, NamesTheControlsOfThePage) {
    const auto& page = GetParam();
    EXPECT_EQ(route().bitMode, page.bitMode);
    EXPECT_EQ(route().wordMode, page.wordMode);
    EXPECT_EQ(route().bitOption, page.bitOption);
    EXPECT_EQ(route().wordOption, page.wordOption);
    EXPECT_EQ(route().destination, page.stations[0]);
    EXPECT_EQ(route().source, page.stations[1]);
    EXPECT_EQ(route().length, page.length);
    EXPECT_EQ(route().registerKind, page.kind);
    EXPECT_EQ(route().registerNumber, page.number);
    EXPECT_EQ(route().registerBit, page.bit);
    EXPECT_EQ(route().sendButton, page.sendButton);
    EXPECT_EQ(route().continuousBox, page.continuousBox);
    EXPECT_EQ(route().periodField, page.periodField);
    EXPECT_EQ(route().repeatsOnlyWhenAnswered, page.repeatsOnlyWhenAnswered);
    EXPECT_EQ(route().answer, page.answer);
    EXPECT_EQ(route().status, page.status);
}

TEST_P(RouteTest, KeepsTheWrongTargetsOfTheMixedPages) {
    EXPECT_EQ(route().enabledByOpening, GetParam().enabledByOpening);
    EXPECT_EQ(route().completionStatus, GetParam().completionStatus);
    EXPECT_EQ(route().silenceStatus, GetParam().silenceStatus);
}

TEST_P(RouteTest, SendNeedsRegisterAndNumberAndWithTheBitOptionTheBit) {
    for (const bool bitOption : {true, false}) {
        GetParam().choose(form, bitOption);
        EXPECT_EQ(sorted(fieldsNeededToSend(route(), form)), sorted(GetParam().neededToSend(bitOption)));
    }
}

TEST_P(RouteTest, SendNeedsNothingWhileNeitherOptionIsChosen) {
    EXPECT_TRUE(fieldsNeededToSend(route(), form).empty());
}

TEST_P(RouteTest, RepeatingNeedsTheStationsAndTheLengthTooWhereThePageHasOne) {
    for (const bool bitOption : {true, false}) {
        GetParam().choose(form, bitOption);
        EXPECT_EQ(sorted(fieldsNeededToRepeat(route(), form)), sorted(GetParam().neededToRepeat(bitOption)));
    }
}

TEST(RoutesTest, StandInTheOrderOfTheModeOptions) {
    const auto pages = masterPages();
    ASSERT_EQ(masterRoutes().size(), pages.size());
    for (std::size_t i = 0; i < pages.size(); ++i) {
        EXPECT_EQ(masterRoutes()[i].sendButton, pages[i].sendButton);
    }
}

TEST(RoutesTest, NoOtherModeHasARoute) {
    for (int mode = -32768; mode <= 32767; ++mode) {
        const bool isMaster = mode >= 0x21 && mode <= 0x26;
        ASSERT_EQ(findRoute(static_cast<std::int16_t>(mode)) != nullptr, isMaster) << mode;
    }
}

TEST(RoutesTest, RequestsAreShownInTheSendFieldsOfThePages) {
    EXPECT_EQ(findRoute(0x21)->request, "txtSendRData");
    EXPECT_EQ(findRoute(0x22)->request, "txtSendWData");
    EXPECT_EQ(findRoute(0x25)->request, "txtSendMRData");
    EXPECT_EQ(findRoute(0x26)->request, "txtSendMWData");
}

TEST(RoutesTest, FieldsAreFilledUnlessOneIsEmpty) {
    FakeForm form;
    const std::vector<std::string_view> fields{"txtRDDA", "txtRDSA"};
    EXPECT_FALSE(allFilled(form, fields));
    form.setText("txtRDDA", "255");
    EXPECT_FALSE(allFilled(form, fields));
    form.setText("txtRDSA", " ");
    EXPECT_TRUE(allFilled(form, fields));
    EXPECT_TRUE(allFilled(form, {}));
}

} // namespace
} // namespace varda::test
