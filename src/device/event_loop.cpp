#include "device/event_loop.h"

#include "core/base/clock_timer.h"

#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>
#include <asio/post.hpp>
#include <asio/signal_set.hpp>
#include <asio/steady_timer.hpp>

#include <array>
#include <csignal>
#include <utility>

namespace varda::device {
namespace {

constexpr std::array endSignals = {
    SIGINT,
    SIGTERM,
#ifdef SIGHUP
    SIGHUP,
#endif
};

/// Asked by setting it, there is no way that every system has.
bool isIgnored(int signal) {
    auto* const handler = std::signal(signal, SIG_DFL);
    std::signal(signal, handler);
    return handler == SIG_IGN;
}

} // namespace

struct EventLoop::Context {
    asio::io_context io{1};
    asio::executor_work_guard<asio::io_context::executor_type> guard = asio::make_work_guard(io);
};

EventLoop::EventLoop() : context_(std::make_unique<Context>()) {}

EventLoop::~EventLoop() = default;

EventLoop::Time EventLoop::now() const { return std::chrono::steady_clock::now(); }

void EventLoop::schedule(Duration wait, std::function<void()> due) {
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
    for (const int signal : endSignals) {
        if (!isIgnored(signal)) {
            signals->add(signal);
        }
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
