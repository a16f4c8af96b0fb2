#include "window/controls/period_typing.h"

#include "window/controls/keys.h"

#include <QLineEdit>

namespace varda::window {
namespace {

/// Keys that are held while another one types.
bool isModifier(int key) {
    return key == Qt::Key_Shift || key == Qt::Key_Control || key == Qt::Key_Alt || key == Qt::Key_Meta ||
           key == Qt::Key_AltGr;
}

bool typesDigit(const QKeyEvent& key) {
    const QString text = key.text();
    return !isShortcut(key) && text.size() == 1 && text.front() >= u'0' && text.front() <= u'9';
}

} // namespace

PeriodTyping::PeriodTyping(QLineEdit* field) : QObject(field), field_(field) {
    field->installEventFilter(this);
    connect(field, &QLineEdit::textChanged, this, [this] { endSeries(); });
    connect(field, &QLineEdit::selectionChanged, this, [this] { endSeries(); });
    connect(field, &QLineEdit::cursorPositionChanged, this, [this] { endSeries(); });
}

bool PeriodTyping::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::KeyPress:
        return takeKey(*static_cast<const QKeyEvent*>(event));
    case QEvent::MouseButtonPress:
    case QEvent::Wheel:
    case QEvent::FocusOut:
    case QEvent::InputMethod:
        endSeries();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

bool PeriodTyping::takeKey(const QKeyEvent& key) {
    if (typesDigit(key)) {
        typeDigit(key.text().front());
        return true;
    }
    if (!isModifier(key.key())) {
        endSeries();
    }
    return false;
}

void PeriodTyping::typeDigit(QChar digit) {
    const QString typed = rewritten_.isEmpty() ? textWith(digit) : rewritten_ + digit;
    isTyping_ = true;
    if (rewritten_.isEmpty()) {
        field_->insert(digit);
    } else {
        field_->setText(typed);
    }
    isTyping_ = false;
    rewritten_ = field_->text() == typed ? QString() : typed;
}

QString PeriodTyping::textWith(QChar digit) const {
    const int start = field_->hasSelectedText() ? field_->selectionStart() : field_->cursorPosition();
    return field_->text().replace(start, field_->selectedText().size(), digit);
}

/// What the field does while a digit is typed into it belongs to the series.
void PeriodTyping::endSeries() {
    if (!isTyping_) {
        rewritten_.clear();
    }
}

} // namespace varda::window
