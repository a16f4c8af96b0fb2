#pragma once

#include <QCache>
#include <QFont>
#include <QGlyphRun>
#include <QList>
#include <QPointF>
#include <QSize>
#include <QString>

#include <list>

class QPainter;

namespace varda::window {

/// A line of text with the places of its glyphs, from its top left corner on.
struct ShapedText {
    QList<QGlyphRun> runs;
    QSize size; ///< of the whole text, also where less of it is drawn

    void draw(QPainter& painter, const QPointF& place) const;
};

/// Lines of text that were laid out before: to find out which glyphs a text has and where they stand takes
/// many times as long as to draw them, and a list draws the same lines again and again while it scrolls.
class ShapedTexts {
public:
    /// How a line stands in its place.
    struct Fitting {
        int width = 0; ///< of the place, in pixels
        Qt::Alignment alignment = Qt::AlignLeft;
        Qt::TextElideMode elideMode = Qt::ElideRight; ///< of what is wider

        friend bool operator==(const Fitting&, const Fitting&) = default;
    };

    /// @return good until it is asked for another one
    const ShapedText& find(const QString& text, const QFont& font, const Fitting& fitting);

private:
    struct Key {
        QString text;
        Fitting fitting;

        friend bool operator==(const Key&, const Key&) = default;
        friend std::size_t qHash(const Key& key, std::size_t seed) noexcept {
            return qHashMulti(seed, key.text, key.fitting.width, key.fitting.alignment.toInt(),
                              static_cast<int>(key.fitting.elideMode));
        }
    };
    using Lines = QCache<Key, ShapedText>;
    struct OfFont {
        QFont font;
        Lines lines;
    };

    Lines& linesOf(const QFont& font);

    std::list<OfFont> fonts_; ///< the one that was asked for last in front
};

} // namespace varda::window
