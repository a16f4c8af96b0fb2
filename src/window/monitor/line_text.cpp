#include "window/monitor/line_text.h"

#include "window/controls/frame_font.h"
#include "window/controls/texts.h"

#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace varda::window {
namespace {

constexpr int margin = 6;

} // namespace

LineText::LineText(QWidget* parent) : QFrame(parent) {
    setFont(frameFont());
    setFrameShape(QFrame::Box);
    setBackgroundRole(QPalette::Base);
    setForegroundRole(QPalette::Text);
    setAutoFillBackground(true);
}

void LineText::setText(const QString& text) {
    text_ = text;
    emit textChanged();
    update();
}

qsizetype LineText::charactersInRow(int width) const {
    constexpr qsizetype group = 6; // whole groups of two digits and a blank, or of a character and a blank
    const auto characters = static_cast<qsizetype>((width - 2 * margin) / characterWidth(font()));
    return std::max<qsizetype>(characters / group, 1) * group;
}

QSize LineText::sizeToShowAll(int widest) const {
    const qsizetype inRow = std::clamp<qsizetype>(text_.size(), 1, charactersInRow(widest));
    const qsizetype rows = (text_.size() + inRow - 1) / inRow;
    const qsizetype height =
        std::min<qsizetype>(rows * fontMetrics().lineSpacing() + qsizetype{2} * margin, QWIDGETSIZE_MAX);
    constexpr int roundedUp = 6; // so that the same characters fit a row again
    const double width = std::ceil(static_cast<double>(inRow + roundedUp) * characterWidth(font()));
    return {static_cast<int>(std::min<double>(width + 2 * margin, widest)), static_cast<int>(height)};
}

void LineText::paintEvent(QPaintEvent* event) {
    QFrame::paintEvent(event);
    QPainter painter(this);
    const int spacing = fontMetrics().lineSpacing();
    const qsizetype inRow = charactersInRow(width());
    const int last = (height() - 2 * margin) / spacing;
    for (int row = 0; row < last && row * inRow < text_.size(); ++row) {
        const int baseline = margin + row * spacing + fontMetrics().ascent();
        QString shown = text_.mid(row * inRow, inRow);
        shown.replace(QLatin1Char('\t'), QLatin1Char(' ')); // a tab would push the rest of its row out
        painter.drawText(margin, baseline, shown);
    }
}

} // namespace varda::window
