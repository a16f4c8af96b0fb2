#include "window/controls/state_label.h"

namespace varda::window {

void StateLabel::tell(const QString& text) {
    if (text != told_) {
        told_ = text;
        Q_EMIT told(text);
    }
}

} // namespace varda::window
