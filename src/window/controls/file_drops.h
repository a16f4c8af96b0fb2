#pragma once

#include <QObject>
#include <QStringList>

#include <functional>

class QDropEvent;

namespace varda::window {

/// Takes files that are dropped anywhere on a window, also on its text fields, which would take their names
/// for a text to insert. What else is dropped stays theirs.
class FileDrops : public QObject {
    Q_OBJECT

public:
    /// @param window all of whose fields stand by now
    FileDrops(QWidget* window, std::function<void(const QStringList& paths)> load);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool take(QDropEvent& event);

    std::function<void(const QStringList& paths)> load_;
};

} // namespace varda::window
