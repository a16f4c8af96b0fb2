#include "window/shell/label_lines.h"

#include <QAbstractItemView>
#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QStyle>
#include <QStyleOptionViewItem>
#include <QTextDocument>

#include <algorithm>
#include <cmath>

namespace varda::window {
namespace {

/// From a field's upper edge to the foot of its first line of text; 0 for a field that knows of no lines.
int firstBaseline(const QWidget* field) {
    const QFontMetrics font = field->fontMetrics();
    if (const auto* const frame = qobject_cast<const QPlainTextEdit*>(field)) {
        return frame->frameWidth() + static_cast<int>(std::lround(frame->document()->documentMargin())) +
               font.ascent();
    }
    if (const auto* const list = qobject_cast<const QAbstractItemView*>(field)) {
        QStyleOptionViewItem line;
        line.initFrom(list);
        line.font = list->font();
        line.fontMetrics = font;
        line.features = QStyleOptionViewItem::HasDisplay;
        line.text = QStringLiteral("0");
        const int height = list->style()->sizeFromContents(QStyle::CT_ItemViewItem, &line, {}, list).height();
        return list->frameWidth() + (height - font.height()) / 2 + font.ascent();
    }
    if (qobject_cast<const QLineEdit*>(field) != nullptr) {
        return (field->sizeHint().height() - font.height()) / 2 + font.ascent();
    }
    return 0;
}

void align(QLabel* label) {
    const int above = firstBaseline(label->buddy()) - label->fontMetrics().ascent();
    label->setContentsMargins(0, std::max(0, above), 0, 0);
}

/// The fonts of a desktop may change while the program runs.
class FontWatch : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
            align(static_cast<QLabel*>(watched));
        }
        return false;
    }
};

bool standsAtTheTop(QLabel* label) {
    const auto* const grid = qobject_cast<const QGridLayout*>(label->parentWidget()->layout());
    const int index = grid != nullptr ? grid->indexOf(label) : -1;
    return index >= 0 && (grid->itemAt(index)->alignment() & Qt::AlignTop) != 0;
}

} // namespace

void alignLabelsWithFields(QWidget* window) {
    auto* const watch = new FontWatch(window);
    for (QLabel* const label : window->findChildren<QLabel*>()) {
        if (label->buddy() != nullptr && standsAtTheTop(label)) {
            align(label);
            label->installEventFilter(watch);
        }
    }
}

} // namespace varda::window
