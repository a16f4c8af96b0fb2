#include "device/event_loop.h"

#include "core/base/clock_timer.h"

#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>
#include <asio/post.hpp>
#include <asio/signal_set.hpp>
#include <asio/steady_timer.hpp>

#include <csignal>
#include <utility>
#include <vector>

namespace varda::device {
namespace {

std::vector<int> endSignals() {
    std::vector<int> signals = {SIGINT, SIGTERM};
#ifdef SIGHUP
    if (std::signal(SIGHUP, SIG_DFL) == SIG_IGN) { // asked by setting it, there is no other way
        std::signal(SIGHUP, SIG_IGN);
    } else {
        signals.push_back(SIGHUP);
    }
#endif
    return signals;
}

} // namespace

struct EventLoop::Context {
    asio::io_context io{1};
    asio::executor_work_guard<asio::io_context::executor_type> guard = asio::make_work_guard(io);
};

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
    return std::make_unique<ClockTimer>(*this, std::move(tick));
}

std::shared_ptr<void> EventLoop::whenAskedToEnd(std::function<void()> end) {
    auto signals = std::make_shared<asio::signal_set>(context_->io);
    for (const int signal : endSignals()) {
        signals->add(signal);
    }
    signals->async_wait([end = std::move(end)](const asio::error_code& error, int /*signal*/) {
        if (!error) {
            end();
        }
    });
    return signals;
}

void EventLoop::run() {
    context_->io.restart();
    context_->io.run();
}

void EventLoop::stop() { context_->io.stop(); }

} // namespace varda::device
