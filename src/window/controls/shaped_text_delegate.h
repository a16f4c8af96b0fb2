#pragma once

#include "window/controls/shaped_texts.h"
#include "window/controls/text_pictures.h"

#include <QMargins>
#include <QStyledItemDelegate>

#include <optional>

namespace varda::window {

/// Paints items of one line of text as the style does, to the pixel, but lays no text out twice.
///
/// What is more than text is left to the style: items that are selected, have the focus or the pointer over
/// them, an icon, a box, a background.
class ShapedTextDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

protected:
    /// What is out of sight at the front of a text, which need not be drawn.
    struct Hidden {
        qsizetype characters = 0;
        double width = 0; ///< of them, in pixels
    };

    /// @param item of which the text fits, where some of it is hidden
    void paintItem(QPainter* painter, const QStyleOptionViewItem& item, const Hidden& hidden) const;

private:
    /// The room around a text in its item, as it was for an item of that height.
    struct Edges {
        const QStyle* style = nullptr;
        int height = 0;
        QMargins margins;
    };

    bool paintPlain(QPainter* painter, const QStyleOptionViewItem& item, const Hidden& hidden) const;
    bool paintPicture(QPainter* painter, const QStyleOptionViewItem& item, const ShapedText& text,
                      TextPictures::Look& look) const;
    QMargins edgesOf(const QStyleOptionViewItem& item) const;

    mutable ShapedTexts texts_;
    mutable TextPictures pictures_;
    mutable std::optional<Edges> edges_;
};

} // namespace varda::window
