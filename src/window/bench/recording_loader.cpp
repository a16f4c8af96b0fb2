#include "window/bench/recording_loader.h"

#include "core/base/runtime_error.h"
#include "window/system/file_name.h"

#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace varda::window {

/// The collector looks at what was read, which stays where it is meanwhile.
struct RecordingLoader::Job {
    explicit Job(const QString& path) : loading(fileName(path)), size(QFileInfo(path).size()) {}

    CaptureLoading loading;
    qint64 size;
    LoadedRecording loaded;
    std::optional<FrameCollector> collector;
    std::optional<RuntimeError> problem;
};

RecordingLoader::RecordingLoader(Clock& clock, std::function<void()> wentOn)
    : work_(clock, std::move(wentOn)) {}

RecordingLoader::~RecordingLoader() = default;

void RecordingLoader::start(const QString& path, Loaded loaded, Refused refused) {
    cancel();
    job_ = std::make_unique<Job>(path);
    work_.start([this] { return goOn(); },
                [this, loaded = std::move(loaded), refused = std::move(refused)] { end(loaded, refused); });
}

void RecordingLoader::cancel() {
    work_.cancel();
    job_.reset();
}

bool RecordingLoader::goOn() {
    try {
        if (job_->collector) {
            return job_->collector->goOn(SlicedWork::slice);
        }
        if (!job_->loading.goOn()) {
            job_->loaded.read = job_->loading.finish();
            job_->collector.emplace(job_->loaded.read.recording);
            return job_->collector->goOn(SlicedWork::slice);
        }
        return true;
    } catch (const RuntimeError& error) {
        job_->problem = error;
        return false;
    }
}

void RecordingLoader::end(const Loaded& loaded, const Refused& refused) {
    const std::unique_ptr<Job> job = std::exchange(job_, nullptr);
    if (job->problem) {
        refused(*job->problem);
        return;
    }
    job->loaded.frames = job->collector->takeFrames();
    loaded(std::move(job->loaded));
}

double RecordingLoader::progress() const {
    if (job_ == nullptr || job_->size <= 0) {
        return 0;
    }
    return std::min(static_cast<double>(job_->loading.bytesRead()) / static_cast<double>(job_->size), 1.0);
}

std::size_t RecordingLoader::packets() const {
    return job_ == nullptr   ? 0
           : job_->collector ? job_->loaded.read.recording.size()
                             : job_->loading.packets();
}

} // namespace varda::window
