#pragma once

#include "side_process.h"
#include "support/processor_time.h"
#include "support/pseudo_terminal.h"

#include "core/base/bytes.h"

#include <chrono>
#include <string>
#include <vector>

namespace varda::bench {

/// Sends on and on over a line, from another process, so that the time it takes itself is not counted.
class LinePlayer {
public:
    struct Piece {
        double bytesPerSecond = 0;
        std::chrono::milliseconds every{};    ///< as the buffer of a serial chip hands its bytes over
        std::chrono::milliseconds pause = {}; ///< behind every round of the traffic
    };

    LinePlayer(const test::PseudoTerminal& line, const Bytes& traffic, const Piece& piece);

private:
    SideProcess process_;
};

/// A line of 38400 baud that is never idle, in pieces of 4 ms.
constexpr LinePlayer::Piece fullLine = {.bytesPerSecond = 3840, .every = std::chrono::milliseconds(4)};

/// The processor time that this process takes while its event loop runs, in per cent of a core.
double percentOfCore(std::chrono::milliseconds time);

double median(std::vector<double> values);
/// "12.3 % | 11.0 to 13.9 %" of a median and its spread.
std::string spreadInWords(const std::vector<double>& values, const char* unit);

} // namespace varda::bench
