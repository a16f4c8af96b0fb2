#include "window/monitor/line_text.h"

#include <QFontMetricsF>

#include <gtest/gtest.h>

#include <cmath>

namespace varda::test {
namespace {

using window::LineText;

/// Whether a character of the font takes no whole number of pixels.
bool isBetweenPixels(const QFont& font) {
    const double width = QFontMetricsF(font).horizontalAdvance(QLatin1Char('0'));
    return std::abs(width - std::round(width)) > 0.05;
}

TEST(LineText, NoRowIsWiderThanThereIsRoomFor) {
    constexpr int room = 1366;
    const QString line = QStringLiteral("00 ").repeated(256);
    int between = 0;
    for (double points = 7; points < 14; points += 0.3) {
        LineText shown(nullptr);
        QFont font = shown.font();
        font.setPointSizeF(points);
        shown.setFont(font);
        shown.setText(line);
        const QSize size = shown.sizeToShowAll(room);
        ASSERT_LE(size.width(), room);
        const auto rows = size.height() / shown.fontMetrics().lineSpacing();
        const auto inRow = static_cast<int>(std::ceil(static_cast<double>(line.size()) / rows));
        EXPECT_LE(QFontMetricsF(font).horizontalAdvance(QString(inRow, QLatin1Char('0'))), size.width())
            << points << " points";
        between += isBetweenPixels(font) ? 1 : 0;
    }
    EXPECT_GT(between, 0) << "no font of the test has characters of a broken width";
}

} // namespace
} // namespace varda::test
