#include "window/controls/frame_font.h"

#include <QFontDatabase>
#include <QFontInfo>

namespace varda::window {

QFont fixedWidthFont(const QFont& wished, const QStringList& otherwise) {
    const auto isFixedWidth = [](const QFont& font) { return QFontInfo(font).fixedPitch(); };
    QFont font(wished);
    for (const QString& family : otherwise) {
        if (isFixedWidth(font)) {
            break;
        }
        font.setFamilies({family});
    }
    return isFixedWidth(font) ? font : wished;
}

QFont frameFont() {
    return fixedWidthFont(QFontDatabase::systemFont(QFontDatabase::FixedFont),
                          QStringList{QStringLiteral("DejaVu Sans Mono"), QStringLiteral("Liberation Mono"),
                                      QStringLiteral("Noto Sans Mono"), QStringLiteral("Courier New")});
}

} // namespace varda::window
