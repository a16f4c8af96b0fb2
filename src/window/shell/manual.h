#pragma once

#include "core/link/routes.h"

#include <QObject>
#include <QString>

#include <functional>
#include <string_view>

class QDialog;
class QWidget;

namespace varda::window {

class Events;

/// A page of the manual, and the number that viewers which know no names open it by; the manual's project
/// file has the same numbers.
struct ManualPage {
    std::string_view name;
    int number;
};

/// The pages that F1 opens.
namespace manual_page {

inline constexpr ManualPage start = {"index.html", 1};
inline constexpr ManualPage read = {"read.html", 2};
inline constexpr ManualPage write = {"write.html", 3};
inline constexpr ManualPage mixedRead = {"mixed-read.html", 4};
inline constexpr ManualPage mixedWrite = {"mixed-write.html", 5};
inline constexpr ManualPage simulation = {"simulation.html", 6};
inline constexpr ManualPage monitoring = {"monitoring.html", 7};
inline constexpr ManualPage scenario = {"scenario.html", 8};
inline constexpr ManualPage files = {"files.html", 9};
inline constexpr ManualPage troubleshooting = {"troubleshooting.html", 10};
inline constexpr ManualPage trace = {"trace.html", 11};
inline constexpr ManualPage ports = {"ports.html", 12};
inline constexpr ManualPage bench = {"bench.html", 13};

} // namespace manual_page

/// The page of the manual on the page of that mode.
const ManualPage& manualPageOf(Mode mode);

/// The page of the manual on a dialog.
const ManualPage& manualPageOf(const QDialog& dialog);

/// Shows the manual in the platform's help viewer, and its pages by the key F1, in the dialogs of the window
/// too.
class Manual : public QObject {
    Q_OBJECT

public:
    /// @param window whose children its dialogs are @param programFolder where the help file is
    Manual(QWidget& window, Events& events, QString programFolder);

    /// The help button: starts the viewer with the help file. @throws RuntimeError 53 where nothing can be
    /// started
    void show();
    /// Opens one page; the first one where the viewer that is there takes no page. @throws RuntimeError 53
    void show(const ManualPage& page);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QString file() const;

    Events& events_;
    QString programFolder_;
};

} // namespace varda::window
