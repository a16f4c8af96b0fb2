#include "core/protocol/frame_text.h"
#include "support/driven_window.h"
#include "window/bench/bench_fixture.h"

#include <algorithm>
#include <functional>

namespace varda::test {
namespace {

/// What went over the line, and when.
using Traffic = std::vector<FarEnd::Write>;

std::string inWords(const Traffic& traffic) {
    std::string text;
    for (const FarEnd::Write& write : traffic) {
        text += std::to_string(write.time.count()) + ':';
        for (const std::uint8_t byte : write.bytes) {
            text += ' ' + std::to_string(byte);
        }
        text += '\n';
    }
    return text;
}

/// What a user has done to the bench before, or does in between.
struct Bystander {
    const char* name;
    std::function<void(DrivenWindow&)> atFirst;
    std::function<void(DrivenWindow&)> inBetween;
};

/// A user's hands on every page, with a far end that answers each request, or asks in the simulation.
class DrivenSession {
public:
    explicit DrivenSession(const Bystander& bystander) : bystander_(bystander) {
        bystander_.atFirst(window_);
        window_.paste("cbPort", "COM1");
        window_.click("cmdCommTest");
        window_.click("cmdPortOpen");
    }

    std::string traffic() {
        readAndWrite();
        mix();
        runAScenario();
        simulate();
        window_.click("cmdPortOpen");
        return inWords(traffic_);
    }

private:
    void readAndWrite() {
        window_.click("optMode_0");
        choose("optRead_1", "cbRegister", "cbRegAddress");
        window_.choose("cbRLength", 1);
        window_.click("chkRTimer");
        window_.click("cmdRDSend");
        pass(3000);
        window_.click("chkRTimer");
        window_.click("optMode_1");
        choose("optWrite_1", "cbWRegister", "cbWRegAddress");
        window_.choose("cbWLength", 0);
        window_.click("cmdWDSend");
        pass(1500);
    }
    void mix() {
        window_.click("optMode_2");
        choose("optMRead_1", "cbMRegister", "cbMRegAddress");
        window_.click("cmdMRAdd");
        window_.click("cmdMRDSend");
        pass(1500);
        window_.click("optMode_3");
        choose("optMWrite_1", "cbMWRegister", "cbMWRegAddress");
        window_.paste("txtMWData", "12");
        window_.click("cmdMWAdd");
        window_.click("cmdMWDSend");
        pass(1500);
    }
    void choose(const char* option, const char* kind, const char* number) {
        window_.click(option);
        window_.choose(kind, 6); // W
        window_.choose(number, 57);
    }
    void runAScenario() {
        write("two.scn", "[Information]\nTotal=2\n[Scenario]\nScenario0=FF FF 23 03 00 02 01 05 23 \n"
                         "Scenario1=FF FF 21 03 00 00 08 BD 85 \n");
        window_.click("optMode_0");
        window_.click("cmdLoadScenario");
        window_.chooseFile("two.scn");
        window_.paste("txtScnPeriod", "400");
        window_.click("cmdRunScenario");
        pass(4000);
        isAnswering_ = false; // a silence ends it
        pass(9000);
        isAnswering_ = true;
    }
    void simulate() {
        write("pairs.ini", "[Information]\nTotal=1\n[Receive]\n0=FFFF23030002010523\n"
                           "[Send]\n0=FFFFA3023412ABCD\n");
        window_.click("optMode_4");
        window_.click("cmdLoadSimPacket");
        window_.chooseFile("pairs.ini");
        isAnswering_ = false;
        for (const char* const request :
             {"FF FF 23 03 00 02 01 05 23 ", "FF FF 21 03 00 00 08 BD 85 ", "01 02 03 "}) {
            window_.farEnd().deliver(bytesOfText(request));
            pass(700);
        }
        isAnswering_ = true;
    }

