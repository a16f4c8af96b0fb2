#include "core/recordings/recording_words.h"

#include "core/insight/field_words.h"
#include "core/insight/verdict_words.h"

namespace varda::inline core {

std::string inWords(const RecordingSize& size) {
    return std::to_string(size.sent) + " sent, " + std::to_string(size.received) + " received, " +
           counted(size.bytes, "byte") + " in " + inMilliseconds(size.duration);
}

std::string inWords(const RecordingDifference& difference) {
    return "first:  " + inWords(difference.left) + "\nsecond: " + inWords(difference.right) + '\n' +
           (difference.isSame() ? "The same bytes, " : difference.why + ' ') +
           (difference.isSame() ? "at most " : "Before that, times are at most ") +
           inMilliseconds(difference.mostApart) + " apart.";
}

std::string inWords(const PlayerProgress& progress) {
    return std::to_string(progress.played) + " of " + counted(progress.frames, "frame") +
           " played; mean period " + inMilliseconds(progress.periodReached) + ", recorded " +
           inMilliseconds(progress.periodWanted) + "; at most " + inMilliseconds(progress.latest) + " late";
}

} // namespace varda::core
