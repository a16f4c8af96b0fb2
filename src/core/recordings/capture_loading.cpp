#include "core/recordings/capture_loading.h"

#include "core/base/runtime_error.h"
#include "core/files/atomic_file.h"

namespace varda::inline core {
namespace {

/// What is wrong with a capture, with the name of its file.
template <typename Read>
decltype(auto) namingTheFile(const std::string& path, Read&& read) {
    try {
        return read();
    } catch (const RuntimeError& error) {
        throw RuntimeError(run_time_error::fileAccessError,
                           std::string("\"").append(path).append("\" cannot be used. ") + error.what());
    }
}

} // namespace

bool CaptureLoading::goOn() {
    const FileText part = readPartOfFile(path_, read_, piece);
    if (part.problem) {
        throw RuntimeError(*part.problem);
    }
    read_ += part.text.size();
    if (read_ > largestFile) {
        throw fileTooLarge(path_);
    }
    if (read_ == 0) {
        throw fileError(path_, "is empty, or not there");
    }
    namingTheFile(path_, [&] { reader_.take(part.text); });
    return part.text.size() == piece;
}

ReadCapture CaptureLoading::finish() {
    return namingTheFile(path_, [this] { return reader_.finish(); });
}

ReadCapture loadCapture(const std::string& path) {
    CaptureLoading loading(path);
    while (loading.goOn()) {
    }
    return loading.finish();
}

} // namespace varda::core