    /// Lets time pass; each request is answered 20 ms later.
    void pass(int milliseconds) {
        bystander_.inBetween(window_);
        for (int passed = 0; passed < milliseconds; passed += 20) {
            window_.advance(20);
            for (FarEnd::Write& write : window_.farEnd().takeWritten()) {
                if (const auto answer = isAnswering_ ? controller_.answer(write.bytes) : std::nullopt) {
                    window_.farEnd().deliver(*answer);
                }
                traffic_.push_back(std::move(write));
            }
        }
    }
    void write(const char* name, const std::string& text) {
        std::ofstream(window_.folder().file(name), std::ios::binary) << text;
    }

    const Bystander& bystander_;
    Controller controller_; ///< the far end's
    DrivenWindow window_;
    bool isAnswering_ = true;
    Traffic traffic_;
};

void nothing(DrivenWindow& /*window*/) {}

QWidget* onBench(DrivenWindow& window, const char* name) {
    return window.window().bench().window()->findChild<QWidget*>(QLatin1String(name));
}

void openBench(DrivenWindow& window) { window.click("openBench"); }

/// Looks at the next tab.
void turnOver(DrivenWindow& window) {
    auto* const tabs = qobject_cast<QTabWidget*>(onBench(window, "benchTabs"));
    tabs->setCurrentIndex((tabs->currentIndex() + 1) % tabs->count());
}

void press(DrivenWindow& window, const char* button) {
    qobject_cast<QAbstractButton*>(onBench(window, button))->click();
}

/// Ticked faults that are not on, a living controller that was on for a while, and both closed again.
void switchAllOnAndOff(DrivenWindow& window) {
    openBench(window);
    auto* const faults = qobject_cast<QLineEdit*>(onBench(window, "faultText"));
    faults->setText(QStringLiteral("drop@2nd,late=50..200"));
    QTest::keyClick(faults, Qt::Key_Return);
    for (const char* const button : {"faultsOn", "answerFromMemory", "faultsOn", "answerFromMemory"}) {
        press(window, button);
    }
    openBench(window); // closes it
}

class BenchBesidePagesTest : public testing::TestWithParam<Bystander> {};

TEST_P(BenchBesidePagesTest, WithNothingOnTheSameBytesGoOutAtTheSameTimes) {
    static const Bystander nobody = {"nobody", nothing, nothing};
    static const std::string without = DrivenSession(nobody).traffic();
    for (const int code : {0x23, 0x24, 0x25, 0x26, 0x21, 0xA3}) { // of every page
        EXPECT_NE(without.find(": 255 255 " + std::to_string(code) + ' '), std::string::npos) << without;
    }
    EXPECT_GT(std::count(without.begin(), without.end(), '\n'), 20) << without;
    EXPECT_EQ(DrivenSession(GetParam()).traffic(), without);
}
INSTANTIATE_TEST_SUITE_P(Bystanders, BenchBesidePagesTest,
                         testing::Values(Bystander{"Opened", openBench, nothing},
                                         Bystander{"LookedAt", openBench, turnOver},
                                         Bystander{"OnAndOff", switchAllOnAndOff, nothing}),
                         [](const auto& bystander) { return std::string(bystander.param.name); });

/// The proof above sees a difference where there is one.
TEST(BenchBesidePages, WhatIsOnMakesADifference) {
    const auto answerFromMemory = [](DrivenWindow& window) {
        openBench(window);
        press(window, "answerFromMemory");
    };
    const Bystander nobody = {"nobody", nothing, nothing};
    const Bystander living = {"living", answerFromMemory, nothing};
    const std::string without = DrivenSession(nobody).traffic();
    const std::string with = DrivenSession(living).traffic();
    EXPECT_EQ(with.substr(0, 200), without.substr(0, 200)) << "the pages ask as ever";
    EXPECT_EQ(std::count(with.begin(), with.end(), '\n'),
              std::count(without.begin(), without.end(), '\n') + 1)
        << "the request that no pair answers";
}

} // namespace
} // namespace varda::test
