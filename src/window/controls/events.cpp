#include "window/controls/events.h"

#include "core/base/runtime_error.h"
#include "window/controls/keys.h"
#include "window/controls/message_boxes.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QSignalBlocker>

#include <utility>

namespace varda::window {
namespace {

/// Yellow with black text, readable on a dark desktop too.
void markFocused(QWidget* field) {
    QPalette palette = field->palette();
    palette.setColor(QPalette::Base, QColor(255, 255, 0));
    palette.setColor(QPalette::Text, Qt::black);
    field->setPalette(palette);
}

void unmarkFocused(QWidget* field) { field->setPalette(QPalette()); }

/// What helps; of an error that nobody knew more of, where to look.
QString adviceFor(const RuntimeError& error) {
    const bool isBare = error.number() == run_time_error::overflow ||
                        error.number() == run_time_error::subscriptOutOfRange ||
                        error.number() == run_time_error::typeMismatch ||
                        error.number() == run_time_error::invalidPropertyValue;
    return error.advice().empty() && isBare
               ? QObject::tr("A field of this page cannot be used as it stands. Check what was typed last.")
               : QString::fromStdString(error.advice());
}

/// Whether a widget is `field` or a part of it, its pop-up windows included.
bool belongsTo(const QWidget* widget, const QWidget* field) {
    while (widget != nullptr && widget != field) {
        widget = widget->parentWidget();
    }
    return widget != nullptr;
}

} // namespace

Events::Events(MessageBoxes& boxes) : boxes_(boxes) {
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget* /*left*/, QWidget* now) { moveFocus(now); });
}

void Events::guard(const Handler& handler) {
    try {
        handler();
    } catch (const RuntimeError& error) {
        report(error);
    } catch (const std::exception& error) {
        reportDefect(QString::fromUtf8(error.what()));
    } catch (...) {
        reportDefect(tr("unknown"));
    }
}

void Events::report(const RuntimeError& error) const {
    boxes_.showReport(
        QStringLiteral("Run-time error '%1':\n\n%2").arg(error.number()).arg(QString::fromUtf8(error.what())),
        adviceFor(error));
}

void Events::reportDefect(const QString& description) {
    if (!reportedDefects_.contains(description)) {
        reportedDefects_.insert(description);
        boxes_.showReport(
            tr("A defect of this program: %1.\n\nIt goes on, but please report what you did and "
               "this text to its developers.")
                .arg(description));
    }
}

void Events::run(const QHash<QString, Handler>& handlers, std::string_view name) {
    const auto found = handlers.constFind(QString::fromUtf8(name));
    Q_ASSERT(found != handlers.constEnd());
    if (found != handlers.constEnd()) {
        (*found)();
    }
}

void Events::watch(QWidget* field, const Handler& change, const Exceptions& exceptions) {
    watched_.insert(field,
                    {change, exceptions.keyPress ? exceptions.keyPress : change, exceptions.lostFocus});
    field->installEventFilter(this);
}

void Events::field(QComboBox* list, const Handler& change, const Exceptions& exceptions) {
    connect(list, &QComboBox::editTextChanged, this, [this, change] { guard(change); });
    connect(list, &QComboBox::activated, this, [this, change] { guard(change); });
    watch(list, change, exceptions);
}

void Events::field(QLineEdit* text, const Handler& change, const Exceptions& exceptions) {
    connect(text, &QLineEdit::textChanged, this, [this, change] { guard(change); });
    watch(text, change, exceptions);
}

void Events::textChange(QLineEdit* text, const Handler& change) {
    connect(text, &QLineEdit::textChanged, this, [this, change] { guard(change); });
}

void Events::click(QAbstractButton* button, const Handler& clicked) {
    clicks_.insert(button->objectName(), clicked);
    connect(button, &QAbstractButton::clicked, this, [this, clicked] { guard(clicked); });
}

void Events::option(QRadioButton* option, const Handler& chosen) {
    clicks_.insert(option->objectName(), chosen);
    connect(option, &QRadioButton::toggled, this, [this, chosen](bool checked) {
        if (checked) {
            guard(chosen);
        }
    });
}

void Events::choose(QRadioButton* option) const {
    {
        const QSignalBlocker once(option);
        option->setChecked(true);
    }
    clicks_.value(option->objectName())();
}

void Events::moveFocus(QWidget* now) {
    // Nothing has the focus while another program is in front, and a list's open entries belong to it.
    const bool stays = now == nullptr || (focused_ != nullptr && belongsTo(now, focused_));
    if (stays) {
        return;
    }
    if (QWidget* const left = std::exchange(focused_, nullptr)) {
        unmarkFocused(left);
        if (const Handler lostFocus = watched_.value(left).lostFocus) {
            guard(lostFocus);
        }
    }
    if (watched_.contains(now)) {
        focused_ = now;
        markFocused(now);
    }
}

bool Events::eventFilter(QObject* watched, QEvent* event) {
    const auto found = watched_.constFind(watched);
    if (found == watched_.constEnd()) {
        return QObject::eventFilter(watched, event);
    }
    const Watched& handlers = *found;
    if (event->type() == QEvent::KeyPress && typesCharacter(*static_cast<const QKeyEvent*>(event))) {
        guard(handlers.keyPress);
    } else if (event->type() == QEvent::MouseButtonRelease && qobject_cast<QLineEdit*>(watched) != nullptr) {
        guard(handlers.click);
    }
    return false;
}

} // namespace varda::window
