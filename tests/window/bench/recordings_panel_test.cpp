#include "core/recordings/recordings.h"
#include "window/bench/bench_fixture.h"

#include <QDoubleSpinBox>
#include <QPlainTextEdit>
#include <QProgressBar>

namespace varda::test {
namespace {

/// A capture of three reads of a word, 300 ms from one to the next, and their answers.
class RecordingsPanelTest : public BenchTest {
protected:
    RecordingsPanelTest() : BenchTest(Recordings) {
        for (const int start : {0, 300, 600}) {
            recording.push_back(sentAt(std::chrono::milliseconds(start), wordRequest));
            recording.push_back(receivedAt(std::chrono::milliseconds(start + 20), wordAnswer));
        }
        writeFile("line.pcapng", captureOf(recording));
    }

    void open(const char* name = "line.pcapng") {
        press("openRecording");
        chooseFile(name);
    }
    /// Lets time pass; each request is answered soon.
    void answerFor(int milliseconds) {
        for (int passed = 0; passed < milliseconds; passed += 10) {
            window.advance(10);
            for (const auto& write : window.farEnd().takeWritten()) {
                times.push_back(static_cast<int>(write.time.count()));
                sent.push_back(write.bytes);
                window.farEnd().deliver(wordAnswer);
            }
        }
    }
    bool isEnabled(const char* name) { return find(name)->isEnabled(); }
    std::string comparison() { return find<QPlainTextEdit>("comparison")->toPlainText().toStdString(); }

