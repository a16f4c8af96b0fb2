#include "core/recordings/player.h"

#include "core/base/runtime_error.h"
#include "core/recordings/recordings.h"
#include "support/manual_clock.h"
#include "support/raises.h"

#include <gtest/gtest.h>

#include <limits>

namespace varda::test {
namespace {

TEST(PlayedFrames, AreWhatWasSent) {
    EXPECT_EQ(
        playedFrames({receivedAt(5ms, {1}), sentAt(10ms, {2}), receivedAt(15ms, {3}), sentAt(40ms, {4})}),
        (std::vector<PlayedFrame>{{0ms, {2}}, {30ms, {4}}}));
}

TEST(PlayedFrames, OfAListenerAreTheRequests) {
    EXPECT_EQ(playedFrames({receivedAt(5ms, joined(wordRequest, wordAnswer)), receivedAt(505ms, bitRequest)}),
              (std::vector<PlayedFrame>{{0ms, wordRequest}, {500ms, bitRequest}}));
    EXPECT_TRUE(playedFrames({}).empty());
}

class PlayerTest : public testing::Test {
protected:
    struct Sent {
        std::chrono::milliseconds time;
        Bytes bytes;

        bool operator==(const Sent&) const = default;
    };

    PlayerTest() { player.load({{0ms, {1}}, {100ms, {2}}, {400ms, {3}}}); }

    ManualClock clock;
    const Clock::Time begin = clock.now();
    std::vector<Sent> sent;
    std::function<void()> meanwhile = [] {};
    Player player{
        clock, [this](const Bytes& bytes) {
            sent.push_back(
                {std::chrono::duration_cast<std::chrono::milliseconds>(clock.now() - begin), bytes});
            meanwhile();
        }};
};

TEST_F(PlayerTest, PlaysWithTheOriginalTiming) {
    player.start();
    clock.advance(1000);
    EXPECT_EQ(sent, (std::vector<Sent>{{0ms, {1}}, {100ms, {2}}, {400ms, {3}}}));
    EXPECT_TRUE(player.isAtEnd());
    EXPECT_FALSE(player.isRunning());
}

TEST_F(PlayerTest, PlaysFasterAndSlower) {
    player.start(4);
    clock.advance(1000);
    EXPECT_EQ(sent, (std::vector<Sent>{{0ms, {1}}, {25ms, {2}}, {100ms, {3}}}));
    player.load({{0ms, {1}}, {100ms, {2}}});
    player.start(0.5);
    clock.advance(199);
    EXPECT_EQ(sent.size(), 4U);
    clock.advance(1);
    EXPECT_EQ(sent.size(), 5U);
}

TEST_F(PlayerTest, PlaysStepByStep) {
    EXPECT_TRUE(player.step());
    clock.advance(1000);
    EXPECT_EQ(sent.size(), 1U);
    EXPECT_TRUE(player.step());
    EXPECT_TRUE(player.step());
    EXPECT_FALSE(player.step());
    EXPECT_EQ(player.progress().played, 3U);
    EXPECT_EQ(player.progress().periodReached, 0ms);
}

TEST_F(PlayerTest, StandsStillAndGoesOn) {
    player.start();
    clock.advance(50);
    player.stop();
    clock.advance(5000);
    EXPECT_EQ(sent.size(), 1U);
    player.start();
    clock.advance(1000);
    EXPECT_EQ(sent, (std::vector<Sent>{{0ms, {1}}, {5050ms, {2}}, {5350ms, {3}}}));
}

TEST_F(PlayerTest, TellsThePeriodThatWasReached) {
    player.start(2);
    clock.advance(1000);
    const PlayerProgress progress = player.progress();
    EXPECT_EQ(progress.played, 3U);
    EXPECT_EQ(progress.frames, 3U);
    EXPECT_EQ(progress.periodWanted, 100ms);
    EXPECT_EQ(progress.periodReached, 100ms);
    EXPECT_EQ(progress.latest, 0ms);
}

TEST_F(PlayerTest, OneThatIsLateDoesNotPutOffTheOthers) {
    meanwhile = [this] {
        if (sent.size() == 1) {
            clock.advance(150); // the program had no time
        }
    };
    player.start();
    clock.advance(1000);
    EXPECT_EQ(sent, (std::vector<Sent>{{0ms, {1}}, {150ms, {2}}, {400ms, {3}}}));
    EXPECT_EQ(player.progress().latest, 50ms);
}

TEST_F(PlayerTest, MayBeStoppedByWhatItSends) {
    meanwhile = [this] { player.stop(); };
    player.start();
    clock.advance(1000);
    EXPECT_EQ(sent.size(), 1U);
    EXPECT_FALSE(player.isRunning());
}

TEST_F(PlayerTest, EndsWhereSendingFails) {
    meanwhile = [] { throw RuntimeError(8020, "gone"); };
    player.start();
    EXPECT_EQ(numberRaisedBy([this] { clock.advance(1000); }), 8020);
    clock.advance(1000);
    EXPECT_EQ(sent.size(), 1U);
    EXPECT_FALSE(player.isRunning());
}

TEST_F(PlayerTest, TellsEachFrameAndItsEnd) {
    int told = 0;
    bool isAtEnd = false;
    player.whenPlayed([&] {
        ++told;
        isAtEnd = player.isAtEnd();
    });
    player.start();
    clock.advance(1000);
    EXPECT_EQ(told, 3);
    EXPECT_TRUE(isAtEnd);
}

TEST_F(PlayerTest, RefusesSpeedsThatAreNone) {
    for (const double speed : {0.0, -1.0, 1001.0, std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_EQ(numberRaisedBy([&] { player.start(speed); }), run_time_error::invalidProcedureCall)
            << speed;
    }
    EXPECT_FALSE(player.isRunning());
}

TEST_F(PlayerTest, NothingIsPlayedAtOnce) {
    player.load({});
    player.start();
    EXPECT_FALSE(player.isRunning());
    EXPECT_FALSE(player.step());
}

} // namespace
} // namespace varda::test
