#include "monkey/monkey.h"
#include "support/seed.h"

#include <QMessageBox>
#include <QTabWidget>

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>

namespace varda::monkey {
namespace {

constexpr int usualActions = 4000;

int wantedActions() {
    const char* const wanted = std::getenv("VARDA_MONKEY");
    return wanted == nullptr ? usualActions : std::atoi(wanted);
}

/// Plays until something does not fit. @return what, and the way there; empty where all fitted
std::string play(Monkey& monkey, int actions) {
    for (int action = 0; action < actions; ++action) {
        const std::string finding = monkey.act();
        if (!finding.empty()) {
            return "action " + std::to_string(action) + ": " + finding + "\nbefore it:\n" + monkey.story();
        }
    }
    return {};
}

} // namespace

TEST(Monkey, FindsNothing) {
    const auto seed = test::wantedSeed();
    ASSERT_TRUE(seed.has_value()) << "VARDA_SEED is no seed";
    const int actions = wantedActions();
    ASSERT_GT(actions, 0) << "VARDA_MONKEY is no number of actions";
    std::cout << "seed " << *seed << ", " << actions << " actions (VARDA_SEED, VARDA_MONKEY)" << std::endl;
    Monkey monkey(*seed);
    EXPECT_EQ(play(monkey, actions), "");
}

TEST(Monkey, DoesTheSameOnceMore) {
    const auto storyOf = [](std::uint64_t seed) {
        Monkey monkey(seed);
        EXPECT_EQ(play(monkey, 150), "");
        return monkey.story();
    };
    EXPECT_EQ(storyOf(5), storyOf(5));
    EXPECT_NE(storyOf(5), storyOf(6));
}

// What it would not see if it looked at nothing.

TEST(Monkey, SeesBytesThatNobodyWasToldOf) {
    Monkey monkey(1);
    monkey.window().paste("cbPort", "COM1");
    monkey.window().click("cmdCommTest");
    monkey.window().click("cmdPortOpen");
    monkey.window().window().link().port().write({0x2A});
    EXPECT_NE(monkey.look().find("0 frames"), std::string::npos);
}

TEST(Monkey, SeesAnOptionThatIsNotThePage) {
    Monkey monkey(1);
    monkey.window().find<QTabWidget>("tabMode")->blockSignals(true);
    monkey.window().find<QTabWidget>("tabMode")->setCurrentIndex(3);
    EXPECT_NE(monkey.look().find("option"), std::string::npos);
}

TEST(Monkey, SeesADefectThatIsReported) {
    Monkey monkey(1);
    QMessageBox box(QMessageBox::Warning, QString(), QStringLiteral("A defect of this program: planted."));
    box.open();
    EXPECT_NE(monkey.look().find("planted"), std::string::npos);
}

} // namespace varda::monkey
