#pragma once

#include "core/base/clock.h"

#include <QHash>
#include <QObject>
#include <QString>

#include <chrono>
#include <functional>
#include <utility>

class QWidget;

namespace varda::window {

/// Has screen readers speak what becomes of a request although the focus is elsewhere: a status that changes
/// raises an alert.
///
/// A status that comes again and again, as in continuous reading, is spoken once, and then not before there
/// has been silence.
class Announcer : public QObject {
    Q_OBJECT

public:
    static constexpr auto silence = std::chrono::seconds(3);

    /// @param clock outlives this @param alert has a control spoken
    explicit Announcer(const Clock& clock, std::function<void(QWidget* control)> alert = raiseAlert)
        : clock_(clock), alert_(std::move(alert)) {}

    /// Qt's alert, which is nothing where no screen reader runs.
    static void raiseAlert(QWidget* control);

    /// Speaks what the status fields of a window show, and its labels of states tell, from now on.
    void listenToStatuses(const QWidget* window);
    /// Speaks a text that a control shows; an empty one is not spoken.
    void speak(QWidget* control, const QString& text);

private:
    struct Spoken {
        QString text;
        Clock::Time time;
    };

    const Clock& clock_;
    std::function<void(QWidget* control)> alert_;
    QHash<const QWidget*, Spoken> last_; ///< of each control
};

} // namespace varda::window
