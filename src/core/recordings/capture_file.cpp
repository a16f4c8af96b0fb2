#include "core/recordings/capture_file.h"

#include "core/files/atomic_file.h"

namespace varda::inline core {
namespace {

/// A crash or a power cut loses no more than what came within this time.
constexpr auto longestLossOfPackets = std::chrono::seconds(1);

} // namespace

CaptureFile::~CaptureFile() { close(); }

void CaptureFile::open(const std::string& path) {
    close();
    replaceFile(path, captureHeading());
    file_ = std::make_unique<AppendFile>(path);
    isStuck_ = false;
}

bool CaptureFile::write(const CapturedPacket& packet) {
    if (file_ == nullptr || isStuck_) {
        return false;
    }
    if (!sync_.isPending()) {
        sync_ = clock_.after(longestLossOfPackets, [this] { file_->sync(); });
    }
    isStuck_ = !file_->append(captured(packet));
    return !isStuck_;
}

void CaptureFile::close() {
    if (file_ != nullptr) {
        file_->sync();
    }
    file_.reset();
    sync_.cancel();
}

} // namespace varda::core
