#include "virtual/virtual_line.h"

#include "platform/comm_error.h"

#include <utility>

namespace varda {

VirtualLine::~VirtualLine() { VirtualLine::close(); }

void VirtualLine::open(const LineSettings& /*settings*/) {
    auto input = std::make_shared<Bytes>();
    if (!controller_.plugIn()) {
        throw RuntimeError(comm_error::inUse,
                           "VIRTUAL is open already in this program. Close it there first.");
    }
    input_ = std::move(input);
}

void VirtualLine::close() noexcept {
    if (input_) {
        input_.reset();
        controller_.unplug();
    }
}

std::size_t VirtualLine::inBufferCount() const noexcept { return input_ ? input_->size() : 0; }

Bytes VirtualLine::read() { return input_ ? std::exchange(*input_, {}) : Bytes{}; }

void VirtualLine::discard() noexcept {
    if (input_) {
        input_->clear();
    }
}

void VirtualLine::write(const Bytes& bytes) {
    if (!input_) {
        throw RuntimeError(comm_error::readError, "VIRTUAL is not open. Open it before sending.");
    }
    auto answer = controller_.answer(bytes);
    if (!answer) {
        return;
    }
    clock_.after(answerDelay, [this, connection = std::weak_ptr(input_), burst = std::move(*answer)] {
        // A connection that still stands says that this line does too.
        if (!connection.expired()) {
            input_->insert(input_->end(), burst.begin(), burst.end());
            raise(CommEvent::Received);
        }
    });
}

} // namespace varda
