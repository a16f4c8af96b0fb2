#pragma once

#include "support/window_test.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabBar>
#include <QTableView>

#include <array>

namespace varda::test {

/// What a desktop's panel takes off a screen, and title and edges off a window.
inline constexpr QSize panelAndTitle(8, 64);
inline constexpr int modeCount = 6;

struct Screen {
    int width;
    int height;
    int percent; ///< how much larger everything is drawn
};

inline constexpr std::array screens = {Screen{1366, 768, 100}, Screen{1366, 768, 125},
                                       Screen{1920, 1080, 150}, Screen{1920, 1080, 175},
                                       Screen{1920, 1080, 200}};

inline std::string nameOf(const QWidget* widget) {
    return widget->objectName().isEmpty() ? widget->metaObject()->className()
                                          : widget->objectName().toStdString();
}

inline QRect placeIn(const QWidget* widget, const QWidget* above) {
    return {widget->mapTo(above, QPoint(0, 0)), widget->size()};
}

/// What can be scrolled, the widget among it; else the window.
inline const QWidget* wholeAround(const QWidget* widget) {
    for (const QWidget* part = widget; part->parentWidget() != nullptr; part = part->parentWidget()) {
        if (const auto* const area = qobject_cast<const QScrollArea*>(part->parentWidget()->parentWidget());
            area != nullptr && area->widget() == part) {
            return part;
        }
    }
    return widget->window();
}

inline bool isControlOrLabel(const QWidget* widget) {
    const QWidget* const parent = widget->parentWidget();
    const bool isPart = qobject_cast<const QComboBox*>(parent) != nullptr ||
                        qobject_cast<const QTabBar*>(parent) != nullptr ||
                        qobject_cast<const QHeaderView*>(widget) != nullptr ||
                        qobject_cast<const QAbstractItemView*>(parent) != nullptr;
    return !isPart && (qobject_cast<const QAbstractButton*>(widget) != nullptr ||
                       qobject_cast<const QComboBox*>(widget) != nullptr ||
                       qobject_cast<const QLineEdit*>(widget) != nullptr ||
                       qobject_cast<const QAbstractItemView*>(widget) != nullptr ||
                       qobject_cast<const QPlainTextEdit*>(widget) != nullptr ||
                       qobject_cast<const QGroupBox*>(widget) != nullptr ||
                       qobject_cast<const QLabel*>(widget) != nullptr);
}

/// With room for the whole text, where one is shown that does not scroll.
inline QSize leastSize(const QWidget* widget) {
    if (const auto* const button = qobject_cast<const QPushButton*>(widget)) {
        constexpr int edges = 8;
        return {button->fontMetrics().horizontalAdvance(button->text()) + edges, button->sizeHint().height()};
    }
    if (qobject_cast<const QPlainTextEdit*>(widget) != nullptr) {
        constexpr int edges = 12;
        return {widget->minimumSizeHint().width(), 2 * widget->fontMetrics().lineSpacing() + edges};
    }
    if (const auto* const label = qobject_cast<const QLabel*>(widget);
        label != nullptr && label->wordWrap()) {
        return {label->minimumSizeHint().width(), label->heightForWidth(label->width())};
    }
    const bool showsText = qobject_cast<const QAbstractButton*>(widget) != nullptr ||
                           qobject_cast<const QLabel*>(widget) != nullptr;
    const QSize least = showsText ? widget->sizeHint() : widget->minimumSizeHint();
    return least.boundedTo(widget->maximumSize());
}

/// Whether everything is in sight, on every screen.
class ScreenFitTest : public WindowTest {
protected:
    /// @param top the window, or a dialog
    static QList<const QWidget*> shownIn(const QWidget& top) {
        QList<const QWidget*> widgets;
        for (const QWidget* const widget : top.findChildren<QWidget*>()) {
            if (widget->isVisible() && widget->window() == &top && isControlOrLabel(widget) &&
                widget->objectName() != QLatin1String("slowLine")) { // has a tool tip with all of it
                widgets.append(widget);
            }
        }
        return widgets;
    }
    QList<const QWidget*> shown() { return shownIn(driver.window()); }

