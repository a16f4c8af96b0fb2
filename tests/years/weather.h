#pragma once

#include "years/random.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace varda::years {

enum class Climate : std::uint8_t { Sunny, Stormy, Radioactive };

/// What the lines and those at them are like, in whole numbers: times in milliseconds, sizes in bytes, what
/// happens by chance in times of a million.
struct Weather {
    int baud = 9600;
    int latency = 0;       ///< on its way, at most
    int chunk = 0;         ///< bytes that a driver hands on together; 0 for whole bursts
    int splits = 0;        ///< bursts cut in two, with a pause between them
    int pause = 0;         ///< at most
    int noise = 0;         ///< bytes that become others
    int lost = 0;          ///< bytes that do not arrive
    int doubled = 0;       ///< bytes that arrive twice
    int babble = 0;        ///< bursts that bytes come after which nobody sent
    int silence = 0;       ///< requests that the controller leaves unanswered
    int late = 0;          ///< answers that come late
    int lateBy = 0;        ///< at most
    int inputRoom = 0;     ///< bytes that wait to be read; 0 for as many as there are
    int outputRoom = 0;    ///< bytes that wait to be sent; 0 for the usual 4096
    int refusedWrites = 0; ///< writes that fail
    int failedReads = 0;   ///< reads that fail
    int failedOpens = 0;   ///< openings that fail
    int hangUps = 0;       ///< bursts after which a line goes away
    int clumsiness = 0;    ///< periods in which a user does something in the middle of it all
    int strangers = 0;     ///< requests that no prepared pair answers
    int insight = 0;       ///< scenes that are looked at with trace, statistics and watch
    int shortestPeriod = 100;
    int longestPeriod = 60'000;
    int scene = 200; ///< periods until something else is done, at most

    /// Whether a line does no more than be slow.
    bool isFaultless() const;
};

/// One number of a weather, by its name.
struct Dial {
    struct Range {
        int least;
        int most;
    };

    std::string_view name;
    int Weather::*value;
    bool isFault; ///< may be off entirely
    // By climate. NOLINTNEXTLINE(modernize-avoid-c-arrays): the rows would need a third pair of braces
    Range ranges[3];
};

std::span<const Dial> dials();
std::string_view nameOf(Climate climate);

/// The climate of a seed that nobody chose one for.
Climate drawClimate(std::uint64_t seed);
Weather drawWeather(Climate climate, std::uint64_t seed);

/// Turns one dial: "noise=200". @return false where it is none
bool turn(Weather& weather, std::string_view setting);

/// All dials, as they are turned on a command line: "--baud 9600 --latency 3 ..".
std::string printed(const Weather& weather);

} // namespace varda::years
