#pragma once

#include <QApplication>
#include <QHelpEvent>
#include <QToolTip>
#include <QWidget>

#include <string>

namespace varda::test {

/// The tool tip that a widget shows where the mouse rests, empty where it has none.
inline std::string toolTipAt(QWidget* widget, const QPoint& place) {
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        if (window->inherits("QTipLabel")) { // the last one stays for a while on some platforms
            delete window;
            break;
        }
    }
    QHelpEvent rest(QEvent::ToolTip, place, widget->mapToGlobal(place));
    QCoreApplication::sendEvent(widget, &rest);
    return QToolTip::text().toStdString();
}

} // namespace varda::test
