#include "window/controls/text_pictures.h"

#include <QPainter>

#include <algorithm>

namespace varda::window {
namespace {

constexpr qsizetype bytesOfPixel = 4;

qsizetype bytesOf(const QSize& size, int scale) {
    return bytesOfPixel * size.width() * size.height() * scale * scale;
}

QPixmap draw(const TextPictures::Look& look, const ShapedText& text) {
    QPixmap picture(look.size * look.scale);
    picture.setDevicePixelRatio(look.scale);
    picture.fill(QColor::fromRgb(look.ground));
    QPainter painter(&picture);
    painter.setPen(QColor::fromRgba(look.pen));
    text.draw(painter, look.place);
    return picture;
}

} // namespace

void TextPictures::keepFor(const QSize& size, int scale) {
    if (const qsizetype most = 2 * bytesOf(size, scale); most != pictures_.maxCost()) {
        pictures_.setMaxCost(most);
    }
}

const QPixmap& TextPictures::find(const Look& look, const ShapedText& text) {
    if (const QPixmap* const known = pictures_.object(look)) {
        return *known;
    }
    pictures_.insert(look, new QPixmap(draw(look, text)), // never too large to be kept
                     std::min(bytesOf(look.size, look.scale), pictures_.maxCost()));
    return *pictures_.object(look);
}

} // namespace varda::window
