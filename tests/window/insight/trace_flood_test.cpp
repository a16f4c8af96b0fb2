#include "support/sanitized.h"
#include "window/insight/insight_fixture.h"

#include "core/insight/trace.h"

#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>
#include <fstream>

#include <unistd.h>

namespace varda::test {
namespace {

constexpr std::size_t pieceSize = 4096;
constexpr std::size_t floodSize = std::size_t{10} << 20U;

/// What this process has in memory, in bytes.
std::size_t memory() {
    std::size_t whole = 0;
    std::size_t resident = 0;
    std::ifstream("/proc/self/statm") >> whole >> resident;
    return resident * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
}

/// Bytes as fast as the window takes them, in a mode that lists them and in one that has no use for them.
class TraceFlood : public InsightTest, public testing::WithParamInterface<const char*> {};

TEST_P(TraceFlood, IsBoundedAndTheWindowAnswersMeanwhile) {
    openPort();
    window.click(GetParam());
    if (std::string(GetParam()) == "optMode_5") {
        window.click("cmdMonStart");
    }
    Bytes piece(pieceSize);
    for (std::size_t byte = 0; byte < pieceSize; ++byte) {
        piece[byte] = static_cast<std::uint8_t>(byte * 7);
    }
    const std::size_t before = memory();
    qint64 longest = 0;
    for (std::size_t sent = 0; sent < floodSize; sent += pieceSize) {
        QElapsedTimer round;
        round.start();
        window.farEnd().deliver(piece);
        window.advance(25); // a burst of its own
        QCoreApplication::processEvents();
        longest = std::max(longest, round.nsecsElapsed());
    }
    settle();
    constexpr std::size_t bound = std::size_t{150} << 20U; // the monitor's own list, which is bounded, too
    const std::size_t after = memory();
    const std::size_t grown = after - std::min(before, after);
    std::printf("%s: longest round of the event loop %.1f ms, memory grown by %zu kB\n", GetParam(),
                static_cast<double>(longest) / 1'000'000, grown / 1024);
    EXPECT_TRUE(isSanitized || grown < bound) << grown;
    EXPECT_LE(static_cast<std::size_t>(rows()), Trace::mostBytes / Trace::mostLineBytes);
    EXPECT_GT(rows(), 100);
    type("traceFilter", "received"); // is taken
    EXPECT_GT(rows(), 100);
}

INSTANTIATE_TEST_SUITE_P(Modes, TraceFlood, testing::Values("optMode_0", "optMode_5"));

} // namespace
} // namespace varda::test
