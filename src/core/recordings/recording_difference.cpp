#include "core/recordings/recording_difference.h"

#include "core/insight/field_words.h"
#include "core/protocol/hex_text.h"

#include <algorithm>

namespace varda::inline core {
namespace {

using std::chrono::duration_cast;
using std::chrono::microseconds;

microseconds sinceFirst(const Recording& recording, std::size_t index) {
    return duration_cast<microseconds>(recording[index].time - recording.front().time);
}

std::string_view directionOf(const RecordedBurst& burst) { return burst.isSent ? "sent" : "received"; }

std::string bytesDiffer(const Bytes& left, const Bytes& right) {
    const auto place = std::ranges::mismatch(left, right).in1 - left.begin();
    const auto index = static_cast<std::size_t>(place);
    if (index == left.size() || index == right.size()) {
        return "has " + counted(left.size(), "byte") + " and " + std::to_string(right.size()) + '.';
    }
    return "differs in byte " + std::to_string(index) + ": " + hexNumber(left[index], 2) + " and " +
           hexNumber(right[index], 2) + '.';
}

/// @return empty where the bursts are the same
std::string whyDifferent(const RecordedBurst& left, const RecordedBurst& right) {
    if (left.isSent != right.isSent) {
        return "was " + std::string(directionOf(left)) + " and " + std::string(directionOf(right)) + '.';
    }
    return left.bytes == right.bytes ? std::string() : bytesDiffer(left.bytes, right.bytes);
}

} // namespace

RecordingSize sizeOf(const Recording& recording) {
    RecordingSize size;
    for (const RecordedBurst& burst : recording) {
        ++(burst.isSent ? size.sent : size.received);
        size.bytes += burst.bytes.size();
    }
    if (!recording.empty()) {
        size.duration = sinceFirst(recording, recording.size() - 1);
    }
    return size;
}

RecordingDifference compare(const Recording& left, const Recording& right) {
    RecordingDifference difference{.left = sizeOf(left), .right = sizeOf(right)};
    const std::size_t both = std::min(left.size(), right.size());
    while (difference.same < both) {
        const std::size_t index = difference.same;
        difference.why = whyDifferent(left[index], right[index]);
        if (!difference.why.empty()) {
            break;
        }
        const microseconds apart = std::chrono::abs(sinceFirst(left, index) - sinceFirst(right, index));
        difference.mostApart = std::max(difference.mostApart, apart);
        ++difference.same;
    }
    if (difference.why.empty() && left.size() != right.size()) {
        difference.why =
            left.size() > right.size() ? "is missing in the second one." : "is missing in the first one.";
    }
    if (!difference.why.empty()) {
        difference.first = difference.same;
        difference.why = "Burst " + std::to_string(difference.same + 1) + ' ' + difference.why;
    }
    return difference;
}

} // namespace varda::core
