#pragma once

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

#include <chrono>
#include <functional>

namespace varda::test {

/// Runs the event loop for `time`.
inline void runFor(std::chrono::milliseconds time) {
    QEventLoop loop;
    QTimer::singleShot(time, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

/// Runs the event loop until `condition` holds, at most for `limit`, which only a failure, or a machine that
/// has no time, takes; returns whether it holds.
inline bool runUntil(const std::function<bool()>& condition,
                     std::chrono::milliseconds limit = std::chrono::seconds(30)) {
    const QDeadlineTimer deadline(limit);
    while (!condition() && !deadline.hasExpired()) {
        runFor(std::chrono::milliseconds(2));
    }
    return condition();
}

} // namespace varda::test
