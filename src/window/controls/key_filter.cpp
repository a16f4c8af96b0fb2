#include "window/controls/key_filter.h"

#include "window/controls/keys.h"

#include <QLineEdit>

#include <utility>

namespace varda::window {

KeyFilter::KeyFilter(QLineEdit* field, Accepts accepts)
    : QObject(field), field_(field), accepts_(std::move(accepts)) {
    field->installEventFilter(this);
}

bool KeyFilter::isKept(char16_t character) { return character == u'%' || character == u'\''; }

bool KeyFilter::isDigitOrKept(char16_t character) {
    return (character >= u'0' && character <= u'9') || isKept(character);
}

bool KeyFilter::isHexLetter(char16_t character) { return character >= u'A' && character <= u'F'; }

bool KeyFilter::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress) {
        return QObject::eventFilter(watched, event);
    }
    const auto& key = *static_cast<const QKeyEvent*>(event);
    const QString typed = key.text();
    if (!typesCharacter(key) || typed.size() != 1 || !typed.front().isPrint()) {
        return false;
    }
    const QChar upper =
        typed.front() >= u'a' && typed.front() <= u'f' ? typed.front().toUpper() : typed.front();
    if (!accepts_(upper.unicode())) {
        return true;
    }
    if (upper == typed.front()) {
        return false;
    }
    field_->insert(upper);
    return true;
}

} // namespace varda::window
