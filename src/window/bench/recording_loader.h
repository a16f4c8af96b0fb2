#pragma once

#include "core/recordings/capture_loading.h"
#include "core/recordings/player.h"
#include "window/controls/sliced_work.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace varda::inline core {
class RuntimeError;
} // namespace varda::core

namespace varda::window {

/// A capture that was read, and what of it is played.
struct LoadedRecording {
    ReadCapture read;
    std::vector<PlayedFrame> frames;
};

/// Reads captures of any size while the window answers. Until one is read whole nothing else has changed.
class RecordingLoader {
public:
    using Loaded = std::function<void(LoadedRecording loaded)>;
    using Refused = std::function<void(const RuntimeError& error)>;

    /// @param clock its continuations pass a guard
    /// @param wentOn runs behind each slice that is not the last one
    RecordingLoader(Clock& clock, std::function<void()> wentOn);
    RecordingLoader(const RecordingLoader&) = delete;
    RecordingLoader& operator=(const RecordingLoader&) = delete;
    RecordingLoader(RecordingLoader&&) = delete;
    RecordingLoader& operator=(RecordingLoader&&) = delete;
    ~RecordingLoader();

    /// Begins, in the place of what is under way. @param refused runs where it is no capture
    void start(const QString& path, Loaded loaded, Refused refused);
    void cancel();
    bool isRunning() const { return work_.isRunning(); }

    /// How much of the file was read: 0 .. 1.
    double progress() const;
    std::size_t packets() const;

private:
    struct Job;

    bool goOn();
    void end(const Loaded& loaded, const Refused& refused);

    SlicedWork work_;
    std::unique_ptr<Job> job_;
};

} // namespace varda::window
