#pragma once

#include "core/recordings/capture_reader.h"

#include <cstddef>
#include <string>

namespace varda::inline core {

/// Reads the file of a capture piece by piece, so that there is time for something else in between.
class CaptureLoading {
public:
    static constexpr std::size_t piece = std::size_t{256} * 1024;       ///< bytes, some milliseconds
    static constexpr std::size_t largestFile = std::size_t{512} << 20U; ///< bytes

    explicit CaptureLoading(std::string path) : path_(std::move(path)) {}

    /// Reads one piece more. @return whether there may be another one
    /// @throws RuntimeError that names the file: it is not there, cannot be read, or is no capture
    bool goOn();
    /// Bytes so far.
    std::size_t bytesRead() const { return read_; }
    /// Packets so far.
    std::size_t packets() const { return reader_.packets(); }
    /// What was read, when there is no more. Called once. @throws RuntimeError as goOn() does
    ReadCapture finish();

private:
    std::string path_;
    std::size_t read_ = 0;
    CaptureReader reader_;
};

/// Reads the file of a capture whole. @throws RuntimeError as CaptureLoading::goOn does
ReadCapture loadCapture(const std::string& path);

} // namespace varda::core
