#pragma once

#include "window/controls/wheel_steps.h"

#include <QObject>

class QKeyEvent;
class QLineEdit;

namespace varda::window {

/// Lets the arrow keys up and down, and the wheel while the field has the focus, change a period by 10
/// milliseconds, with Ctrl by 100.
class PeriodSteps : public QObject {
    Q_OBJECT

public:
    /// Periods in milliseconds that a step may lead to.
    struct Range {
        int lowest;
        int highest;
    };

    PeriodSteps(QLineEdit* field, Range range);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool takeKey(const QKeyEvent& key);
    bool takeWheel(const QWheelEvent& wheel);
    void change(int steps, Qt::KeyboardModifiers modifiers);

    QLineEdit* field_;
    Range range_;
    WheelSteps wheelSteps_;
};

} // namespace varda::window
