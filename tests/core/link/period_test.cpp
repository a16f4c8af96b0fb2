#include "core/link/period.h"

#include "support/manual_clock.h"

#include <gtest/gtest.h>

#include <string>

namespace varda::test {
namespace {

struct Typed {
    std::string text;
    std::string shown;
    int interval;
};

std::ostream& operator<<(std::ostream& out, const Typed& typed) { return out << '"' << typed.text << '"'; }

class PeriodTest : public testing::TestWithParam<Typed> {
protected:
    /// The Change handler of the field.
    void change() {
        takePeriod(tmrComm, field, [this](int period) {
            ++rewritten;
            wasRunning |= tmrComm.isRunning();
            type(std::to_string(period));
        });
    }
    void type(const std::string& text) {
        const bool changed = field != text;
        field = text;
        if (changed) {
            change();
        }
    }

    ManualClock clock;
    int ticks = 0;
    ManualTimer tmrComm{clock, [this] { ++ticks; }};
    std::string field = "500";
    int rewritten = 0;
    bool wasRunning = false; ///< while the field was rewritten
};

INSTANTIATE_TEST_SUITE_P(
    Texts, PeriodTest,
    testing::Values(Typed{"100", "100", 100}, Typed{"101", "101", 101}, Typed{"250", "250", 250},
                    Typed{"32767", "32767", 32767}, Typed{"&H80", "&H80", 128}, Typed{" 250 ", " 250 ", 250},
                    // below 100
                    Typed{"99", "100", 100}, Typed{"50", "100", 100}, Typed{"1", "100", 100},
                    Typed{"0", "100", 100}, Typed{"-1", "100", 100}, Typed{"-32768", "100", 100},
                    Typed{"&HFFFF", "100", 100},
                    // no 16-bit number
                    Typed{"abc", "500", 500}, Typed{"", "500", 500}, Typed{" ", "500", 500},
                    Typed{"32768", "500", 500}, Typed{"65535", "500", 500}, Typed{"65536", "500", 500},
                    Typed{"99999999999999999999", "500", 500}, Typed{"-32769", "500", 500},
                    Typed{"100x", "500", 500}));

TEST_P(PeriodTest, TextBecomesTheIntervalOfTheRunningTimer) {
    tmrComm.setInterval(7);
    takePeriod(tmrComm, GetParam().text, [this](int period) {
        field = std::to_string(period);
        ++rewritten;
    });

    EXPECT_EQ(rewritten, GetParam().shown == GetParam().text ? 0 : 1);
    EXPECT_EQ(rewritten == 0 ? GetParam().text : field, GetParam().shown);
    EXPECT_EQ(tmrComm.interval(), GetParam().interval);
    EXPECT_TRUE(tmrComm.isRunning());
}

TEST_P(PeriodTest, RewritingTheFieldMayRunItsChangeHandlerAgain) {
    type("7000");
    type(GetParam().text);

    EXPECT_EQ(field, GetParam().shown);
    EXPECT_EQ(tmrComm.interval(), GetParam().interval);
    EXPECT_TRUE(tmrComm.isRunning());
}

TEST_F(PeriodTest, TimerIsStoppedWhileTheFieldIsRewritten) {
    tmrComm.setInterval(500);
    tmrComm.start();
    type("50");
    EXPECT_EQ(rewritten, 1);
    EXPECT_FALSE(wasRunning);
    EXPECT_TRUE(tmrComm.isRunning());
}

TEST_F(PeriodTest, ChangeStartsTheFullPeriodAnew) {
    tmrComm.setInterval(500);
    tmrComm.start();
    clock.advance(400);
    type("300");

    clock.advance(299);
    EXPECT_EQ(ticks, 0);
    clock.advance(1);
    EXPECT_EQ(ticks, 1);
}

TEST_F(PeriodTest, ChangeToTheSamePeriodStartsItAnewToo) {
    tmrComm.setInterval(500);
    tmrComm.start();
    clock.advance(400);
    type(" 500");

    clock.advance(499);
    EXPECT_EQ(ticks, 0);
    clock.advance(1);
    EXPECT_EQ(ticks, 1);
}

} // namespace
} // namespace varda::test
