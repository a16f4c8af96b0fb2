#pragma once

#include <QScreen>
#include <QStyle>
#include <QWidget>

namespace varda::window {

/// What of its screen is left for the inside of a window: its title and edges are not known before it is
/// shown.
inline QSize roomFor(const QWidget* window) {
    constexpr int edges = 8;
    const int title = window->style()->pixelMetric(QStyle::PM_TitleBarHeight);
    return window->screen()->availableSize() - QSize(edges, title + edges);
}

} // namespace varda::window
