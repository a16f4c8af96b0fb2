#pragma once

#include "core/recordings/recording.h"

#include <cstddef>
#include <memory>
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
/// Wireshark on a computer of the same byte order; piece by piece, wherever one ends. Packets that say
/// nothing of their direction count as received.
class CaptureReader {
public:
    CaptureReader();
    CaptureReader(const CaptureReader&) = delete;
    CaptureReader& operator=(const CaptureReader&) = delete;
    ~CaptureReader();

    /// What follows what was taken before. @throws RuntimeError 13 whose description says what is wrong with
    /// it; nothing is taken from then on
    void take(std::string_view piece);
    /// Packets so far.
    std::size_t packets() const;
    /// There is no more. Called once. @throws RuntimeError as take() does
    ReadCapture finish();

private:
    class Blocks;

    std::unique_ptr<Blocks> blocks_;
    std::string rest_; ///< the beginning of a block that is not whole yet
};

/// Reads one that is whole. @throws RuntimeError as CaptureReader::take does
ReadCapture readCapture(std::string_view file);

} // namespace varda::core
