#include "tour/pictures.h"

#include "support/event_loop.h"

#include <QPixmap>
#include <QWidget>

#include <chrono>
#include <cstdio>

namespace {

/// A picture with a palette takes a third of the room; so many colours fit into one.
QImage withFewColours(QImage picture) {
    constexpr int step = 5; // 52 levels, black and white among them
    const auto rounded = [](int level) { return (level + step / 2) / step * step; };
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QRgb colour = picture.pixel(x, y);
            picture.setPixel(x, y,
                             qRgb(rounded(qRed(colour)), rounded(qGreen(colour)), rounded(qBlue(colour))));
        }
    }
    return picture.convertToFormat(QImage::Format_Indexed8);
}

} // namespace

bool Pictures::save(QWidget& window, const char* name) {
    varda::test::runFor(std::chrono::milliseconds(20));
    return save(window.grab().toImage(), name);
}

bool Pictures::save(const QImage& picture, const char* name) {
    const QString file = folder_.filePath(QString::fromLatin1(name) + QStringLiteral(".png"));
    const bool isSaved = withFewColours(picture).save(file, "PNG", 0);
    std::printf("  picture  %s%s\n", qPrintable(file), isSaved ? "" : " COULD NOT BE SAVED");
    return isSaved;
}
