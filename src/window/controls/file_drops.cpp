#include "window/controls/file_drops.h"

#include <QApplication>
#include <QDir>
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

#include <utility>

namespace varda::window {
namespace {

QStringList filesIn(const QMimeData* dragged) {
    QStringList paths;
    for (const QUrl& url : dragged->urls()) {
        if (url.isLocalFile()) {
            paths.append(QDir::toNativeSeparators(url.toLocalFile()));
        }
    }
    return paths;
}

} // namespace

FileDrops::FileDrops(QWidget* window, std::function<void(const QStringList& paths)> load)
    : QObject(window), load_(std::move(load)) {
    window->setAcceptDrops(true);
    window->installEventFilter(this);
    for (QWidget* const field : window->findChildren<QWidget*>()) {
        if (field->acceptDrops()) {
            field->installEventFilter(this);
        }
    }
}

bool FileDrops::eventFilter(QObject* /*watched*/, QEvent* event) {
    switch (event->type()) {
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
        return take(*static_cast<QDropEvent*>(event));
    default:
        return false;
    }
}

/// Behind a box nothing is taken, as nothing can be clicked there.
bool FileDrops::take(QDropEvent& event) {
    const QStringList paths = filesIn(event.mimeData());
    if (paths.isEmpty()) {
        return false;
    }
    event.setDropAction(Qt::CopyAction); // the file stays where it is
    event.setAccepted(QApplication::activeModalWidget() == nullptr);
    if (event.type() == QEvent::Drop && event.isAccepted()) {
        // when the program that the file comes from has been answered: a box may come up
        QMetaObject::invokeMethod(
            this, [this, paths] { load_(paths); }, Qt::QueuedConnection);
    }
    return true;
}

} // namespace varda::window
