#include "device/event_loop.h"

#include "core/base/runtime_error.h"

#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>
#include <asio/post.hpp>
#include <asio/steady_timer.hpp>

#include <algorithm>
#include <utility>

namespace varda::device {

struct EventLoop::Context {
    asio::io_context io{1};
    asio::executor_work_guard<asio::io_context::executor_type> guard = asio::make_work_guard(io);
};

namespace {

/// A tick that comes late does not put off the next one, unless that is overdue as well.
class LoopTimer : public PeriodTimer {
public:
    LoopTimer(Clock& clock, std::function<void()> tick) : clock_(clock), tick_(std::move(tick)) {}

    void setInterval(int milliseconds) override {
        if (milliseconds < 0) {
            throw invalidPropertyValue();
        }
        interval_ = milliseconds;
        if (isRunning()) {
            start();
        }
    }
    int interval() const override { return interval_; }
    void start() override {
        isRunning_ = true;
        next_ = clock_.now();
        waitForTick();
    }
    void stop() override {
        isRunning_ = false;
        wait_.cancel();
    }
    bool isRunning() const override { return isRunning_; }

private:
    void waitForTick() {
        wait_.cancel();
        if (interval_ == 0) { // a timer without an interval does not tick
            return;
        }
        next_ = std::max(next_ + std::chrono::milliseconds(interval_), clock_.now());
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(next_ - clock_.now());
        wait_ = clock_.after(left, [this] {
            waitForTick();
            tick_();
        });
    }

    Clock& clock_;
    std::function<void()> tick_;
    int interval_ = 0;
    bool isRunning_ = false;
    Clock::Time next_;
    Wait wait_;
};

} // namespace

EventLoop::EventLoop() : context_(std::make_unique<Context>()) {}

EventLoop::~EventLoop() = default;

EventLoop::Time EventLoop::now() const { return std::chrono::steady_clock::now(); }

void EventLoop::schedule(std::chrono::milliseconds wait, std::function<void()> due) {
    const auto timer = std::make_shared<asio::steady_timer>(context_->io, wait);
    timer->async_wait([timer, due = std::move(due)](const asio::error_code& error) {
        if (!error) {
            due();
        }
    });
}

void EventLoop::post(std::function<void()> task) { asio::post(context_->io, std::move(task)); }

std::unique_ptr<PeriodTimer> EventLoop::makeTimer(std::function<void()> tick) {
    return std::make_unique<LoopTimer>(*this, std::move(tick));
}

void EventLoop::run() {
    context_->io.restart();
    context_->io.run();
}

void EventLoop::stop() { context_->io.stop(); }

} // namespace varda::device
