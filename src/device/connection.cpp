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
    const Lock lock(mutex_);
    isTold_ = false;
    return std::exchange(news_, {});
}

std::size_t Connection::inBufferCount() const {
    const Lock lock(mutex_);
    return input_.count();
}

Bytes Connection::read() {
    Lock lock(mutex_);
    Bytes bytes = input_.take();
    readOnWhereThereIsRoom();
    tellOfTheEnd(lock);
    return bytes;
}

std::vector<Arrival> Connection::arrivals() const {
    const Lock lock(mutex_);
    return input_.taken();
}

/// A read may have its bytes already while its handler has not run yet: it is cancelled, and dropped if that
/// comes too late.
void Connection::discard() {
    Lock lock(mutex_);
    input_.clear();
    if (reading_) {
        reading_->isDropped = true;
        reading_->end.emit(asio::cancellation_type::terminal);
        reading_.reset();
    }
    driver::discardInput(port_.native_handle());
    readOnWhereThereIsRoom();
    tellOfTheEnd(lock);
}

void Connection::keepFirst(std::size_t most) {
    const Lock lock(mutex_);
    input_.keepFirst(most);
    readOnWhereThereIsRoom();
}

void Connection::write(const Bytes& bytes) {
    Lock lock(mutex_);
    if (isGone_) {
        return; // the news of it is on its way
    }
    const std::size_t behind = sending_.size() - handedOver_ + waiting_.size();
    if (behind == 0) {
        send(bytes);
    } else if (behind + bytes.size() <= mostUnsentBytes) {
        waiting_.insert(waiting_.end(), bytes.begin(), bytes.end());
    } else {
        ++unsentWrites_;
        tellOf(&News::unsent, lock);
    }
}

std::size_t Connection::unsentWrites() const {
    const Lock lock(mutex_);
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
        Lock lock(mutex_);
        isGone_ = true;
        tellOfTheEnd(lock);
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
    Lock lock(mutex_);
    if (reading.isDropped) {
        return;
    }
    if (error) {
        lock.unlock();
        fail();
        return;
    }
    input_.append(std::span(reading.piece).first(count), arrival);
    tellOf(&News::received, lock); // before all else: somebody waits for it
    lock.lock();
    if (reading.isDropped) {
        return; // another read has begun
    }
    if (input_.isFull()) {
        reading_.reset();
    } else {
        startReading();
    }
}

void Connection::readOnWhereThereIsRoom() {
    if (!reading_ && !isGone_ && !input_.isFull()) {
        startReading();
    }
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
    Lock lock(mutex_);
    if (error) {
        lock.unlock();
        fail();
        return;
    }
    handedOver_ += count;
    sendWaiting();
}

/// What came in before comes first, if somebody reads it soon.
void Connection::fail() {
    Lock lock(mutex_);
    if (std::exchange(isGone_, true)) {
        return;
    }
    if (input_.count() == 0) {
        tellOfTheEnd(lock);
        return;
    }
    endOfReading_.expires_after(timeToRead);
    endOfReading_.async_wait([this](const std::error_code&) {
        Lock later(mutex_);
        tellOfTheEnd(later);
    });
}

void Connection::tellOfTheEnd(Lock& lock) {
    if (isGone_ && !std::exchange(isEndTold_, true)) {
        tellOf(&News::hungUp, lock);
    }
}

/// Unlocks before it tells: what is called then is not ours.
void Connection::tellOf(bool News::*event, Lock& lock) {
    news_.*event = true;
    const bool isNew = !std::exchange(isTold_, true);
    lock.unlock();
    if (isNew) {
        tell_();
    }
}

} // namespace varda::device
