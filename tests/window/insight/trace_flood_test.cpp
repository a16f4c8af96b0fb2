#include "core/insight/trace.h"
#include "support/memory_use.h"
#include "support/processor_time.h"
#include "support/sanitized.h"
#include "window/insight/insight_fixture.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace varda::test {
namespace {

constexpr std::size_t pieceSize = std::size_t{64} << 10U; ///< more than a line delivers at a time
constexpr std::size_t floodSize = std::size_t{10} << 20U;

struct FloodedMode {
    const char* option;
    long long mostGrown; ///< bytes of memory: what is kept of the flood, twice
};

/// Bytes as fast as the window takes them, in a mode that has no use for them and in one that lists them.
class TraceFlood : public InsightTest, public testing::WithParamInterface<FloodedMode> {};

TEST_P(TraceFlood, IsBoundedAndTheWindowAnswersMeanwhile) {
    openPort();
    window.click(GetParam().option);
    if (std::string(GetParam().option) == "optMode_5") {
        window.click("cmdMonStart");
    }
    Bytes piece(pieceSize);
    for (std::size_t byte = 0; byte < pieceSize; ++byte) {
        piece[byte] = static_cast<std::uint8_t>(byte * 7);
    }
    const long long before = memoryUse();
    std::chrono::duration<double, std::milli> longest{};
    for (std::size_t sent = 0; sent < floodSize; sent += pieceSize) {
        const auto start = processorTime(); // of a machine that does nothing else, it is the time that passes
        window.farEnd().deliver(piece);
        window.advance(25); // a burst of its own
        QCoreApplication::processEvents();
        longest = std::max<decltype(longest)>(longest, processorTime() - start);
    }
    settle();
    const long long grown = memoryUse() - before;
    std::printf("%s: longest round of the event loop %.1f ms, memory grown by %lld kB\n", GetParam().option,
                longest.count(), grown / 1024);
    EXPECT_TRUE(isSanitized || longest < std::chrono::milliseconds(100)) << longest.count() << " ms";
    EXPECT_TRUE(isSanitized || grown < GetParam().mostGrown) << grown;
    EXPECT_LE(static_cast<std::size_t>(rows()), Trace::mostBytes / Trace::mostLineBytes);
    EXPECT_GT(rows(), 100);
    type("traceFilter", "received"); // is taken
    EXPECT_GT(rows(), 100);
}

INSTANTIATE_TEST_SUITE_P(Modes, TraceFlood,
                         testing::Values(FloodedMode{"optMode_0", 8LL << 20U},
                                         FloodedMode{"optMode_5", 30LL << 20U}));

} // namespace
} // namespace varda::test
