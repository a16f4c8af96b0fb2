#pragma once

#include "window/controls/shaped_text_delegate.h"

#include <QFont>
#include <QSize>
#include <QString>

#include <optional>

namespace varda::window {

class MonitorModel;

/// Paints a line of the monitor one line high, whatever its bytes are, and no more of it than can be seen.
class MonitorDelegate : public ShapedTextDelegate {
    Q_OBJECT

public:
    using ShapedTextDelegate::ShapedTextDelegate;

    /// Visible stand-ins for the control characters of a text.
    static QString withoutControls(QString text);

    QString displayText(const QVariant& value, const QLocale& locale) const override;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    /// Of every line that of the longest one: the list has uniform item sizes, and asks for its last line.
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

protected:
    /// With the whole text that can be painted.
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

private:
    /// What was asked of the font last.
    struct Letters {
        QFont font;
        double width = 0; ///< of every character; 0 where they differ
    };
    /// What was measured last.
    struct Measured {
        QString text;
        QFont font;
        const QStyle* style = nullptr;
        QSize size;
    };

    void initWithoutText(QStyleOptionViewItem* option, const QModelIndex& index) const;
    double widthOfLetters(const QFont& font) const;

    mutable std::optional<Letters> letters_;
    mutable std::optional<Measured> measured_;
};

} // namespace varda::window
