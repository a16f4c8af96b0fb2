#include "core/virtual/virtual_line.h"

#include "core/base/runtime_error.h"
#include "support/manual_clock.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace varda {
namespace {

using std::chrono::milliseconds;

const Bytes writeW1{0x01, 0x00, 0x24, 0x04, 0x01, 0x02, 0x2B, 0x1A, 0x49, 0xE4};
const Bytes writeAnswer{0x00, 0x01, 0xA4, 0x01, 0x00, 0x65, 0x8F};
const Bytes readW1{0x01, 0x00, 0x23, 0x03, 0x01, 0x02, 0x01, 0x5F, 0x23};
const Bytes readAnswer{0x00, 0x01, 0xA3, 0x02, 0x2B, 0x1A, 0x21, 0x64};
const Bytes damagedRead{0x01, 0x00, 0x23, 0x03, 0x01, 0x02, 0x01, 0x00, 0x00};
constexpr int registerW1 = 513;

Bytes joined(Bytes first, const Bytes& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

/// The number of the RuntimeError that `action` ends with, 0 where it ends well.
int errorNumber(const std::function<void()>& action) {
    try {
        action();
    } catch (const RuntimeError& error) {
        return error.number();
    }
    return 0;
}

class VirtualLineTest : public testing::Test {
protected:
    VirtualLineTest() {
        controller_.setWord(registerW1, 0x1A2B);
        line_->setEventHandler([this](CommEvent event, const std::string& reason) {
            EXPECT_EQ(event, CommEvent::Received);
            EXPECT_EQ(reason, "");
            counts_.push_back(line_->inBufferCount());
        });
        line_->open({});
    }

    Controller controller_;
    test::ManualClock clock_;
    std::optional<VirtualLine> line_{std::in_place, controller_, clock_};
    std::vector<std::size_t> counts_; ///< of unread bytes at each event
};

TEST_F(VirtualLineTest, TheAnswerArrivesAfterTheDelayAsOneBurst) {
    line_->write(readW1);
    EXPECT_EQ(line_->inBufferCount(), 0U);
    clock_.advance(VirtualLine::answerDelay - milliseconds{1});
    EXPECT_EQ(line_->inBufferCount(), 0U);
    EXPECT_TRUE(counts_.empty());
    clock_.advance(milliseconds{1});
    EXPECT_EQ(counts_, std::vector<std::size_t>{readAnswer.size()});
    EXPECT_EQ(line_->read().bytes, readAnswer);
}

TEST_F(VirtualLineTest, TheAnswerComesWellInsideTheWaitForIt) {
    EXPECT_GE(VirtualLine::answerDelay, milliseconds{1});
    EXPECT_LE(VirtualLine::answerDelay, milliseconds{20});
}

TEST_F(VirtualLineTest, ReadTakesEverythingOut) {
    line_->write(readW1);
    clock_.advance(VirtualLine::answerDelay);
    line_->read();
    EXPECT_EQ(line_->inBufferCount(), 0U);
    EXPECT_EQ(line_->read().bytes, Bytes{});
}

TEST_F(VirtualLineTest, UnreadAnswersPileUpInOrder) {
    line_->write(writeW1);
    line_->write(readW1);
    clock_.advance(VirtualLine::answerDelay);
    EXPECT_EQ(counts_,
              (std::vector<std::size_t>{writeAnswer.size(), writeAnswer.size() + readAnswer.size()}));
    EXPECT_EQ(line_->read().bytes, joined(writeAnswer, readAnswer));
}

TEST_F(VirtualLineTest, ARequestWithoutAnswerIsSilence) {
    line_->write(damagedRead);
    clock_.advance(milliseconds{10'000});
    EXPECT_EQ(line_->inBufferCount(), 0U);
    EXPECT_TRUE(counts_.empty());
}

TEST_F(VirtualLineTest, AWriteIsOneRequest) {
    line_->write(joined(readW1, readW1));
    line_->write({readW1.begin(), readW1.begin() + 4});
    line_->write({readW1.begin() + 4, readW1.end()});
    clock_.advance(VirtualLine::answerDelay);
    EXPECT_TRUE(counts_.empty());
}

TEST_F(VirtualLineTest, NothingArrivesAfterClose) {
    line_->write(readW1);
    line_->close();
    clock_.advance(VirtualLine::answerDelay);
    EXPECT_EQ(line_->inBufferCount(), 0U);
    EXPECT_EQ(line_->read().bytes, Bytes{});
    EXPECT_TRUE(counts_.empty());
}

TEST_F(VirtualLineTest, AnAnswerOnItsWayIsLostWhenTheLineIsOpenedAnew) {
    line_->write(readW1);
    line_->close();
    line_->open({});
    clock_.advance(VirtualLine::answerDelay);
    EXPECT_EQ(line_->inBufferCount(), 0U);
    EXPECT_TRUE(counts_.empty());
}

TEST_F(VirtualLineTest, UnreadBytesAreGoneAfterClose) {
    line_->write(readW1);
    clock_.advance(VirtualLine::answerDelay);
    line_->close();
    line_->open({});
    EXPECT_EQ(line_->inBufferCount(), 0U);
}

TEST_F(VirtualLineTest, TheLineMayGoWhileAnAnswerIsOnItsWay) {
    line_->write(readW1);
    line_.reset();
    clock_.advance(VirtualLine::answerDelay);
    EXPECT_TRUE(counts_.empty());
}

TEST_F(VirtualLineTest, TheHandlerMayCloseTheLine) {
    int events = 0;
    line_->setEventHandler([&](CommEvent, const std::string&) {
        ++events;
        line_->close();
    });
    line_->write(readW1);
    line_->write(readW1);
    clock_.advance(VirtualLine::answerDelay);
    EXPECT_EQ(events, 1);
    EXPECT_EQ(line_->inBufferCount(), 0U);
}

TEST_F(VirtualLineTest, TheHandlerMaySendTheNextRequest) {
    line_->setEventHandler([&](CommEvent, const std::string&) {
        line_->read();
        line_->write(readW1);
    });
    line_->write(writeW1);
    clock_.advance(VirtualLine::answerDelay);
    EXPECT_EQ(line_->inBufferCount(), 0U);
    line_->setEventHandler({});
    clock_.advance(VirtualLine::answerDelay);
    EXPECT_EQ(line_->read().bytes, readAnswer);
}

TEST_F(VirtualLineTest, DiscardEmptiesTheInputBuffer) {
    line_->write(readW1);
    clock_.advance(VirtualLine::answerDelay);
    line_->discard();
    EXPECT_EQ(line_->inBufferCount(), 0U);
}

TEST_F(VirtualLineTest, DiscardDoesNotHoldUpAnAnswerOnItsWay) {
    line_->write(readW1);
    line_->discard();
    clock_.advance(VirtualLine::answerDelay);
    EXPECT_EQ(line_->read().bytes, readAnswer);
}

TEST_F(VirtualLineTest, ASecondLineIsRefusedAsInUse) {
    VirtualLine second(controller_, clock_);
    EXPECT_EQ(errorNumber([&] { second.open({}); }), 8005);
    EXPECT_EQ(errorNumber([&] { second.write(readW1); }), 8020);
    line_->write(readW1);
    clock_.advance(VirtualLine::answerDelay);
    EXPECT_EQ(line_->read().bytes, readAnswer);
}

TEST_F(VirtualLineTest, OpeningAnOpenLineIsRefusedAndLeavesItOpen) {
    line_->write(readW1);
    EXPECT_EQ(errorNumber([&] { line_->open({}); }), 8005);
    clock_.advance(VirtualLine::answerDelay);
    EXPECT_EQ(line_->read().bytes, readAnswer);
}

TEST_F(VirtualLineTest, TheRefusalNamesTheLineAndTheRemedy) {
    VirtualLine second(controller_, clock_);
    std::string description;
    try {
        second.open({});
    } catch (const RuntimeError& error) {
        description = error.what();
    }
    EXPECT_EQ(description, "VIRTUAL is open already in this program. Close it there first.");
}

TEST_F(VirtualLineTest, AnotherLineOpensOnceTheFirstIsClosed) {
    VirtualLine second(controller_, clock_);
    line_->close();
    EXPECT_EQ(errorNumber([&] { second.open({}); }), 0);
    EXPECT_EQ(errorNumber([&] { line_->open({}); }), 8005);
}

TEST_F(VirtualLineTest, AnotherLineOpensOnceTheFirstIsGone) {
    VirtualLine second(controller_, clock_);
    line_.reset();
    EXPECT_EQ(errorNumber([&] { second.open({}); }), 0);
}

TEST_F(VirtualLineTest, ClosingARefusedLineDoesNotFreeTheController) {
    VirtualLine second(controller_, clock_);
    EXPECT_EQ(errorNumber([&] { second.open({}); }), 8005);
    second.close();
    EXPECT_EQ(errorNumber([&] { second.open({}); }), 8005);
}

TEST_F(VirtualLineTest, LinesOfDifferentControllersOpenSideBySide) {
    Controller other;
    VirtualLine second(other, clock_);
    EXPECT_EQ(errorNumber([&] { second.open({}); }), 0);
}

TEST_F(VirtualLineTest, TheMemoryOutlivesTheConnection) {
    line_->write(writeW1);
    line_.reset();
    VirtualLine second(controller_, clock_);
    second.open({});
    second.write(readW1);
    clock_.advance(VirtualLine::answerDelay);
    EXPECT_EQ(second.read().bytes, readAnswer);
}

TEST_F(VirtualLineTest, LineSettingsMeanNothing) {
    line_->close();
    line_->open({.baudRate = 1, .parity = '?', .dataBits = 0, .stopBits = 9});
    line_->write(readW1);
    clock_.advance(VirtualLine::answerDelay);
    EXPECT_EQ(line_->read().bytes, readAnswer);
}

TEST_F(VirtualLineTest, WritingToAClosedLineFailsAndChangesNothing) {
    line_->close();
    controller_.setWord(registerW1, 7);
    EXPECT_EQ(errorNumber([&] { line_->write(writeW1); }), 8020);
    EXPECT_EQ(controller_.word(registerW1), 7);
}

TEST_F(VirtualLineTest, AClosedLineMayBeClosedAndDiscardedAgain) {
    line_->close();
    line_->close();
    line_->discard();
    EXPECT_EQ(line_->inBufferCount(), 0U);
}

TEST_F(VirtualLineTest, NeedsNoEventHandler) {
    line_->setEventHandler({});
    line_->write(readW1);
    clock_.advance(VirtualLine::answerDelay);
    EXPECT_EQ(line_->read().bytes, readAnswer);
}

} // namespace
} // namespace varda
