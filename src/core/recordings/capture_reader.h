#pragma once

#include "core/recordings/recording.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace varda::inline core {

/// What was read of a capture.
struct ReadCapture {
    Recording recording;
    bool isCut = false;         ///< the file ends within a packet; those before it were read
    std::size_t incomplete = 0; ///< packets of which not all bytes were kept; they are left out
};

/// Reads a capture in the form pcapng, as the monitor and the trace write it, or as it was saved from
/// Wireshark on a computer of the same byte order. Packets that say nothing of their direction count as
/// received.
/// @throws RuntimeError 13 whose description says what is wrong with it
ReadCapture readCapture(std::string_view file);

/// The same of a file. @throws RuntimeError that names the file; also where it is not there, or cannot be
/// read
ReadCapture loadCapture(const std::string& path);

} // namespace varda::core
