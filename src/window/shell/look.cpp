#include "window/shell/look.h"

#include "window/controls/frame_font.h"
#include "window/system/system_look.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPainter>
#include <QPlainTextEdit>
#include <QProxyStyle>
#include <QStyleOption>
#include <QTabBar>

#include <algorithm>

namespace varda::window {
namespace {

class WholeFrames : public QProxyStyle {
public:
    explicit WholeFrames(const QString& style) : QProxyStyle(style) {}

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override {
        if (element == PE_Frame && qobject_cast<const QAbstractScrollArea*>(widget) != nullptr) {
            drawEdges(option->rect, option->palette.color(QPalette::Window).darker(outlineDarkness), painter);
        } else {
            QProxyStyle::drawPrimitive(element, option, painter, widget);
        }
    }

    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
        constexpr int wholeFrame = 2;
        if (metric == PM_DefaultFrameWidth && qobject_cast<const QAbstractScrollArea*>(widget) != nullptr) {
            return wholeFrame;
        }
        return QProxyStyle::pixelMetric(metric, option, widget);
    }

private:
    static constexpr int outlineDarkness = 140; ///< in percent, as the style's other outlines

    /// Filled, an edge covers a pixel wherever it falls; as a line it may fall between two.
    static void drawEdges(const QRect& frame, const QColor& colour, QPainter* painter) {
        painter->fillRect(frame.x(), frame.y(), frame.width(), 1, colour);
        painter->fillRect(frame.x(), frame.bottom(), frame.width(), 1, colour);
        painter->fillRect(frame.x(), frame.y(), 1, frame.height(), colour);
        painter->fillRect(frame.right(), frame.y(), 1, frame.height(), colour);
    }
};

bool hasLabel(const QComboBox* list) {
    const QList<QLabel*> labels = list->parentWidget()->findChildren<QLabel*>();
    return std::ranges::any_of(labels, [list](const QLabel* label) { return label->buddy() == list; });
}

/// The controls below `part` that Tab reaches, in their order.
QList<QWidget*> tabStops(QWidget* part) {
    QList<QWidget*> stops;
    if ((part->focusPolicy() & Qt::TabFocus) != 0) {
        stops.append(part);
    }
    for (QWidget* next = part->nextInFocusChain(); next != part; next = next->nextInFocusChain()) {
        if (part->isAncestorOf(next) && (next->focusPolicy() & Qt::TabFocus) != 0 &&
            next->focusProxy() == nullptr) {
            stops.append(next);
        }
    }
    return stops;
}

} // namespace

void useFixedWidthForFrames(QWidget* window) {
    const QFont fixedWidth = frameFont();
    for (QPlainTextEdit* const frame : window->findChildren<QPlainTextEdit*>()) {
        frame->setFont(fixedWidth);
    }
    for (QListView* const list : window->findChildren<QListView*>()) {
        if (list->objectName().startsWith(QLatin1String("lst"))) {
            list->setFont(fixedWidth);
        }
    }
    if (auto* const answerData = window->findChild<QLineEdit*>(QStringLiteral("txtSimSendData"))) {
        answerData->setFont(fixedWidth);
    }
}

void keepDisabledTextsReadable(QWidget* window) {
    const auto keepReadable = [](QWidget* field) {
        QPalette palette;
        palette.setColor(QPalette::Disabled, QPalette::Text,
                         QApplication::palette(field).color(QPalette::Active, QPalette::Text));
        field->setPalette(palette);
    };
    for (QPlainTextEdit* const frame : window->findChildren<QPlainTextEdit*>()) {
        keepReadable(frame);
    }
    for (QLineEdit* const field : window->findChildren<QLineEdit*>()) {
        if (field->isReadOnly()) {
            keepReadable(field);
        }
    }
}

void nameListsBeside(QWidget* window) {
    for (QComboBox* const list : window->findChildren<QComboBox*>()) {
        if (!list->accessibleName().isEmpty() && !hasLabel(list)) {
            auto* const label = new QLabel(list->accessibleName(), list->parentWidget());
            label->setBuddy(list);
            label->hide();
        }
    }
}

void chainTabOrder(const QList<QWidget*>& parts) {
    QList<QWidget*> stops;
    for (QWidget* const part : parts) {
        stops.append(tabStops(part));
    }
    for (qsizetype index = 1; index < stops.size(); ++index) {
        QWidget::setTabOrder(stops.at(index - 1), stops.at(index));
    }
}

void drawWholeFrames() { QApplication::setStyle(new WholeFrames(styleForSystemLook())); }

} // namespace varda::window
