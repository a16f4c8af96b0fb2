#include "core/virtual/virtual_line.h"

#include "core/link/comm_error.h"

#include <utility>

namespace varda::inline core {

VirtualLine::~VirtualLine() { VirtualLine::close(); }

void VirtualLine::open(const LineSettings& /*settings*/) {
    if (isOpen_ || !controller_.plugIn()) {
        throw RuntimeError(comm_error::inUse,
                           "VIRTUAL is open already in this program. Close it there first.");
    }
    isOpen_ = true;
}

void VirtualLine::close() noexcept {
    if (isOpen_) {
        isOpen_ = false;
        input_.clear();
        answers_.clear();
        controller_.unplug();
    }
}

std::size_t VirtualLine::inBufferCount() const noexcept { return input_.size(); }

Burst VirtualLine::read() { return {.bytes = std::exchange(input_, {})}; }

Burst VirtualLine::look(std::size_t from) const { return burstBehind(from, input_, {}); }

void VirtualLine::discard() noexcept { input_.clear(); }

void VirtualLine::write(const Bytes& bytes) {
    if (!isOpen_) {
        throw RuntimeError(comm_error::readError, "VIRTUAL is not open. Open it before sending.");
    }
    auto answer = controller_.answer(bytes);
    if (!answer) {
        return;
    }
    std::erase_if(answers_, [](const Wait& onItsWay) { return !onItsWay.isPending(); });
    answers_.push_back(clock_.after(answerDelay, [this, burst = std::move(*answer)] {
        input_.insert(input_.end(), burst.begin(), burst.end());
        raise(CommEvent::Received);
    }));
}

} // namespace varda::core
