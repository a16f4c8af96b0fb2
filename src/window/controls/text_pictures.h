#pragma once

#include "window/controls/shaped_texts.h"

#include <QCache>
#include <QColor>
#include <QFont>
#include <QPixmap>
#include <QPointF>
#include <QSize>
#include <QString>

namespace varda::window {

/// Lines of text on their ground, as pictures: to copy one takes a tenth of the time of drawing its glyphs.
class TextPictures {
public:
    /// All that a picture depends on.
    struct Look {
        QString text;
        QFont font;
        ShapedTexts::Fitting fitting;
        QPointF place; ///< of the text in the picture
        QSize size;    ///< of the picture
        QRgb pen = 0;
        QRgb ground = 0;
        int scale = 1; ///< pixels of the screen in one of ours

        friend bool operator==(const Look&, const Look&) = default;
        friend std::size_t qHash(const Look& look, std::size_t seed) noexcept {
            return qHashMulti(seed, look.text, look.size.width(), look.size.height(), look.pen, look.ground);
        }
    };

    /// Makes room for twice what a place of that size can show at once, and for no more.
    void keepFor(const QSize& size, int scale);
    /// @return good until it is asked for another one
    const QPixmap& find(const Look& look, const ShapedText& text);

private:
    QCache<Look, QPixmap> pictures_; ///< costs are bytes
};

} // namespace varda::window
