#include "window/shell/window_form.h"

#include "window/controls/events.h"
#include "window/controls/lists.h"
#include "window/controls/message_boxes.h"
#include "window/controls/show_text.h"

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

void showText(QComboBox* list, std::string_view text) {
    if (const QString shown = inQt(text); list->currentText() != shown) {
        list->setEditText(shown);
    }
}

} // namespace

void WindowForm::collectControls(QWidget& window) {
    for (QWidget* const control : window.findChildren<QWidget*>()) {
        if (!control->objectName().isEmpty()) {
            controls_.insert_or_assign(control->objectName().toStdString(), control);
        }
    }
    for (const ControlGroup group : controlGroups) {
        for (const auto& [name, control] : controls_) {
            if (isInGroup(group, name)) {
                groupOf(group).push_back(control);
            }
        }
    }
}

QWidget* WindowForm::find(std::string_view control) const {
    const auto found = controls_.find(control);
    Q_ASSERT_X(found != controls_.end(), "WindowForm", std::string(control).c_str());
    return found != controls_.end() ? found->second : nullptr;
}

std::string WindowForm::text(std::string_view control) const {
    return shownText(find(control)).toStdString();
}

void WindowForm::setText(std::string_view control, std::string_view text) {
    QWidget* const found = find(control);
    if (auto* const line = qobject_cast<QLineEdit*>(found)) {
        showText(line, text);
    } else if (auto* const frame = qobject_cast<QPlainTextEdit*>(found)) {
        showText(frame, text);
    } else if (auto* const list = qobject_cast<QComboBox*>(found)) {
        showText(list, text);
    } else if (auto* const button = qobject_cast<QAbstractButton*>(found)) {
        button->setText(inQt(text)); // leaves an unchanged one alone by itself
    }
}

void WindowForm::setPlaceholder(std::string_view control, std::string_view text) {
    QWidget* const found = find(control);
    if (auto* const line = qobject_cast<QLineEdit*>(found)) {
        showPlaceholder(line, text);
    } else if (auto* const frame = qobject_cast<QPlainTextEdit*>(found)) {
        showPlaceholder(frame, text);
    }
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
