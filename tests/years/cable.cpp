#include "years/cable.h"

#include "core/link/comm_error.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace varda::years {
namespace {

using std::chrono::milliseconds;

constexpr int bitsPerByte = 10;         // with start and stop bit
constexpr std::size_t usualRoom = 4096; // as a serial port has it
constexpr int longestBabble = 40;
constexpr int longestHangUpWait = 1000;

std::chrono::nanoseconds upTo(Random& random, int most) {
    return std::chrono::microseconds(random.below(most * 1000 + 1));
}

} // namespace

// The cable

std::unique_ptr<Line> Cable::makeLine(int end) { return std::make_unique<SimulatedLine>(*this, end); }

Clock::Time::duration Cable::onWire(std::size_t bytes) const {
    return std::chrono::nanoseconds(static_cast<std::int64_t>(bytes) * bitsPerByte * 1'000'000'000 /
                                    sky_.weather.baud);
}

std::size_t Cable::backlog(int end) const {
    const auto left = ends_.at(static_cast<std::size_t>(end)).sentUntil - clock_.now();
    return left.count() <= 0 ? 0 : static_cast<std::size_t>(left / onWire(1));
}

bool Cable::isQuiet() const {
    return onTheirWay_ == 0 && std::ranges::all_of(ends_, [](const End& end) {
               return end.open == nullptr || end.open->inBufferCount() == 0;
           });
}

void Cable::account(Findings& findings) const {
    findings.require(sent_ + faults_.doubled + faults_.babbled ==
                         arrived_ + faults_.lost + faults_.overflown + faults_.unheard + onTheirWay_,
                     "the bytes on the line do not add up");
}

void Cable::transmit(int from, const Bytes& bytes) {
    End& end = ends_.at(static_cast<std::size_t>(from));
    const int to = 1 - from;
    sent_ += bytes.size();
    tape_.put(static_cast<std::uint64_t>(clock_.now().time_since_epoch().count()) * 2 +
              static_cast<std::uint64_t>(from));
    tape_.put(bytes);
    const Time begin = std::max(clock_.now(), end.sentUntil);
    end.sentUntil = begin + onWire(bytes.size());
    sendPieces(to, damaged(bytes), begin);
    if (sky_.strikes(&Weather::babble)) {
        babble(sky_.random.below(2));
    }
    if (sky_.strikes(&Weather::hangUps)) {
        hangUpLater(sky_.random.below(2));
    }
}

Bytes Cable::damaged(const Bytes& bytes) {
    const Weather& weather = sky_.weather;
    if (sky_.isHealed || weather.noise + weather.lost + weather.doubled == 0) {
        return bytes;
    }
    Bytes damaged;
    damaged.reserve(bytes.size() + 8);
    for (const std::uint8_t byte : bytes) {
        if (sky_.strikes(&Weather::lost)) {
            ++faults_.lost;
            continue;
        }
        const bool isAltered = sky_.strikes(&Weather::noise);
        faults_.altered += isAltered ? 1 : 0;
        damaged.push_back(isAltered ? sky_.random.byte() : byte);
        if (sky_.strikes(&Weather::doubled)) {
            ++faults_.doubled;
            damaged.push_back(damaged.back());
        }
    }
    return damaged;
}

void Cable::sendPieces(int to, const Bytes& bytes, Time begin) {
    const std::size_t size = bytes.size();
    const auto chunk = static_cast<std::size_t>(sky_.isHealed ? 0 : sky_.weather.chunk);
    const auto splitAt = size > 1 && sky_.strikes(&Weather::splits)
                             ? static_cast<std::size_t>(sky_.random.between(1, static_cast<int>(size) - 1))
                             : size;
    faults_.split += splitAt < size ? 1 : 0;
    auto pause = std::chrono::nanoseconds(0);
    for (std::size_t first = 0; first < size;) {
        std::size_t last = chunk == 0 ? size : std::min(first + chunk, size);
        last = first < splitAt ? std::min(last, splitAt) : last;
        sendPiece(to,
                  {bytes.begin() + static_cast<std::ptrdiff_t>(first),
                   bytes.begin() + static_cast<std::ptrdiff_t>(last)},
                  begin + onWire(last) + pause);
        if (last == splitAt && last < size) {
            pause += upTo(sky_.random, sky_.weather.pause);
        }
        first = last;
    }
}

void Cable::sendPiece(int to, Bytes piece, Time time) {
    Time& arrivedUntil = ends_.at(static_cast<std::size_t>(to)).arrivedUntil;
    arrivedUntil = std::max(arrivedUntil, time + upTo(sky_.random, sky_.weather.latency));
    onTheirWay_ += piece.size();
    clock_.at(arrivedUntil, [this, to, piece = std::move(piece)] {
        onTheirWay_ -= piece.size();
        deliver(to, piece);
    });
}

