#include "core/faults/faulty_line.h"

#include "core/base/runtime_error.h"

#include <utility>

namespace varda::inline core {

using namespace std::chrono_literals;

FaultyLine::FaultyLine(std::unique_ptr<Line> line, FaultInjector& injector, Clock& clock)
    : LineAround(std::move(line)), injector_(injector), clock_(clock) {}

void FaultyLine::open(const LineSettings& settings) {
    isGone_ = false;
    inner().open(settings);
}

void FaultyLine::close() noexcept {
    later_.clear();
    hangUp_.cancel();
    isGone_ = false;
    inner().close();
}

void FaultyLine::pass(CommEvent event, const std::string& reason) {
    if (event == CommEvent::HungUp) {
        later_.clear();
        hangUp_.cancel();
    }
    raise(event, reason);
}

void FaultyLine::write(const Bytes& bytes) {
    if (!injector_.isOn()) {
        inner().write(bytes);
        return;
    }
    if (isGone_) {
        return;
    }
    FaultyFrame sent = injector_.send(bytes, clock_.now());
    if (sent.hangsUp) {
        hangUpSoon();
        return;
    }
    for (FaultyFrame::Piece& piece : sent.pieces) {
        if (piece.after == 0ms) {
            inner().write(piece.bytes);
        } else {
            sendLater(std::move(piece));
        }
    }
}

/// Nobody is left to be told where the line refuses a late piece; a tap in it is.
void FaultyLine::sendLater(FaultyFrame::Piece piece) {
    std::erase_if(later_, [](const Wait& wait) { return !wait.isPending(); });
    later_.push_back(clock_.after(piece.after, [this, bytes = std::move(piece.bytes)] {
        try {
            inner().write(bytes);
        } catch (const RuntimeError&) { // NOLINT(bugprone-empty-catch): as a device that falls silent
        }
    }));
}

/// Not inside the write, whose caller still has the line in its hands.
void FaultyLine::hangUpSoon() {
    isGone_ = true;
    later_.clear();
    hangUp_ = clock_.after(0ms, [this] {
        isGone_ = false;
        inner().close();
        raise(CommEvent::HungUp, "The line was hung up on purpose, by a fault of this program.");
    });
}

MSComm::LineFactory faulty(MSComm::LineFactory makeLine, FaultInjector& injector, Clock& clock) {
    return [makeLine = std::move(makeLine), &injector, &clock](const std::string& name) {
        return std::make_unique<FaultyLine>(makeLine(name), injector, clock);
    };
}

} // namespace varda::core
