#include "window/controls/steady_scroll_bar.h"

#include <QStyle>
#include <QStyleOptionSlider>

#include <utility>

namespace varda::window {

/// What else can change, as size, style and colours, has the bar painted without asking here.
void SteadyScrollBar::sliderChange(SliderChange change) {
    const Look now = look();
    if (change == SliderOrientationChange || std::exchange(shown_, now) != now) {
        QScrollBar::sliderChange(change);
    }
}

SteadyScrollBar::Look SteadyScrollBar::look() const {
    QStyleOptionSlider option;
    initStyleOption(&option);
    return {style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this),
            value() == minimum(), value() == maximum()};
}

} // namespace varda::window
