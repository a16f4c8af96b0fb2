#include "window/controls/steady_scroll_bar.h"

#include <QAbstractScrollArea>
#include <QCoreApplication>
#include <QEvent>
#include <QStyle>
#include <QStyleOptionSlider>

#include <chrono>
#include <utility>

namespace varda::window {
namespace {

/// Qt lays the list out at every change of the range.
void layOutWhereNeeded(QAbstractScrollArea* list, const QScrollBar* bar) {
    QObject::disconnect(bar, &QScrollBar::rangeChanged, list, nullptr);
    QObject::connect(bar, &QScrollBar::rangeChanged, list, [list, bar](int least, int most) {
        if (bar->isVisibleTo(list) != (least < most)) {
            QCoreApplication::postEvent(list, new QEvent(QEvent::LayoutRequest));
        }
    });
}

} // namespace

SteadyScrollBar::SteadyScrollBar(Qt::Orientation orientation, QWidget* parent)
    : QScrollBar(orientation, parent) {
    following_.setSingleShot(true);
    following_.setInterval(std::chrono::seconds(1));
    connect(&following_, &QTimer::timeout, this, [this] { update(); });
}

/// A range that grows and a value that follows it are two changes, between which the slider is not at its
/// end. What else can change, as size, style and colours, has the bar painted without asking here.
void SteadyScrollBar::sliderChange(SliderChange change) {
    if (change == SliderOrientationChange) {
        QScrollBar::sliderChange(change);
    } else if (!std::exchange(isAsked_, true)) {
        QMetaObject::invokeMethod(this, &SteadyScrollBar::paintIfOther, Qt::QueuedConnection);
    }
}

void SteadyScrollBar::paintIfOther() {
    isAsked_ = false;
    const Look now = look();
    if (now == painted_) {
        return;
    }
    const bool follows = now.isAtEnd && painted_.isAtEnd && now.isAtBegin == painted_.isAtBegin;
    if (!follows || isSliderDown()) {
        update();
    } else if (!following_.isActive()) {
        following_.start();
    }
}

void SteadyScrollBar::paintEvent(QPaintEvent* event) {
    painted_ = look(); // and it goes on following: this may be for a picture, and not for the screen
    QScrollBar::paintEvent(event);
}

SteadyScrollBar::Look SteadyScrollBar::look() const {
    QStyleOptionSlider option;
    initStyleOption(&option);
    return {style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this),
            value() == minimum(), value() == maximum()};
}

void giveSteadyScrollBars(QAbstractScrollArea* list) {
    list->setVerticalScrollBar(new SteadyScrollBar(Qt::Vertical, list));
    list->setHorizontalScrollBar(new SteadyScrollBar(Qt::Horizontal, list));
    layOutWhereNeeded(list, list->verticalScrollBar());
    layOutWhereNeeded(list, list->horizontalScrollBar());
}

} // namespace varda::window
