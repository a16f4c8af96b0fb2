#include "window/controls/sliced_work.h"

#include <chrono>
#include <utility>

namespace varda::window {

void SlicedWork::start(Slice work, std::function<void()> ended) {
    work_ = std::move(work);
    ended_ = std::move(ended);
    goOn();
}

void SlicedWork::cancel() {
    next_.cancel();
    work_ = nullptr;
    ended_ = nullptr;
}

void SlicedWork::goOn() {
    Slice work = std::exchange(work_, nullptr);
    if (work()) {
        work_ = std::move(work);
        next_ = clock_.after(std::chrono::milliseconds(0), [this] { goOn(); });
        wentOn_();
    } else if (const auto ended = std::exchange(ended_, nullptr)) {
        ended();
    }
}

} // namespace varda::window
