#include "core/insight/traced_line.h"

#include "core/base/runtime_error.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace varda::inline core {

TracedLine::TracedLine(std::unique_ptr<Line> line, LineTap& tap, const Clock& clock)
    : LineAround(std::move(line)), tap_(tap), clock_(clock) {}

/// Whatever becomes of the telling, the line goes on.
template <typename Telling>
void TracedLine::tell(Telling&& telling) noexcept {
    if (!tap_.isOpen()) {
        return;
    }
    if (std::exchange(openings_, tap_.openings()) != tap_.openings()) {
        seen_ = 0;
    }
    try {
        std::forward<Telling>(telling)();
    } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): no memory left, for example
    }
}

void TracedLine::open(const LineSettings& settings) {
    seen_ = 0;
    inner().open(settings);
    tell([&] { tap_.opened(settings); });
}

void TracedLine::close() noexcept {
    inner().close();
    seen_ = 0;
    tell([&] { tap_.closed(); });
}

void TracedLine::pass(CommEvent event, const std::string& reason) {
    tell([&] {
        if (event == CommEvent::Received) {
            tellNews();
        } else if (event == CommEvent::HungUp) {
            tap_.hungUp(reason);
        }
    });
    raise(event, reason);
}

void TracedLine::tellNews() {
    const Burst news = inner().look(seen_);
    seen_ += news.bytes.size();
    tellPieces(news);
}

Burst TracedLine::read() {
    Burst burst = takeBurst();
    tell([&] { tellRead(burst, &LineTap::read); });
    seen_ = 0;
    return burst;
}

Burst TracedLine::takeBurst() {
    try {
        return inner().read();
    } catch (const RuntimeError& error) {
        if (inner().inBufferCount() == 0) {
            seen_ = 0;
            tell([&] { tap_.readingFailed(error.what()); });
        }
        throw;
    }
}

/// What is thrown away is read for the tap first, in one step, so that it misses nothing.
void TracedLine::discard() noexcept {
    tell([&] {
        if (inner().inBufferCount() > 0) {
            tellRead(inner().read(), &LineTap::thrownAway);
        }
    });
    inner().discard();
    seen_ = 0;
}

void TracedLine::tellRead(const Burst& burst, void (LineTap::*what)(std::size_t counted)) {
    tellPieces(burstBehind(seen_, burst.bytes, burst.arrivals));
    const std::size_t came = burst.bytes.size() + burst.counted;
    const std::size_t told = std::max(burst.bytes.size(), seen_); // of which some may only be counted by now
    (tap_.*what)(came - std::min(came, told));
}

void TracedLine::tellPieces(const Burst& burst) const {
    Octets rest = burst.bytes;
    for (const Arrival& arrival : burst.arrivals) {
        const std::size_t count = std::min(arrival.count, rest.size());
        tap_.cameIn(rest.first(count), arrival.time);
        rest = rest.subspan(count);
    }
    if (!rest.empty()) {
        tap_.cameIn(rest, clock_.now());
    }
}

/// A line may tell of further unread bytes some time after they came: of those that came before the write the
/// tap is told before it.
void TracedLine::write(const Bytes& bytes) {
    if (!tap_.isOpen()) {
        inner().write(bytes);
        return;
    }
    tell([&] { tellNews(); });
    const Clock::Time time = clock_.now();
    const std::size_t unsent = inner().unsentWrites();
    try {
        inner().write(bytes);
    } catch (const RuntimeError& error) {
        tell([&] { tap_.notSent(bytes, time, error.what()); });
        throw;
    }
    tell([&] {
        if (inner().unsentWrites() > unsent) {
            tap_.notSent(bytes, time, "Too many bytes before them still wait to be sent.");
        } else {
            tap_.sent(bytes, time);
        }
    });
}

MSComm::LineFactory traced(MSComm::LineFactory makeLine, LineTap& tap, const Clock& clock) {
    return [makeLine = std::move(makeLine), &tap, &clock](const std::string& name) {
        return std::make_unique<TracedLine>(makeLine(name), tap, clock);
    };
}

} // namespace varda::core
