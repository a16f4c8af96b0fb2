#include "window/controls/elided_label.h"

#include <QPainter>

namespace varda::window {

void ElidedLabel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const QString shown = fontMetrics().elidedText(text(), Qt::ElideMiddle, width());
    painter.drawText(rect(), static_cast<int>(alignment()), shown);
}

} // namespace varda::window
