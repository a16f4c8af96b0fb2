#include "window/controls/steady_scroll_bar.h"

#include <QStyle>
#include <QStyleOptionSlider>

#include <utility>

namespace varda::window {

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
    if (look() != painted_) {
        update();
    }
}

void SteadyScrollBar::paintEvent(QPaintEvent* event) {
    painted_ = look();
    QScrollBar::paintEvent(event);
}

SteadyScrollBar::Look SteadyScrollBar::look() const {
    QStyleOptionSlider option;
    initStyleOption(&option);
    return {style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this),
            value() == minimum(), value() == maximum()};
}

} // namespace varda::window
