#pragma once

#include "core/insight/field_words.h"

#include <string>
#include <vector>

/// What holds for any bytes taken apart, for tests and for the fuzz target: the fields cover them, in order,
/// and everything has words.
namespace varda::test {

/// What of that does not hold for a frame whose fields are to cover the bytes from `begin` on.
/// @param end receives where they end @return empty where all of it holds
inline std::string flawOfFields(const DecodedFrame& frame, std::size_t begin, std::size_t& end) {
    end = begin;
    for (const Field& field : frame.fields) {
        if (field.place != end || field.length == 0 || field.length > field.whole) {
            return "the field at byte " + std::to_string(field.place) + " is not the next one";
        }
        if (fieldInWords(frame, field).empty()) {
            return "the field at byte " + std::to_string(field.place) + " has no words";
        }
        end += field.length;
    }
    for (const Fault fault : frame.faults) {
        if (faultInWords(frame, fault).empty()) {
            return "a fault has no words";
        }
    }
    return frame.begin == begin && frame.end <= end ? "" : "the frame lies elsewhere than its fields";
}

/// The same for all frames of a burst of so many bytes.
inline std::string flawOfCoverage(const std::vector<DecodedFrame>& frames, std::size_t size) {
    std::size_t end = 0;
    for (const DecodedFrame& frame : frames) {
        std::string flaw = flawOfFields(frame, end, end);
        if (!flaw.empty()) {
            return flaw;
        }
    }
    return end == size ? "" : "the fields end at byte " + std::to_string(end);
}

} // namespace varda::test
