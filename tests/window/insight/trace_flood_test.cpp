#include "core/insight/trace.h"
#include "support/memory_use.h"
#include "support/processor_time.h"
#include "support/sanitized.h"
#include "window/insight/insight_fixture.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

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
    using Milliseconds = std::chrono::duration<double, std::milli>;
    Milliseconds longest{};
    std::vector<Milliseconds> rounds; // by the clock on the wall
    for (std::size_t sent = 0; sent < floodSize; sent += pieceSize) {
        const auto begin = std::chrono::steady_clock::now();
        const auto start = processorTime(); // of a machine that does nothing else, it is the time that passes
        window.farEnd().deliver(piece);
        window.advance(25); // a burst of its own
        QCoreApplication::processEvents();
        longest = std::max<Milliseconds>(longest, processorTime() - start);
        rounds.emplace_back(std::chrono::steady_clock::now() - begin);
    }
    settle();
    const auto middle = rounds.begin() + static_cast<std::ptrdiff_t>(rounds.size() / 2);
    std::ranges::nth_element(rounds, middle);
    const long long grown = memoryUse() - before;
    std::printf(
        "%s: rounds of the event loop: longest %.1f ms of the processor, median %.1f ms in all; memory "
        "grown by %lld kB\n",
        GetParam().option, longest.count(), middle->count(), grown / 1024);
    EXPECT_TRUE(isSanitized || longest < std::chrono::milliseconds(100)) << longest.count() << " ms";
    // one that waits for another thread or the disk uses no processor; half of them are slow on no machine
    EXPECT_TRUE(isSanitized || *middle < std::chrono::milliseconds(100)) << middle->count() << " ms";
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
