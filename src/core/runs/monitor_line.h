#pragma once

#include "core/base/bytes.h"

#include <string>

namespace varda::inline core {

/// One line of the monitor: a burst, and how it was to be shown when it came.
///
/// The line keeps the bytes and makes its text when it is asked for, so that a flood costs no more than its
/// own bytes.
struct MonitorLine {
    std::string stamp; ///< time stamp and " - ", or empty
    Bytes burst;
    bool asCharacters; ///< else in hexadecimal digits

    /// The stamp, then each byte and a space: two upper-case digits, or the byte itself as its character's
    /// code (Latin-1).
    /// @param most at most so many bytes of the burst
    std::string text(std::size_t most) const;
    std::string text() const { return text(burst.size()); }
    /// The characters of text(), without making it.
    std::size_t textLength(std::size_t most) const;
};

struct TimeOfDay {
    int hour = 0;   ///< 0 .. 23
    int minute = 0; ///< 0 .. 59
    int second = 0; ///< 0 .. 59
};

/// Time of reception as the stamp of a line, without leading zeros: "9:5:7 - ".
std::string timeStamp(const TimeOfDay& time);

/// A list of lines restarts when more than so many stand in it.
constexpr std::size_t monitorLineLimit = 2000;

} // namespace varda::core
