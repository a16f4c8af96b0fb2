#include "core/protocol/independent_encoder.h"
#include "support/event_loop.h"
#include "support/window_driver.h"

#include <QLineEdit>
#include <QPlainTextEdit>

#include <gtest/gtest.h>

#include <malloc.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstdio>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace varda::test {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t words = 8;
constexpr std::size_t firstData = 6;
constexpr std::size_t frameBytes = firstData + 2 * words + 2;
using Frame = std::array<std::uint8_t, frameBytes>;

/// Growth allowed. The heap counts every block in use: 16 KiB is less than 64 bytes for each frame of the
/// minute. Resident memory comes in pages, and pages that were free at first are touched later.
constexpr long heapMargin = 16L * 1024;
constexpr long residentMarginKib = 256;

struct Memory {
    long residentKib = 0;
    long heapBytes = 0;
};

Memory memoryInUse() {
    Memory memory;
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind("VmRSS:", 0) == 0) {
            memory.residentKib = std::stol(line.substr(6));
        }
    }
    memory.heapBytes = static_cast<long>(::mallinfo2().uordblks);
    return memory;
}

/// Bytes of a frame shown as groups of two digits; a text that is none gives another number of bytes.
Octets bytesShown(const std::string& text) {
    Octets bytes;
    std::istringstream groups(text);
    for (std::string group; groups >> group;) {
        bytes.push_back(static_cast<std::uint8_t>(std::stoul(group, nullptr, 16)));
    }
    return bytes;
}

/// The write page, writing 8 random words from W0000 to VIRTUAL on every other tick: each waits for its
/// answer. A frame is looked at when its answer is shown, before the next one is made.
class RandomWritesTest : public testing::Test {
protected:
    RandomWritesTest() {
        frames.reserve(2000); // the test's own memory does not grow while it measures
        driver.click("optMode_1");
        driver.click("optWrite_1");
        driver.choose("cbWRegister", "W");
        driver.choose("cbWRegAddress", "0000");
        driver.choose("cbWLength", "8");
        driver.paste("txtWriteTimerValue", "100");
        driver.click("chkRandomWrite");
        driver.openPort("VIRTUAL");
        auto* const answer = driver.find<QPlainTextEdit>("txtReceiveWData");
        QObject::connect(answer, &QPlainTextEdit::textChanged, answer, [this, answer] {
            if (!answer->document()->isEmpty()) {
                lookAtFrame();
            }
        });
        auto* const status = driver.find<QLineEdit>("txtWStatus");
        QObject::connect(status, &QLineEdit::textChanged, status, [this](const QString& text) {
            isSilent = isSilent || text == QLatin1String("No Answer From PLC");
        });
    }

    void lookAtFrame() {
        const Octets shown = bytesShown(driver.text("txtSendWData"));
        ASSERT_EQ(shown.size(), frameBytes) << driver.text("txtSendWData");
        const unsigned check = frameCheck(shown, frameBytes - 2);
        EXPECT_EQ(shown[frameBytes - 2], low(check));
        EXPECT_EQ(shown[frameBytes - 1], high(check));
        for (std::size_t word = 0; word < words; ++word) {
            const int address = firstWord("W", true) + static_cast<int>(word);
            const unsigned written = driver.controller().word(address);
            EXPECT_EQ(low(written), shown[firstData + 2 * word]);
            EXPECT_EQ(high(written), shown[firstData + 2 * word + 1]);
        }
        Frame& frame = frames.emplace_back();
        std::copy(shown.begin(), shown.end(), frame.begin());
        const Memory now = memoryInUse();
        least = {std::min(least.residentKib, now.residentKib), std::min(least.heapBytes, now.heapBytes)};
    }

    /// Lets the writing go on and measures at every frame: what Qt allocates and frees on its own adds to
    /// some of the measurements, a leak to all.
    Memory leastMemoryFor(std::chrono::milliseconds time) {
        least = {LONG_MAX, LONG_MAX};
        runFor(time);
        return least;
    }

    WindowDriver driver;
    std::vector<Frame> frames; ///< sent, received and carried out
    Memory least;              ///< in use after any frame of the present measurement
    bool isSilent = false;     ///< an answer failed to come
};

TEST_F(RandomWritesTest, WritingForAMinuteNeverRepeatsAFrameAndTakesNoMemory) {
    driver.click("chkWTimer");
    runFor(40s); // by then Qt has given back what it kept from building the window, at about 30 s
    const Memory before = leastMemoryFor(10s);
    const std::size_t framesBefore = frames.size();
    runFor(50s);
    const Memory after = leastMemoryFor(10s);
    const std::size_t framesMeasured = frames.size() - framesBefore;

    std::printf("%zu frames in 60 s; resident %ld -> %ld KiB, heap in use %ld -> %ld bytes\n", framesMeasured,
                before.residentKib, after.residentKib, before.heapBytes, after.heapBytes);
    EXPECT_GE(framesMeasured, 200U); // one in 200 ms makes 300; a busy machine delays ticks
    EXPECT_EQ(std::set<Frame>(frames.begin(), frames.end()).size(), frames.size());
    EXPECT_FALSE(isSilent);
    EXPECT_EQ(driver.box(), nullptr);
    EXPECT_LT(before.residentKib, LONG_MAX);
    EXPECT_LE(after.residentKib - before.residentKib, residentMarginKib);
    EXPECT_LE(after.heapBytes - before.heapBytes, heapMargin);
}

} // namespace
} // namespace varda::test
