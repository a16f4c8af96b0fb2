#include "window/controls/elided_label.h"

#include <QPainter>

namespace varda::window {

void ElidedLabel::showText(const QString& text, const QString& part) {
    part_ = part;
    setText(text);
    update(); // the same text may be shortened elsewhere
}

QString ElidedLabel::paintedText() const {
    const qsizetype place = part_.isEmpty() ? -1 : text().indexOf(part_);
    if (place < 0) {
        return fontMetrics().elidedText(text(), Qt::ElideMiddle, width());
    }
    const QString before = text().left(place);
    const QString behind = text().mid(place + part_.size());
    const int room = width() - fontMetrics().horizontalAdvance(before + behind);
    return before + fontMetrics().elidedText(part_, Qt::ElideLeft, room) + behind;
}

void ElidedLabel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.drawText(rect(), static_cast<int>(alignment()), paintedText());
}

} // namespace varda::window
