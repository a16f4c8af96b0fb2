#include "device/connection.h"

#include "device/driver.h"
#include "device/line_setup.h"
#include "device/node_claim.h"

#include <asio/bind_cancellation_slot.hpp>
#include <asio/buffer.hpp>

#include <utility>

namespace varda::device {

using Lock = std::unique_lock<std::mutex>;

Connection::Connection(NodeClaim& claim, const LineSettings& settings, std::function<void()> tell)
    : tell_(std::move(tell)) {
    port_.assign(claim.handle());
    claim.handOver();
    try {
        setUp(port_, settings);
        driver::discardInput(port_.native_handle()); // what came while nobody listened
        startReading();
        thread_ = std::thread([this] { run(); });
    } catch (...) {
        driver::prepareToClose(port_.native_handle());
        throw;
    }
}

/// The thread comes first, for it uses the port; no handler waits for anything, so neither does the join.
Connection::~Connection() {
    context_.stop();
    thread_.join();
    driver::prepareToClose(port_.native_handle());
    std::error_code ignored;
    port_.close(ignored); // what the system may still be sending from is taken down after it
}

Connection::News Connection::takeNews() {
    const Lock input(inputMutex_);
    isTold_ = false;
    News news = std::exchange(news_, {});
    news.received = news.received && input_.count() > 0; // discarded meanwhile
    return news;
}

std::size_t Connection::inBufferCount() const {
    const Lock input(inputMutex_);
    return input_.count();
}

/// Reading has stopped where the buffer was full, and nowhere else.
Burst Connection::read() {
    Lock input(inputMutex_);
    const bool wasFull = input_.isFull();
    Burst burst = input_.take();
    tellOfTheEnd(input);
    if (wasFull) {
        readOnWhereThereIsRoom();
    }
    return burst;
}

Burst Connection::look(std::size_t from) const {
    const Lock input(inputMutex_);
    return input_.look(from);
}

/// A read may have its bytes already while its handler has not run yet: it is cancelled, and dropped if that
/// comes too late.
void Connection::discard() {
    Lock port(portMutex_);
    Lock input(inputMutex_);
    input_.clear();
    if (reading_) {
        reading_->isDropped = true;
        reading_->end.emit(asio::cancellation_type::terminal);
        reading_.reset();
    }
    driver::discardInput(port_.native_handle());
    port.unlock();
    tellOfTheEnd(input);
    readOnWhereThereIsRoom();
}

void Connection::keepFirst(std::size_t most) {
    Lock input(inputMutex_);
    input_.keepFirst(most);
    input.unlock();
    readOnWhereThereIsRoom();
}

void Connection::write(const Bytes& bytes) {
    Lock port(portMutex_);
    if (isGone()) {
        return; // the news of it is on its way
    }
    const std::size_t behind = sending_.size() - handedOver_ + waiting_.size();
    if (behind == 0) {
        send(bytes);
    } else if (behind + bytes.size() <= mostUnsentBytes) {
        waiting_.insert(waiting_.end(), bytes.begin(), bytes.end());
    } else {
        port.unlock();
        Lock input(inputMutex_);
        ++unsentWrites_;
        tellOf(&News::unsent, input);
    }
}

std::size_t Connection::unsentWrites() const {
    const Lock input(inputMutex_);
    return unsentWrites_;
}

/// Handed to the driver here and now, so that the bytes wait for no other thread; the rest goes when it can.
void Connection::send(std::span<const std::uint8_t> bytes) {
    const auto rest = bytes.subspan(driver::writeAtOnce(port_.native_handle(), bytes));
    waiting_.assign(rest.begin(), rest.end());
    sendWaiting();
}

void Connection::run() noexcept {
    try {
        context_.run();
    } catch (const std::exception&) { // no memory left, for example
        Lock input(inputMutex_);
        isGone_ = true;
        tellOfTheEnd(input);
    }
}

void Connection::startReading() {
    if (!reading_) {
        reading_ = std::make_shared<Reading>();
    }
    auto& reading = *reading_;
    port_.async_read_some(
        asio::buffer(reading.piece, driver::mostToAskFor(port_.native_handle())),
        asio::bind_cancellation_slot(
            reading.end.slot(), [this, kept = reading_](const std::error_code& error, std::size_t count) {
                received(*kept, error, count);
            }));
}

void Connection::received(Reading& reading, const std::error_code& error, std::size_t count) {
    const auto arrival = InputBuffer::Time::clock::now();
    Lock input(inputMutex_);
    if (reading.isDropped) {
        return;
    }
    if (error) {
        input.unlock();
        fail();
        return;
    }
    const bool isFirst = input_.count() == 0;
    input_.append(std::span(reading.piece).first(count), arrival);
    tellOfPiece(isFirst, input); // before all else: somebody waits for it
    const Lock port(portMutex_);
    if (reading.isDropped) {
        return; // another read has begun
    }
    if (mayReadOn()) {
        startReading();
    } else {
        reading_.reset();
    }
}

/// Of the first one at once. Unlocks before it tells.
void Connection::tellOfPiece(bool isFirst, Lock& input) {
    if (isFirst) {
        tellOf(&News::received, input);
        return;
    }
    input.unlock();
    if (std::exchange(isGathering_, true)) {
        return;
    }
    endOfGathering_.expires_after(gatheringTime);
    endOfGathering_.async_wait([this](const std::error_code&) {
        isGathering_ = false;
        Lock later(inputMutex_);
        if (input_.count() > 0) {
            tellOf(&News::received, later);
        }
    });
}

void Connection::readOnWhereThereIsRoom() {
    const Lock port(portMutex_);
    if (!reading_ && mayReadOn()) {
        startReading();
    }
}

bool Connection::mayReadOn() const {
    const Lock input(inputMutex_);
    return !isGone_ && !input_.isFull();
}

bool Connection::isGone() const {
    const Lock input(inputMutex_);
    return isGone_;
}

void Connection::sendWaiting() {
    if (handedOver_ == sending_.size()) {
        sending_ = std::exchange(waiting_, {});
        handedOver_ = 0;
    }
    if (!sending_.empty()) {
        port_.async_write_some(
            asio::buffer(sending_) + handedOver_,
            [this](const std::error_code& error, std::size_t count) { sent(error, count); });
    }
}

void Connection::sent(const std::error_code& error, std::size_t count) {
    if (error) {
        fail();
        return;
    }
    const Lock port(portMutex_);
    handedOver_ += count;
    sendWaiting();
}

/// What came in before comes first, if somebody reads it soon.
void Connection::fail() {
    Lock input(inputMutex_);
    if (std::exchange(isGone_, true)) {
        return;
    }
    if (input_.count() == 0) {
        tellOfTheEnd(input);
        return;
    }
    endOfReading_.expires_after(timeToRead);
    endOfReading_.async_wait([this](const std::error_code&) {
        Lock later(inputMutex_);
        tellOfTheEnd(later);
    });
}

/// Leaves it unlocked.
void Connection::tellOfTheEnd(Lock& input) {
    if (isGone_ && !std::exchange(isEndTold_, true)) {
        tellOf(&News::hungUp, input);
    } else {
        input.unlock();
    }
}

/// Unlocks before it tells: what is called then is not ours.
void Connection::tellOf(bool News::*event, Lock& input) {
    news_.*event = true;
    const bool isNew = !std::exchange(isTold_, true);
    input.unlock();
    if (isNew) {
        tell_();
    }
}

} // namespace varda::device
