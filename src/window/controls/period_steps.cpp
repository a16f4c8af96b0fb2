#include "window/controls/period_steps.h"

#include "core/base/conversion.h"
#include "core/link/period.h"

#include <QKeyEvent>
#include <QLineEdit>

#include <algorithm>

namespace varda::window {
namespace {

constexpr int step = 10;
constexpr int stepWithControl = 100;

} // namespace

PeriodSteps::PeriodSteps(QLineEdit* field, Range range) : QObject(field), field_(field), range_(range) {
    field->installEventFilter(this);
}

bool PeriodSteps::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        return takeKey(*static_cast<const QKeyEvent*>(event));
    }
    if (event->type() == QEvent::Wheel && field_->hasFocus() && field_->isEnabled()) {
        return takeWheel(*static_cast<const QWheelEvent*>(event));
    }
    return QObject::eventFilter(watched, event);
}

bool PeriodSteps::takeKey(const QKeyEvent& key) {
    if (key.key() != Qt::Key_Up && key.key() != Qt::Key_Down) {
        return false;
    }
    change(key.key() == Qt::Key_Up ? 1 : -1, key.modifiers());
    return true;
}

bool PeriodSteps::takeWheel(const QWheelEvent& wheel) {
    if (const int steps = wheelSteps_.take(wheel); steps != 0) {
        change(steps, wheel.modifiers());
    }
    return true;
}

void PeriodSteps::change(int steps, Qt::KeyboardModifiers modifiers) {
    const int size = (modifiers & Qt::ControlModifier) != 0 ? stepWithControl : step;
    const qint64 typed =
        readLong(field_->text().toStdString())
            .value_or(startPeriod); // a step beyond the largest number is none of the smallest
    const qint64 lowest = std::min<qint64>(typed, range_.lowest); // a step down raises nothing
    const qint64 highest = std::max<qint64>(typed, range_.highest);
    field_->setText(QString::number(std::clamp(typed + qint64{steps} * size, lowest, highest)));
}

} // namespace varda::window
