#include "core/link/period.h"

#include "support/fake_form.h"
#include "support/manual_clock.h"

#include <gtest/gtest.h>

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
    ManualClock clock;
    FakeForm form;
    int ticks = 0;
    ManualTimer tmrComm{clock, [this] { ++ticks; }};
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
    for (const char* const field :
         {"txtReadTimerValue", "txtWriteTimerValue", "txtMReadTimerValue", "txtMWriteTimerValue"}) {
        tmrComm.setInterval(7);
        tmrComm.stop();
        form.setText(field, GetParam().text);

        takePeriod(form, tmrComm, field);

        EXPECT_EQ(form.text(field), GetParam().shown);
        EXPECT_EQ(tmrComm.interval(), GetParam().interval);
        EXPECT_TRUE(tmrComm.isRunning());
    }
    EXPECT_TRUE(form.messages().empty());
}

TEST_P(PeriodTest, RewritingTheFieldMayRunItsChangeHandlerAgain) {
    form.onTextChange("txtReadTimerValue", [this] { takePeriod(form, tmrComm, "txtReadTimerValue"); });
    form.setText("txtReadTimerValue", "7000");
    form.setText("txtReadTimerValue", GetParam().text);

    EXPECT_EQ(form.text("txtReadTimerValue"), GetParam().shown);
    EXPECT_EQ(tmrComm.interval(), GetParam().interval);
    EXPECT_TRUE(tmrComm.isRunning());
}

TEST_F(PeriodTest, TimerIsStoppedWhileTheFieldIsRewritten) {
    tmrComm.setInterval(500);
    tmrComm.start();
    form.setText("txtReadTimerValue", "50");
    int rewritten = 0;
    form.onTextChange("txtReadTimerValue", [&] {
        ++rewritten;
        EXPECT_FALSE(tmrComm.isRunning());
    });
    takePeriod(form, tmrComm, "txtReadTimerValue");
    EXPECT_EQ(rewritten, 1);
    EXPECT_TRUE(tmrComm.isRunning());
}

TEST_F(PeriodTest, ChangeStartsTheFullPeriodAnew) {
    tmrComm.setInterval(500);
    tmrComm.start();
    clock.advance(400);
    form.setText("txtReadTimerValue", "300");
    takePeriod(form, tmrComm, "txtReadTimerValue");

    clock.advance(299);
    EXPECT_EQ(ticks, 0);
    clock.advance(1);
    EXPECT_EQ(ticks, 1);
}

TEST_F(PeriodTest, ChangeToTheSamePeriodStartsItAnewToo) {
    tmrComm.setInterval(500);
    tmrComm.start();
    clock.advance(400);
    form.setText("txtReadTimerValue", "500");
    takePeriod(form, tmrComm, "txtReadTimerValue");

    clock.advance(499);
    EXPECT_EQ(ticks, 0);
    clock.advance(1);
    EXPECT_EQ(ticks, 1);
}

} // namespace
} // namespace varda::test
