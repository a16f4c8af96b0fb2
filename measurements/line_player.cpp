#include "line_player.h"

#include "support/event_loop.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <thread>

namespace varda::bench {
namespace {

using Steady = std::chrono::steady_clock;

/// The bytes that go out together.
Bytes nextPiece(const Bytes& traffic, std::size_t& next, double& owed, bool isPausing) {
    Bytes bytes;
    while (owed >= 1) {
        owed -= 1;
        bytes.push_back(traffic[next]);
        next = (next + 1) % traffic.size();
        if (next == 0 && isPausing) { // the next round begins behind the pause
            owed = 0;
        }
    }
    return bytes;
}

[[noreturn]] void play(const test::PseudoTerminal& line, const Bytes& traffic,
                       const LinePlayer::Piece& piece) {
    auto due = Steady::now();
    std::size_t next = 0;
    double owed = 0;
    for (;;) {
        due += piece.every;
        std::this_thread::sleep_until(due);
        owed += piece.bytesPerSecond * std::chrono::duration<double>(piece.every).count();
        const Bytes bytes = nextPiece(traffic, next, owed, piece.pause.count() > 0);
        due += next == 0 && !bytes.empty() ? piece.pause : std::chrono::milliseconds(0);
        line.write(bytes, std::chrono::seconds(10));
    }
}

} // namespace

LinePlayer::LinePlayer(const test::PseudoTerminal& line, const Bytes& traffic, const Piece& piece)
    : process_([&] { play(line, traffic, piece); }) {}

double percentOfCore(std::chrono::milliseconds time) {
    const auto before = test::processorTime();
    const auto start = Steady::now();
    test::runFor(time);
    return (test::processorTime() - before) / std::chrono::duration<double>(Steady::now() - start) * 100;
}

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values.at(values.size() / 2);
}

std::string spreadInWords(const std::vector<double>& values, const char* unit) {
    const auto [least, most] = std::ranges::minmax(values);
    std::array<char, 80> text = {};
    std::snprintf(text.data(), text.size(), "%.2f%s | %.2f to %.2f%s", median(values), unit, least, most,
                  unit);
    return text.data();
}

} // namespace varda::bench
