#include "core/files/append_file.h"
#include "core/recordings/capture_file.h"
#include "core/recordings/capture_loading.h"
#include "core/runs/monitor_line.h"
#include "core/runs/monitor_log.h"
#include "support/manual_clock.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <string>

namespace varda::faults {
namespace {

using namespace std::chrono_literals;

/// Somebody sets the computer's clock, or it finds a time server: back, and far ahead.
constexpr std::array<std::chrono::seconds, 5> jumps = {0s, -3600s, -3599s, 86400s * 365, 1s};

TEST(ClockJumps, LeaveEachLineOfALogInItsPlace) {
    const test::TemporaryFolder folder;
    test::ManualClock clock;
    std::string expected;
    {
        MonitorLog log(clock);
        log.open(folder.file("monitor.log"));
        for (const TimeOfDay time : {TimeOfDay{23, 59, 59}, {0, 0, 0}, {22, 59, 59}, {0, 0, 1}}) {
            const std::string line = timeStamp(time) + "FF ";
            EXPECT_TRUE(log.write(line));
            expected += line + lineEnd;
            clock.advance(400);
        }
    }
    EXPECT_EQ(test::bytesOf(folder.file("monitor.log")), expected);
}

TEST(ClockJumps, LoseNoPacketOfACapture) {
    const test::TemporaryFolder folder;
    const std::string path = folder.file("line.pcapng");
    test::ManualClock clock;
    const std::chrono::system_clock::time_point noon(1'790'000'000s);
    {
        CaptureFile capture(clock);
        capture.open(path);
        for (std::size_t number = 0; number < jumps.size(); ++number) {
            const Bytes bytes = {static_cast<std::uint8_t>(number)};
            EXPECT_TRUE(capture.write(
                {.time = noon + jumps.at(number), .bytes = bytes, .size = bytes.size(), .comment = {}}));
            clock.advance(400);
        }
    }
    const ReadCapture read = loadCapture(path);
    EXPECT_FALSE(read.isCut);
    ASSERT_EQ(read.recording.size(), jumps.size());
    for (std::size_t number = 0; number < jumps.size(); ++number) {
        const bool isThere = std::ranges::any_of(read.recording, [&](const RecordedBurst& burst) {
            return burst.time == noon + jumps.at(number) &&
                   burst.bytes == Bytes{static_cast<std::uint8_t>(number)};
        });
        EXPECT_TRUE(isThere) << "packet " << number;
    }
}

} // namespace
} // namespace varda::faults
