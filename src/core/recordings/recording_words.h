#pragma once

#include "core/recordings/player.h"
#include "core/recordings/recording_difference.h"

#include <string>

namespace varda::inline core {

// Recordings in words, as people read them in the tool and in the window.

/// "12 sent, 11 received, 204 bytes in 2400 ms".
std::string inWords(const RecordingSize& size);
/// How much each holds, the first difference, and how far the times are apart: three lines.
std::string inWords(const RecordingDifference& difference);
/// "3 of 12 frames played; mean period 201 ms, recorded 200 ms; at most 1.5 ms late".
std::string inWords(const PlayerProgress& progress);

} // namespace varda::core
