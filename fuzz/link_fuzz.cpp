#include "core/base/scope_exit.h"
#include "core/insight/trace_recorder.h"
#include "core/link/serial_link.h"
#include "core/pairs/packet_table.h"
#include "core/protocol/hex_text.h"
#include "core/runs/responder.h"
#include "input.h"
#include "support/fake_port.h"
#include "support/manual_clock.h"

#include <array>
#include <utility>

/// A script of what a user, the far end, the port and the clock do to a link: every request has one outcome.
namespace {

using namespace varda;
using fuzz::require;

constexpr std::array<Mode, 10> modes = {
    Mode::BitRead,    Mode::BitWrite,    Mode::WordRead,   Mode::WordWrite, Mode::MixedRead,
    Mode::MixedWrite, Mode::MonitorIdle, Mode::Monitoring, Mode::Scenario,  Mode::Simulation};

class Script : private LinkObserver {
public:
    explicit Script(fuzz::Input& input) : input_(input) {
        port_.setEventHandler([this](CommEvent event, const std::string&) {
            link_.commPLC_OnComm(event);
            if (event == CommEvent::HungUp) {
                link_.connectionClosed();
            }
        });
        recorder_.setPairs(pairs_);
        recorder_.open({});
        link_.observe(recorder_);
        link_.observe(*this);
        link_.setRoles({.repeat = [this](Mode) { send(); },
                        .answerTo = [this](auto request) { return responder_.answerTo(request); }});
        pairs_.addPair("01", "02");
        open();
    }

    void play() {
        for (int steps = 0; !input_.isEmpty() && steps < 400; ++steps) {
            try {
                step();
            } catch (const RuntimeError& refused) {
                require(refused.number() != 0, "a refusal has its number");
            }
            require(link_.state().RxCount >= 0, "a count is no negative number");
        }
    }

private:
    void step() {
        switch (input_.below(12)) {
        case 0:
            return link_.enterMode(modes.at(static_cast<std::size_t>(input_.below(modes.size()))));
        case 1:
            return send();
        case 2:
            return sendUnawaited();
        case 3:
            return link_.sendScenarioFrame(input_.bytes(20),
                                           input_.flag() ? std::optional(input_.below(300)) : std::nullopt);
        case 4:
            return port_.isOpen() ? port_.receive(input_.bytes(1200)) : port_.receiveSilently({});
        case 5:
            return port_.receiveSilently(port_.isOpen() ? input_.bytes(300) : Bytes());
        case 6:
            return clock_.advance(input_.below(400));
        case 7:
            return link_.tmrComm_Timer();
        case 8:
            return port_.isOpen() ? close() : open();
        case 9:
            return port_.isOpen() ? port_.hangUp("gone") : open();
        case 10:
            return fail();
        default:
            pairs_.addPair(hexRun(input_.bytes(4)), hexRun(input_.bytes(4)));
        }
    }

    void send() {
        if (link_.startRequest()) {
            link_.SendRequest(input_.bytes(20), input_.below(300));
        }
    }
    void sendUnawaited() {
        isAwaited_ = false;
        const ScopeExit again([this] { isAwaited_ = true; });
        link_.sendUnawaited(input_.bytes(20));
    }
    void open() {
        port_.open();
        link_.connectionOpened();
    }
    void close() {
        port_.close();
        link_.connectionClosed();
    }
    void fail() {
        const RuntimeError error(8020, "It failed.");
        switch (input_.below(4)) {
        case 0:
            return port_.failRead(error, input_.flag());
        case 1:
            return port_.failWrite(error);
        case 2:
            return port_.failOpen(error);
        default:
            port_.heal();
        }
    }

    void told(const Exchange& exchange) override {
        switch (exchange.outcome) {
        case Outcome::Sent:
            require(!isPending_, "a request has its outcome before the next one");
            isPending_ = isAwaited_;
            return;
        case Outcome::Overtaken:
            require(isPending_, "what is overtaken had no outcome");
            [[fallthrough]];
        case Outcome::Answered:
        case Outcome::WrongLength:
        case Outcome::Silent:
        case Outcome::HungUp:
        case Outcome::Ignored:
            isPending_ = false;
            return;
        default:
            return;
        }
    }

    fuzz::Input& input_;
    test::ManualClock clock_;
    test::FakePort port_;
    SerialLink link_{port_, clock_};
    PacketTable pairs_;
    Responder responder_{pairs_};
    Trace trace_;
    TraceRecorder recorder_{trace_, clock_};
    bool isPending_ = false;
    bool isAwaited_ = true;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    Script(input).play();
    return 0;
}
