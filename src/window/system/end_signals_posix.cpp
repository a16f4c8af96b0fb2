#include "window/system/end_signals.h"

#include <QSocketNotifier>

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <utility>

namespace varda::window {
namespace {

constexpr std::array endSignals = {SIGINT, SIGTERM, SIGHUP};

/// A pipe from the signal handler, which may do next to nothing, to the event loop. Both ends are -1 where
/// the system has no handles left: the signals then end the program as they always do.
struct Pipe {
    int readEnd = -1;
    std::atomic<int> writeEnd = -1;
};

Pipe& ownPipe() {
    static Pipe pipe;
    return pipe;
}

extern "C" void tellOfSignal(int /*signal*/) {
    const int error = errno;
    const char any = 0;
    [[maybe_unused]] const auto written = ::write(ownPipe().writeEnd, &any, 1);
    errno = error;
}

void openPipe() {
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0) {
        return;
    }
    for (const int end : ends) {
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
        ::fcntl(end, F_SETFL, O_NONBLOCK); // many signals must not stop the program in their handler
    }
    ownPipe().readEnd = ends[0];
    ownPipe().writeEnd = ends[1];
}

void closePipe() {
    ::close(ownPipe().writeEnd.exchange(-1));
    ::close(std::exchange(ownPipe().readEnd, -1));
}

/// Exchanges the handler of each signal; one that is ignored stays so.
void handleBy(void (*handler)(int)) {
    for (const int signal : endSignals) {
        struct sigaction action {};
        ::sigaction(signal, nullptr, &action);
        if (action.sa_handler != SIG_IGN) {
            action = {};
            action.sa_handler = handler;
            action.sa_flags = SA_RESTART;
            ::sigaction(signal, &action, nullptr);
        }
    }
}

} // namespace

EndSignals::EndSignals(const std::function<void()>& end) {
    openPipe();
    if (ownPipe().readEnd < 0) {
        return;
    }
    auto* const notifier = new QSocketNotifier(ownPipe().readEnd, QSocketNotifier::Read, &context_);
    QObject::connect(notifier, &QSocketNotifier::activated, &context_, [notifier, end] {
        notifier->setEnabled(false);
        handleBy(SIG_DFL); // a second one ends the program where the first one does not get through
        end();
    });
    handleBy(tellOfSignal);
}

EndSignals::~EndSignals() {
    if (ownPipe().readEnd >= 0) {
        handleBy(SIG_DFL);
        closePipe();
    }
}

} // namespace varda::window
