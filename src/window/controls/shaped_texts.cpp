#include "window/controls/shaped_texts.h"

#include <QFontMetrics>
#include <QPainter>
#include <QTextLayout>
#include <QTextOption>

#include <algorithm>
#include <iterator>

namespace varda::window {
namespace {

/// Of all lines of a font: more than the largest screen shows. A character takes 24 bytes.
constexpr qsizetype mostCharacters = 60'000;
/// Fonts of a list; one that was changed makes room for its successor.
constexpr std::size_t mostFonts = 3;

/// In one line, as item views lay their texts out.
void layOut(QTextLayout& layout, const ShapedTexts::Fitting& fitting) {
    QTextOption option(fitting.alignment);
    option.setWrapMode(QTextOption::ManualWrap);
    option.setTextDirection(Qt::LeftToRight);
    layout.setTextOption(option);
    layout.beginLayout();
    layout.createLine().setLineWidth(fitting.width);
    layout.endLayout();
}

ShapedText shaped(const QString& text, const QFont& font, const ShapedTexts::Fitting& fitting) {
    QTextLayout whole(text, font);
    layOut(whole, fitting);
    const QSize size = whole.boundingRect().size().toSize();
    if (text.isEmpty() || whole.lineAt(0).naturalTextWidth() <= fitting.width) {
        return {whole.glyphRuns(), size};
    }
    QTextLayout cut(QFontMetrics(font).elidedText(text, fitting.elideMode, fitting.width), font);
    layOut(cut, fitting);
    return {cut.glyphRuns(), size};
}

} // namespace

void ShapedText::draw(QPainter& painter, const QPointF& place) const {
    for (const QGlyphRun& run : runs) {
        painter.drawGlyphRun(place, run);
    }
}

ShapedTexts::Lines& ShapedTexts::linesOf(const QFont& font) {
    const auto known =
        std::ranges::find_if(fonts_, [&font](const OfFont& entry) { return entry.font == font; });
    if (known != fonts_.end()) {
        fonts_.splice(fonts_.begin(), fonts_, known);
        return fonts_.front().lines;
    }
    if (fonts_.size() == mostFonts) {
        fonts_.pop_back();
    }
    OfFont& added = fonts_.emplace_front();
    added.font = font;
    added.lines.setMaxCost(mostCharacters);
    return added.lines;
}

const ShapedText& ShapedTexts::find(const QString& text, const QFont& font, const Fitting& fitting) {
    Lines& lines = linesOf(font);
    const Key key = {text, fitting};
    if (const ShapedText* const known = lines.object(key)) {
        return *known;
    }
    lines.insert(key, new ShapedText(shaped(text, font, fitting)), // never too large to be kept
                 std::clamp<qsizetype>(text.size(), 1, mostCharacters));
    return *lines.object(key);
}

} // namespace varda::window
