#include "core/insight/trace_recorder.h"
#include "core/insight/verdict_words.h"
#include "device/device_line.h"
#include "device/event_loop.h"
#include "support/pseudo_terminal.h"
#include "support/task_loop.h"

#include <gtest/gtest.h>

#include <thread>

namespace varda {

using namespace device;
namespace {

using namespace std::chrono_literals;
using test::PseudoTerminal;
using test::TaskLoop;

/// A serial control whose line, on a pseudo-terminal, is traced.
class TracedDeviceLineTest : public testing::Test {
protected:
    TracedDeviceLineTest() {
        comm.setCommPort(terminal.path());
        comm.setEventHandler([this](CommEvent event, const std::string&) { events.push_back(event); });
        recorder.open();
        comm.open();
    }

    bool runUntil(const std::function<bool()>& condition) { return loop.runUntil(condition, 5s); }
    /// Waits until bytes wait to be read, with no event loop that could tell of them.
    bool waitsWithoutALoop(std::size_t count) const {
        const auto end = std::chrono::steady_clock::now() + 5s;
        while (comm.inBufferCount() < count && std::chrono::steady_clock::now() < end) {
        }
        return comm.inBufferCount() == count;
    }
    const TraceLine& line(Trace::Number number) const { return *trace.find(number); }

    TaskLoop loop;
    EventLoop clock; ///< nobody waits by it here
    PseudoTerminal terminal;
    Trace trace;
    TraceRecorder recorder{trace, clock};
    MSComm comm{
        traced([this](const std::string& name) { return std::make_unique<DeviceLine>(name, loop.post()); },
               recorder, clock)};
    std::vector<CommEvent> events;
};

TEST_F(TracedDeviceLineTest, TimesAreThoseOfArrivalWhileTheOwnerIsBusy) {
    const auto before = clock.now();
    terminal.write({1, 2, 3});
    ASSERT_TRUE(waitsWithoutALoop(3));
    const auto arrived = clock.now();
    EXPECT_EQ(trace.size(), 1U); // the owner is busy, and nobody has told anything yet
    std::this_thread::sleep_for(5ms);
    ASSERT_TRUE(runUntil([this] { return trace.size() == 2; }));
    EXPECT_EQ(line(1).bytes, (Bytes{1, 2, 3}));
    EXPECT_GE(line(1).first, before);
    EXPECT_LE(line(1).last, arrived);
    const Burst burst = comm.read();
    EXPECT_EQ(burst.bytes, (Bytes{1, 2, 3}));
    EXPECT_EQ(burst.arrivals.front().time, line(1).first);
}

TEST_F(TracedDeviceLineTest, BytesThatAreThrownAwayBeforeAnyEventAreSeen) {
    terminal.write({1, 2, 3});
    ASSERT_TRUE(waitsWithoutALoop(3));
    comm.discard();
    ASSERT_EQ(trace.size(), 2U);
    EXPECT_EQ(line(1).bytes, (Bytes{1, 2, 3}));
    EXPECT_EQ(line(1).verdict, Verdict::ThrownAway);
    EXPECT_EQ(comm.inBufferCount(), 0U);
}

/// The line tells of further unread bytes only now and then.
TEST_F(TracedDeviceLineTest, BytesThatCameBeforeAWriteStandBeforeIt) {
    terminal.write({1});
    ASSERT_TRUE(runUntil([this] { return trace.size() == 2; }));
    terminal.write({2});
    ASSERT_TRUE(waitsWithoutALoop(2));
    comm.write({3});
    std::size_t received = 0;
    for (Trace::Number number = trace.begin(); line(number).direction != Direction::Sent; ++number) {
        ASSERT_LT(number + 1, trace.end());
        received += line(number).size;
    }
    EXPECT_EQ(received, 2U);
    EXPECT_EQ(line(trace.end() - 1).direction, Direction::Sent);
}

TEST_F(TracedDeviceLineTest, HangUpStaysBehindWhatCanStillBeRead) {
    terminal.write({1, 2, 3});
    ASSERT_TRUE(waitsWithoutALoop(3));
    terminal.closeFarEnd();
    ASSERT_TRUE(runUntil([this] { return !events.empty(); }));
    EXPECT_EQ(events, std::vector{CommEvent::Received});
    EXPECT_EQ(comm.read().bytes, (Bytes{1, 2, 3}));
    ASSERT_TRUE(runUntil([this] { return events.size() == 2; }));
    EXPECT_EQ(events.back(), CommEvent::HungUp);
    ASSERT_EQ(trace.size(), 3U);
    EXPECT_EQ(line(2).verdict, Verdict::HungUp);
    EXPECT_NE(verdictInWords(trace, 2).find("went away"), std::string::npos);
}

TEST_F(TracedDeviceLineTest, FloodOfTenMegabytesIsCountedAndBounded) {
    constexpr std::size_t pieces = std::size_t{10} * 1024;
    std::size_t received = 0;
    std::size_t written = 0;
    const Bytes piece(1024, 0x55);
    while (written < pieces) {
        terminal.write(piece, 5s);
        ++written;
        if (written % 64 == 0) {
            ASSERT_TRUE(runUntil([&] {
                received += comm.read().bytes.size();
                return received == written * piece.size();
            }));
        }
    }
    std::size_t counted = 0;
    std::size_t kept = 0;
    for (Trace::Number number = trace.begin(); number < trace.end(); ++number) {
        counted += line(number).size;
        kept += line(number).bytes.size();
        ASSERT_LE(line(number).bytes.size(), Trace::mostLineBytes);
    }
    EXPECT_EQ(received, pieces * piece.size());
    EXPECT_EQ(counted, received);
    EXPECT_LT(kept,
              received / 2); // of every line no more than the beginning; a busy machine makes more of them
}

} // namespace
} // namespace varda