    Recording recording;
    std::vector<int> times;
    std::vector<Bytes> sent;
};

TEST_F(RecordingsPanelTest, ACaptureIsOpened) {
    for (const char* const button : {"playRecording", "stepRecording", "stopRecording", "compareRecording"}) {
        EXPECT_FALSE(isEnabled(button)) << button;
    }
    open();
    EXPECT_EQ(label("recordingState"),
              "line.pcapng: 3 sent, 3 received, 69 bytes in 620 ms. 3 frames to play.");
    EXPECT_TRUE(isEnabled("playRecording"));
    EXPECT_TRUE(isEnabled("compareRecording"));
}

TEST_F(RecordingsPanelTest, WhatIsNoCaptureIsToldAndChangesNothing) {
    open();
    writeFile("bad.pcapng", "no capture");
    open("bad.pcapng");
    ASSERT_NE(box(), nullptr);
    EXPECT_NE(box()->text().toStdString().find("bad.pcapng"), std::string::npos);
    EXPECT_EQ(label("recordingState").find("line.pcapng"), 0U);
    EXPECT_TRUE(isEnabled("playRecording"));
}

/// Some megabytes, which are read in more than one piece.
class LargeRecordingTest : public RecordingsPanelTest {
protected:
    LargeRecordingTest() {
        Recording large;
        for (int burst = 0; burst < 20'000; ++burst) {
            large.push_back(sentAt(std::chrono::milliseconds(burst), wordRequest));
        }
        writeFile("large.pcapng", captureOf(large));
    }
    bool isLoading() { return find("loadingPart")->isVisible(); }
    int progress() { return find<QProgressBar>("loadProgress")->value(); }
};

TEST_F(LargeRecordingTest, IsReadWhileTheWindowGoesOn) {
    open();
    openPort();
    press("playRecording");
    open("large.pcapng");
    EXPECT_TRUE(isLoading());
    EXPECT_FALSE(isEnabled("openRecording"));
    EXPECT_FALSE(isEnabled("compareRecording"));
    EXPECT_EQ(label("recordingState").find("line.pcapng"), 0U) << "until it is read";
    EXPECT_GT(progress(), 0);
    EXPECT_LT(progress(), 500);
    int steps = 0;
    for (int before = progress(); isLoading() && steps < 1000; ++steps) {
        EXPECT_GE(progress(), before);
        before = progress();
        window.step();
    }
    EXPECT_GT(steps, 20) << "pieces of the file, and of its bursts";
    EXPECT_EQ(label("recordingState").find("large.pcapng: 20000 sent, 0 received"), 0U);
    EXPECT_TRUE(isEnabled("openRecording"));
    EXPECT_FALSE(isEnabled("stopRecording")) << "what was played is not there any more";
    EXPECT_EQ(written().size(), 1U);
}

TEST_F(LargeRecordingTest, CancelledItLeavesWhatWasThereBefore) {
    open();
    const std::string before = label("recordingState");
    open("large.pcapng");
    window.step();
    ASSERT_TRUE(isLoading());
    press("cancelLoading");
    EXPECT_FALSE(isLoading());
    window.advance(1000);
    EXPECT_EQ(label("recordingState"), before);
    EXPECT_EQ(label("playState").find("0 of 3 frames played"), 0U);
    EXPECT_TRUE(isEnabled("playRecording"));
    EXPECT_TRUE(isEnabled("openRecording"));
    EXPECT_EQ(box(), nullptr);
}

TEST_F(LargeRecordingTest, DamagedInALaterPieceItIsToldAndChangesNothing) {
    open();
    const std::string before = label("recordingState");
    std::string damaged = readFile("large.pcapng");
    damaged[damaged.size() - 1] ^= 1;
    writeFile("damaged.pcapng", damaged);
    open("damaged.pcapng");
    EXPECT_EQ(box(), nullptr);
    window.advance(1000);
    ASSERT_NE(box(), nullptr);
    EXPECT_NE(box()->text().toStdString().find("damaged.pcapng"), std::string::npos);
    EXPECT_EQ(label("recordingState"), before);
    EXPECT_FALSE(isLoading());
}

TEST_F(LargeRecordingTest, IsComparedLikewise) {
    open();
    press("compareRecording");
    chooseFile("large.pcapng");
    EXPECT_TRUE(isLoading());
    EXPECT_EQ(comparison(), "");
    window.advance(1000);
    EXPECT_EQ(comparison().find("line.pcapng and large.pcapng"), 0U);
    EXPECT_EQ(label("recordingState").find("line.pcapng"), 0U) << "stays open";
}

TEST_F(RecordingsPanelTest, IsPlayedWithItsOwnTimingAndThePagesAreOffMeanwhile) {
    open();
    openPort();
    press("playRecording");
    EXPECT_FALSE(window.find("tabMode")->isEnabled());
    EXPECT_FALSE(isEnabled("playRecording"));
    EXPECT_TRUE(isEnabled("stopRecording"));
    answerFor(500);
    EXPECT_EQ(find<QProgressBar>("playProgress")->value(), 2);
    EXPECT_EQ(label("playState"),
              "2 of 3 frames played; mean period 300 ms, recorded 300 ms; at most 0 ms late.");
    answerFor(1000);
    EXPECT_EQ(sent, (std::vector<Bytes>{wordRequest, wordRequest, wordRequest}));
    ASSERT_EQ(times.size(), 3U);
    EXPECT_EQ(times[1] - times[0], 300);
    EXPECT_EQ(times[2] - times[1], 300);
    EXPECT_TRUE(window.find("tabMode")->isEnabled()) << "given back after the last one's end";
    EXPECT_FALSE(isEnabled("playRecording"));
    press("rewindRecording");
    EXPECT_TRUE(isEnabled("playRecording"));
    EXPECT_EQ(window.window().link().state().CommMode, Mode::BitRead);
}

TEST_F(RecordingsPanelTest, IsPlayedFaster) {
    open();
    openPort();
    find<QDoubleSpinBox>("playSpeed")->setValue(2);
    press("playRecording");
    answerFor(1000);
    ASSERT_EQ(times.size(), 3U);
    EXPECT_EQ(times[1] - times[0], 150);
}

TEST_F(RecordingsPanelTest, IsPlayedStepByStepUntilItIsStopped) {
    open();
    openPort();
    press("stepRecording");
    answerFor(5000);
    EXPECT_EQ(sent.size(), 1U);
    EXPECT_FALSE(window.find("tabMode")->isEnabled()) << "the port stays its own";
    press("stepRecording");
    answerFor(1000);
    EXPECT_EQ(sent.size(), 2U);
    press("stopRecording");
    EXPECT_TRUE(window.find("tabMode")->isEnabled());
    press("stepRecording");
    answerFor(1000);
    EXPECT_EQ(sent.size(), 3U);
    EXPECT_TRUE(window.find("tabMode")->isEnabled());
}

TEST_F(RecordingsPanelTest, ASilenceDoesNotEndIt) {
    Recording slow = {sentAt(0ms, wordRequest), sentAt(60'000ms, wordRequest)};
    writeFile("slow.pcapng", captureOf(slow));
    open("slow.pcapng");
    openPort();
    press("playRecording");
    window.advance(59'000);
    EXPECT_EQ(written().size(), 1U);
    EXPECT_FALSE(window.find("tabMode")->isEnabled());
    window.advance(2'000);
    EXPECT_EQ(written().size(), 1U);
    window.advance(60'000);
    EXPECT_TRUE(window.find("tabMode")->isEnabled()) << "after the silence behind the last one";
}

TEST_F(RecordingsPanelTest, AClosedPortIsToldOnTheMainWindow) {
    open();
    press("playRecording");
    ASSERT_NE(window.box(), nullptr);
    EXPECT_EQ(window.box()->text(), QStringLiteral("Please Port Open !!"));
    EXPECT_TRUE(window.find("tabMode")->isEnabled());
    EXPECT_TRUE(isEnabled("playRecording"));
}

TEST_F(RecordingsPanelTest, APortThatGoesAwayEndsIt) {
    open();
    openPort();
    press("playRecording");
    window.advance(50);
    window.farEnd().hangUp("Unplugged.");
    window.advance(50);
    EXPECT_TRUE(window.find("tabMode")->isEnabled());
    EXPECT_FALSE(isEnabled("stopRecording"));
    window.advance(1000);
    EXPECT_TRUE(isEnabled("playRecording")) << "the rest";
}

TEST_F(RecordingsPanelTest, DoesNotPlayWhileAScenarioRuns) {
    writeFile("one.scn", "[Information]\nTotal=1\n[Scenario]\nScenario0=FF FF 23 03 00 02 01 05 23 \n");
    window.click("cmdLoadScenario");
    window.chooseFile("one.scn");
    open();
    openPort();
    window.click("cmdRunScenario");
    press("playRecording");
    EXPECT_FALSE(isEnabled("stopRecording"));
    EXPECT_TRUE(window.find("cmdStopScenario")->isEnabled());
}

TEST_F(RecordingsPanelTest, TwoAreCompared) {
    open();
    writeFile("same.pcapng", captureOf(recording));
    press("compareRecording");
    chooseFile("same.pcapng");
    EXPECT_EQ(comparison().find("line.pcapng and same.pcapng\nfirst:  3 sent, 3 received"), 0U);
    EXPECT_NE(comparison().find("The same bytes, at most 0 ms apart."), std::string::npos);
    recording[3].bytes.back() ^= 1U;
    writeFile("other.pcapng", captureOf(recording));
    press("compareRecording");
    chooseFile("other.pcapng");
    EXPECT_NE(comparison().find("Before that, times are at most"), std::string::npos) << comparison();
}

TEST_F(RecordingsPanelTest, WhatOfEitherFileIsMissingIsTold) {
    const std::string partly = captured({recordingBegin + 900ms, true, wordRequest, 1000, ""});
    const std::string whole = captureOf(recording);
    writeFile("partly.pcapng", whole + partly + partly.substr(0, 20));
    open("partly.pcapng");
    const std::string told =
        "1 packet left out, of which not all bytes were kept. The file ends within a packet; "
        "those before it were read.";
    EXPECT_NE(label("recordingState").find(told), std::string::npos) << label("recordingState");
    writeFile("cut.pcapng", whole + partly.substr(0, 20));
    press("compareRecording");
    chooseFile("cut.pcapng");
    EXPECT_NE(comparison().find("partly.pcapng: " + told), std::string::npos) << comparison();
    EXPECT_NE(comparison().find("cut.pcapng: The file ends within"), std::string::npos) << comparison();
}

} // namespace
} // namespace varda::test
