#pragma once

#include "core/base/bytes.h"
#include "core/protocol/frame_text.h"
#include "core/protocol/independent_check.h"

#include <string>
#include <vector>

namespace varda::test {

/// What a far end does wrong when two words from W 0000 of station 5 are asked for.
struct LineFault {
    /// Bytes that come in at once.
    struct Piece {
        int after; ///< milliseconds behind the request, or behind the piece before
        Bytes bytes;
    };

    const char* name; ///< and that of its picture in the manual
    std::vector<Piece> pieces;
    const char* verdict; ///< what the trace says of the line
    int line = -1;       ///< which received line that is, the last one by itself
};

/// The frame of a text with its check behind it.
inline Bytes soundFrame(const char* text) { return checked(bytesOfText(text)); }

inline Bytes together(Bytes first, const Bytes& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

/// The request of all of them.
inline const Bytes& faultRequest() {
    static const Bytes request = bytesOfText("05 00 23 03 00 02 02 0B 22 ");
    return request;
}

/// Twelve faults of real lines.
inline const std::vector<LineFault>& twelveFaults() {
    static const Bytes answer = bytesOfText("00 05 A3 04 34 12 CD AB 47 42 ");
    static const std::vector<LineFault> faults = {
        {"fault-station",
         {{10, soundFrame("00 07 A3 04 34 12 CD AB ")}},
         "Taken: it has the 10 bytes that were awaited. Nothing else is looked at. It comes from station 7; "
         "station 5 was asked."},
        {"fault-check",
         {{10, bytesOfText("00 05 A3 04 34 12 CD AB 47 43 ")}},
         "Taken: it has the 10 bytes that were awaited. Nothing else is looked at. The check is 4347h; of "
         "the bytes before it, it is 4247h."},
        {"fault-short",
         {{10, soundFrame("00 05 A3 02 34 12 ")}},
         "Dropped: 8 of 10 bytes had come when it was read. The body has 2 bytes; 4 belong to what was "
         "asked."},
        {"fault-long",
         {{10, soundFrame("00 05 A3 06 34 12 CD AB 01 02 ")}},
         "Dropped: 12 bytes, 2 more than were awaited. The body has 6 bytes; 4 belong to what was asked."},
        {"fault-split",
         {{10, bytesOfText("00 05 A3 04 34 12 CD ")}, {120, bytesOfText("AB 47 42 ")}},
         "Dropped: 7 of 10 bytes had come when it was read. The rest came 120 ms later. The frame is cut: 3 "
         "bytes are missing.",
         0},
        {"fault-late",
         {{6812, answer}},
         "Dropped: it came 6812 ms after the request, when the wait for the answer had ended."},
        {"fault-twice",
         {{10, together(answer, answer)}},
         "Dropped: 20 bytes, 10 more than were awaited. It is the same frame twice."},
        {"fault-echo",
         {{10, together(faultRequest(), answer)}},
         "Dropped: 19 bytes, 9 more than were awaited. It begins with the request itself: the line brings "
         "back what is sent."},
        {"fault-master",
         {{10, soundFrame("09 02 21 03 00 00 08 ")}},
         "Dropped: 9 of 10 bytes had come when it was read. It is a bit read for station 9: another master "
         "asks on this line."},
        {"fault-7-bits",
         {{10, bytesOfText("00 05 23 04 34 12 4D 2B 47 42 ")}},
         "Taken: it has the 10 bytes that were awaited. Nothing else is looked at. Every byte lacks its top "
         "bit: the line seems to carry 7 data bits."},
        {"fault-noise",
         {{10, bytesOfText("F7 00 81 FE 3C ")}},
         "Dropped: 5 of 10 bytes had come when it was read. It is no frame of this protocol."},
        {"fault-controller",
         {{10, soundFrame("05 03 04 12 34 AB CD 77 ")}},
         "Taken: it has the 10 bytes that were awaited. Nothing else is looked at. Its check is right, but "
         "04h is no command of this protocol: another kind of controller may be speaking."}};
    return faults;
}

} // namespace varda::test