    /// All of them, or a bar to scroll to the last one: sixteen hexadecimal words are wider than a page on
    /// the smallest screens.
    void expectColumnsInSight(const QTableView& grid) {
        constexpr int smallScreen = 1000;
        const int hidden = grid.horizontalHeader()->length() - grid.viewport()->width();
        if (driver.window().width() >= smallScreen) {
            EXPECT_LE(hidden, 0) << "columns of the grid";
        } else {
            EXPECT_GE(grid.horizontalScrollBar()->maximum(), hidden > 0 ? 1 : 0) << "columns of the grid";
        }
    }

    void expectAllInside() {
        EXPECT_GT(shown().size(), 40);
        expectAllInside(driver.window());
    }
    void expectAllInside(const QWidget& top) {
        for (const QWidget* const widget : shownIn(top)) {
            const QWidget* const whole = wholeAround(widget);
            EXPECT_TRUE(whole->rect().contains(placeIn(widget, whole))) << nameOf(widget) << " is cut off";
            const QSize least = leastSize(widget);
            EXPECT_GE(widget->width(), least.width()) << nameOf(widget);
            EXPECT_GE(widget->height(), least.height()) << nameOf(widget);
            if (const auto* const grid = qobject_cast<const QTableView*>(widget)) {
                expectColumnsInSight(*grid);
            }
        }
    }

    void expectNoOverlaps() { expectNoOverlaps(driver.window()); }
    static void expectNoOverlaps(const QWidget& top) {
        const QList<const QWidget*> widgets = shownIn(top);
        for (const QWidget* const one : widgets) {
            for (const QWidget* const other : widgets) {
                if (one != other && !one->isAncestorOf(other) && !other->isAncestorOf(one) &&
                    one->parentWidget() == other->parentWidget()) {
                    EXPECT_FALSE(one->geometry().intersects(other->geometry()))
                        << nameOf(one) << " lies over " << nameOf(other);
                }
            }
        }
    }

    /// What stands above and below the pages is seen without scrolling.
    void expectOnlyPagesScroll() {
        for (const QScrollArea* const area : driver.window().findChildren<QScrollArea*>()) {
            if (area->isVisible()) {
                EXPECT_EQ(area->horizontalScrollBar()->maximum(), 0) << nameOf(area->widget());
            }
        }
        const auto* const whole = qobject_cast<QScrollArea*>(driver.window().centralWidget());
        ASSERT_NE(whole, nullptr);
        EXPECT_EQ(whole->verticalScrollBar()->maximum(), 0);
    }

    /// Of write words, whose grid and dialog show most.
    void showMost(int mode) {
        driver.click(("optMode_" + std::to_string(mode)).c_str());
        if (mode == 1) {
            driver.click("optWrite_1");
            driver.choose("cbWRegister", "W");
            driver.choose("cbWRegAddress", "0000");
            driver.choose("cbWLength", "126");
        }
    }

    /// The label of what is open, whole for the names that ports usually have.
    void expectWhatIsOpenInSight() {
        const auto& label = *driver.find<QLabel>("openPort");
        EXPECT_TRUE(driver.window().rect().contains(placeIn(&label, &driver.window())));
        EXPECT_EQ(label.visibleRegion().boundingRect(), label.rect());
        const QString longest = QStringLiteral("Open Port opens /dev/ttyUSB0, 115200 8-N-1");
        EXPECT_GE(label.width(), label.fontMetrics().horizontalAdvance(longest));
    }

    static QSize roomOn(const Screen& screen) {
        return QSize(screen.width, screen.height) * 100 / screen.percent - panelAndTitle;
    }

    void resize(const QSize& size) {
        driver.window().resize(size);
        QCoreApplication::processEvents();
        QCoreApplication::processEvents(); // a bar that has come up takes room again
    }

    void expectFits(const QSize& room) {
        for (int mode = 0; mode < modeCount; ++mode) {
            showMost(mode);
            resize(room);
            SCOPED_TRACE("mode " + std::to_string(mode) + " in " + std::to_string(room.width()) + " x " +
                         std::to_string(room.height()));
            EXPECT_EQ(driver.window().size(), room);
            expectAllInside();
            expectNoOverlaps();
            expectOnlyPagesScroll();
            expectWhatIsOpenInSight();
        }
    }
};

} // namespace varda::test
