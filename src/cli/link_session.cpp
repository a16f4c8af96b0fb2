#include "cli/link_session.h"

#include "cli/failure.h"
#include "core/base/scope_exit.h"
#include "core/faults/faulty_line.h"
#include "device/lines.h"

#include <utility>

namespace varda::cli {

LinkSession::LinkSession(int tickPeriod)
    : comm_(faulty(device::lineFactory(loop_, controller_,
                                       [this](std::function<void()> task) { loop_.post(std::move(task)); }),
                   faults_, loop_)),
      link_(comm_, loop_),
      tmrComm_(loop_.makeTimer([this] { link_.tmrComm_Timer(); })) {
    link_.observe(*this);
    comm_.setEventHandler([this](CommEvent event, const std::string& reason) {
        link_.commPLC_OnComm(event);
        if (event == CommEvent::HungUp) {
            hangUp(reason);
        }
    });
    tmrComm_->setInterval(tickPeriod);
}

void LinkSession::open(const PortChoice& choice) {
    comm_.setSettings(choice.settings());
    comm_.setCommPort(choice.name);
    comm_.open();
    link_.connectionOpened();
    tmrComm_->start();
}

Exchange LinkSession::transact(const Request& request) {
    Exchange end;
    told_ = [this, &end](const Exchange& exchange) {
        if (exchange.outcome != Outcome::Sent && exchange.outcome != Outcome::ThrownAway) {
            end = exchange;
            stop();
        }
    };
    const ScopeExit forgotten([this] { told_ = [](const Exchange&) {}; });
    link_.enterMode(request.mode);
    if (link_.startRequest()) {
        link_.SendRequest(request.bytes, request.answerLength);
    }
    if (!run()) {
        throw Failure(ExitCode::Failed, "Ended before an answer came.");
    }
    return end;
}

bool LinkSession::run() {
    const auto signals = loop_.whenAskedToEnd([this] {
        isSignalled_ = true;
        stop();
    });
    if (comm_.isOpen()) {
        loop_.run();
    }
    if (!hungUp_.empty()) {
        throw Failure(ExitCode::Port, hungUp_);
    }
    return !isSignalled_;
}

bool LinkSession::run(const std::function<void()>& finish) {
    bool isWhole = false;
    doBoth([&] { isWhole = run(); }, finish);
    return isWhole;
}

void LinkSession::told(const Exchange& exchange) {
    if (exchange.outcome == Outcome::NothingToRead) {
        link_.endEmptyReception();
    }
    told_(exchange);
}

void LinkSession::hangUp(const std::string& reason) {
    hungUp_ = reason;
    stop();
}

} // namespace varda::cli
