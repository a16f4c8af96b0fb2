#include "window/shell/announcer.h"

#include "window/controls/state_label.h"

#include <QAccessible>
#include <QLineEdit>

namespace varda::window {

void Announcer::raiseAlert(QWidget* control) {
    QAccessibleEvent alert(control, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void Announcer::listenToStatuses(const QWidget* window) {
    for (QLineEdit* const field : window->findChildren<QLineEdit*>()) {
        if (field->objectName().endsWith(QLatin1String("Status"))) {
            connect(field, &QLineEdit::textChanged, this,
                    [this, field](const QString& text) { speak(field, text); });
        }
    }
    for (StateLabel* const label : window->findChildren<StateLabel*>()) {
        connect(label, &StateLabel::told, this, [this, label](const QString& text) { speak(label, text); });
    }
}

void Announcer::speak(QWidget* control, const QString& text) {
    if (text.isEmpty()) {
        return;
    }
    Spoken& last = last_[control];
    const Clock::Time now = clock_.now();
    const bool isRepeated = last.text == text && now - last.time < silence;
    last = {text, now};
    if (!isRepeated) {
        alert_(control);
    }
}

} // namespace varda::window
