#pragma once

#include "cli/port_choice.h"
#include "cli/requests.h"
#include "core/faults/fault_injector.h"
#include "core/link/serial_link.h"
#include "core/virtual/controller.h"
#include "device/event_loop.h"

#include <functional>
#include <memory>
#include <string>

namespace varda::cli {

/// An open port with the link on it, as the window has them, on a loop of its own.
class LinkSession : private LinkObserver {
public:
    /// @param tickPeriod of the communication timer, in milliseconds: after 13 ticks without a byte the wait
    /// for an answer ends
    explicit LinkSession(int tickPeriod);

    /// @throws RuntimeError of the port
    void open(const PortChoice& choice);
    /// Runs whenever something has become of an exchange.
    void whenTold(std::function<void(const Exchange&)> told) { told_ = std::move(told); }

    /// Sends one request and waits for what becomes of it.
    /// @throws Failure Failed where a signal ends the tool before, and as run() does
    Exchange transact(const Request& request);

    /// Serves until stop() is called, or a signal ends the tool. @return false where it was a signal
    /// @throws Failure Port where the line goes away, and what a task throws
    bool run();
    /// The same. @param finish runs however it ends, before anything is thrown
    bool run(const std::function<void()>& finish);
    void stop() { loop_.stop(); }

    device::EventLoop& loop() { return loop_; }
    SerialLink& link() { return link_; }
    /// What is done on purpose to what is sent; nothing before it has a plan.
    FaultInjector& faults() { return faults_; }

private:
    void told(const Exchange& exchange) override;
    void hangUp(const std::string& reason);

    device::EventLoop loop_;
    Controller controller_;
    FaultInjector faults_;
    MSComm comm_;
    SerialLink link_;
    std::unique_ptr<PeriodTimer> tmrComm_;
    std::function<void(const Exchange&)> told_ = [](const Exchange&) {};
    std::string hungUp_;
    bool isSignalled_ = false;
};

} // namespace varda::cli
