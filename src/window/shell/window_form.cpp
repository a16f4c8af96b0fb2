#include "window/shell/window_form.h"

#include "window/controls/events.h"
#include "window/controls/lists.h"
#include "window/controls/message_boxes.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QWidget>

#include <utility>

namespace varda::window {
namespace {

QString shownText(const QWidget* control) {
    if (const auto* const line = qobject_cast<const QLineEdit*>(control)) {
        return line->text();
    }
    if (const auto* const list = qobject_cast<const QComboBox*>(control)) {
        return list->currentText();
    }
    if (const auto* const button = qobject_cast<const QAbstractButton*>(control)) {
        return button->text();
    }
    if (const auto* const frame = qobject_cast<const QPlainTextEdit*>(control)) {
        return frame->toPlainText();
    }
    return control != nullptr ? control->property("text").toString() : QString();
}

void showText(QWidget* control, const QString& text) {
    if (auto* const line = qobject_cast<QLineEdit*>(control)) {
        line->setText(text);
    } else if (auto* const list = qobject_cast<QComboBox*>(control)) {
        list->setEditText(text);
    } else if (auto* const button = qobject_cast<QAbstractButton*>(control)) {
        button->setText(text);
    } else if (auto* const frame = qobject_cast<QPlainTextEdit*>(control)) {
        frame->setPlainText(text);
    }
}

} // namespace

void WindowForm::collectControls(QWidget& window) {
    for (QWidget* const control : window.findChildren<QWidget*>()) {
        if (!control->objectName().isEmpty()) {
            controls_.insert(control->objectName(), control);
        }
    }
    for (const ControlGroup group : controlGroups) {
        for (auto control = controls_.cbegin(); control != controls_.cend(); ++control) {
            if (isInGroup(group, control.key().toStdString())) {
                groupOf(group).push_back(control.value());
            }
        }
    }
}

QWidget* WindowForm::find(std::string_view control) const {
    QWidget* const found = controls_.value(QString::fromUtf8(control));
    Q_ASSERT_X(found != nullptr, "WindowForm", qPrintable(QString::fromUtf8(control)));
    return found;
}

std::string WindowForm::text(std::string_view control) const {
    return shownText(find(control)).toStdString();
}

void WindowForm::setText(std::string_view control, const std::string& text) {
    QWidget* const found = find(control);
    const QString shown = QString::fromStdString(text);
    if (shownText(found) != shown) { // leaves caret and selection of an unchanged text alone
        showText(found, shown);
    }
}

void WindowForm::setPlaceholder(std::string_view control, const std::string& text) {
    find(control)->setProperty("placeholderText", QString::fromStdString(text));
}

bool WindowForm::isTicked(std::string_view control) const {
    const auto* const button = qobject_cast<const QAbstractButton*>(find(control));
    return button != nullptr && button->isChecked();
}

void WindowForm::setEnabled(std::string_view control, bool enabled) {
    if (QWidget* const found = find(control)) {
        found->setEnabled(enabled);
    }
}

void WindowForm::enableGroup(ControlGroup group, bool enabled) {
    for (QWidget* const control : groupOf(group)) {
        control->setEnabled(enabled);
    }
}

void WindowForm::SetScenarioButtons(bool enabled) {
    enableGroup(ControlGroup::Scenario, enabled);
    const auto* const schedule = qobject_cast<const QListWidget*>(find("lstSchedule"));
    setEnabled("cmdRunScenario", schedule != nullptr && schedule->count() > 0);
    setEnabled("cmdStopScenario", false);
}

void WindowForm::press(std::string_view button) { events_.press(button); }

void WindowForm::showMessage(const std::string& text, const std::string& title) {
    boxes_.show(QString::fromStdString(text), QString::fromStdString(title));
}

void WindowForm::showMessage(const std::string& text, const std::string& title, const Tick& tick) {
    boxes_.show(QString::fromStdString(text), QString::fromStdString(title), tick);
}

void WindowForm::showAdvised(const std::string& text, const std::string& title, const std::string& advice) {
    boxes_.showAdvised(QString::fromStdString(text), QString::fromStdString(title),
                       QString::fromStdString(advice));
}

void WindowForm::ask(const std::string& text, const std::string& title,
                     std::function<void(bool yes)> answered) {
    boxes_.ask(QString::fromStdString(text), QString::fromStdString(title), std::move(answered));
}

} // namespace varda::window
