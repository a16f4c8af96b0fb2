#include "window/system/end_signals.h"

#include <QCoreApplication>

#include <windows.h>

#include <mutex>
#include <utility>

namespace varda::window {
namespace {

/// The system calls its handler on a thread of its own, and ends the program when that returns.
struct Ears {
    std::mutex mutex;
    std::function<void()> end;
};

Ears& ears() {
    static Ears instance;
    return instance;
}

BOOL WINAPI tellOfEvent(DWORD event) {
    std::function<void()> end;
    {
        const std::lock_guard lock(ears().mutex);
        end.swap(ears().end);
    }
    const bool isFirst = static_cast<bool>(end);
    if (isFirst) {
        QMetaObject::invokeMethod(QCoreApplication::instance(), std::move(end), Qt::QueuedConnection);
    }
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) {
        ::Sleep(INFINITE); // the program ends meanwhile, or is ended after some seconds
    }
    return isFirst ? TRUE : FALSE; // a second one ends the program where the first one does not get through
}

} // namespace

EndSignals::EndSignals(const std::function<void()>& end) {
    {
        const std::lock_guard lock(ears().mutex);
        ears().end = end;
    }
    ::SetConsoleCtrlHandler(tellOfEvent, TRUE);
}

EndSignals::~EndSignals() {
    ::SetConsoleCtrlHandler(tellOfEvent, FALSE);
    const std::lock_guard lock(ears().mutex);
    ears().end = nullptr;
}

} // namespace varda::window
