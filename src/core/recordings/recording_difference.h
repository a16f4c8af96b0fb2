#pragma once

#include "core/recordings/recording.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>

namespace varda::inline core {

/// How much a recording holds.
struct RecordingSize {
    std::size_t sent = 0;     ///< bursts
    std::size_t received = 0; ///< bursts
    std::size_t bytes = 0;
    std::chrono::microseconds duration{0}; ///< from the first burst to the last

    bool operator==(const RecordingSize&) const = default;
};

RecordingSize sizeOf(const Recording& recording);

/// In what two recordings differ.
struct RecordingDifference {
    RecordingSize left;
    RecordingSize right;
    std::optional<std::size_t> first{};     ///< burst, from 0, from which on they are not the same
    std::string why{};                      ///< a sentence on that burst; empty where they are the same
    std::size_t same = 0;                   ///< bursts before it
    std::chrono::microseconds mostApart{0}; ///< of those: how far their times since the first burst differ

    bool isSame() const { return !first; }
};

/// Compares burst by burst, bytes and directions; times are told and make no difference.
RecordingDifference compare(const Recording& left, const Recording& right);

} // namespace varda::core