void Cable::deliver(int to, const Bytes& piece) {
    SimulatedLine* const line = ends_.at(static_cast<std::size_t>(to)).open;
    if (line == nullptr) {
        faults_.unheard += piece.size();
        return;
    }
    line->take(piece, clock_.now());
}

void Cable::babble(int to) {
    Bytes bytes(static_cast<std::size_t>(sky_.random.between(1, longestBabble)));
    std::ranges::generate(bytes, [this] { return sky_.random.byte(); });
    faults_.babbled += bytes.size();
    sendPiece(to, std::move(bytes), clock_.now() + milliseconds(sky_.random.below(longestHangUpWait)));
}

void Cable::hangUpLater(int end) {
    clock_.at(clock_.now() + milliseconds(sky_.random.below(longestHangUpWait)), [this, end] {
        SimulatedLine* const line = ends_.at(static_cast<std::size_t>(end)).open;
        if (line != nullptr && !sky_.isHealed) {
            ++faults_.hangUps;
            line->hangUp();
        }
    });
}

// A line

void SimulatedLine::open(const LineSettings& /*settings*/) {
    if (cable_.ends_.at(static_cast<std::size_t>(end_)).open != nullptr) {
        throw portInUse("The cable");
    }
    if (cable_.sky_.strikes(&Weather::failedOpens)) {
        ++cable_.faults_.refused;
        throw noSuchDevice("The cable");
    }
    cable_.ends_.at(static_cast<std::size_t>(end_)).open = this;
}

void SimulatedLine::close() noexcept {
    SimulatedLine*& open = cable_.ends_[static_cast<std::size_t>(end_)].open;
    if (open == this) {
        open = nullptr;
    }
    discard();
}

Burst SimulatedLine::read() {
    if (cable_.sky_.strikes(&Weather::failedReads)) {
        ++cable_.faults_.refused;
        if (cable_.sky_.random.oneIn(2)) {
            discard();
        }
        throw RuntimeError(comm_error::readError, "The cable could not be read.");
    }
    const std::size_t counted = counted_;
    keepEverything();
    return {.bytes = std::exchange(input_, {}), .arrivals = std::exchange(arrivals_, {}), .counted = counted};
}

void SimulatedLine::discard() noexcept {
    input_.clear();
    arrivals_.clear();
    keepEverything();
}

void SimulatedLine::write(const Bytes& bytes) {
    if (cable_.ends_.at(static_cast<std::size_t>(end_)).open != this) {
        throw RuntimeError(comm_error::notOpen, "The cable is not plugged in.");
    }
    const int drawn = cable_.sky_.isHealed ? 0 : cable_.sky_.weather.outputRoom;
    if (cable_.backlog(end_) > (drawn > 0 ? static_cast<std::size_t>(drawn) : usualRoom)) {
        ++unsent_;
        ++cable_.faults_.unsent;
        return;
    }
    if (cable_.sky_.strikes(&Weather::refusedWrites)) {
        ++cable_.faults_.refused;
        throw RuntimeError(comm_error::readError, "The cable could not be written to.");
    }
    cable_.transmit(end_, bytes);
}

void SimulatedLine::keepFirst(std::size_t most) noexcept {
    kept_ = most;
    countSurplus();
}

void SimulatedLine::take(const Bytes& piece, Clock::Time time) {
    const auto room = static_cast<std::size_t>(cable_.sky_.weather.inputRoom);
    const std::size_t free =
        room == 0 || cable_.sky_.isHealed ? piece.size() : room - std::min(room, inBufferCount());
    const std::size_t fitting = std::min(piece.size(), free);
    cable_.arrived_ += fitting;
    cable_.faults_.overflown += piece.size() - fitting;
    if (fitting == 0) {
        return;
    }
    input_.insert(input_.end(), piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(fitting));
    arrivals_.push_back({fitting, time});
    countSurplus();
    raise(CommEvent::Received);
}

void SimulatedLine::hangUp() {
    close();
    raise(CommEvent::HungUp, "The cable was pulled out.");
}

void SimulatedLine::keepEverything() noexcept {
    counted_ = 0;
    kept_ = static_cast<std::size_t>(-1);
}

void SimulatedLine::countSurplus() noexcept {
    const std::size_t surplus = input_.size() - std::min(input_.size(), kept_);
    counted_ += surplus;
    input_.resize(input_.size() - surplus);
}

} // namespace varda::years
