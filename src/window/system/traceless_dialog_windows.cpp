#include "window/system/traceless_dialog.h"

#include <QFileDialog>
#include <QMap>
#include <QSettings>
#include <QVariant>

namespace varda::window {
namespace {

using History = QMap<QString, QVariant>;

History readHistory() {
    QSettings settings(QSettings::UserScope, QStringLiteral("QtProject"));
    settings.beginGroup(QStringLiteral("FileDialog"));
    History history;
    for (const QString& key : settings.allKeys()) {
        history.insert(key, settings.value(key));
    }
    return history;
}

void writeHistory(const History& history) {
    QSettings settings(QSettings::UserScope, QStringLiteral("QtProject"));
    settings.remove(QStringLiteral("FileDialog"));
    settings.beginGroup(QStringLiteral("FileDialog"));
    for (auto entry = history.cbegin(); entry != history.cend(); ++entry) {
        settings.setValue(entry.key(), entry.value());
    }
}

} // namespace

/// The registry cannot be led elsewhere: what others have there is put back when the dialog has written its
/// own.
QFileDialog* makeTracelessDialog(QWidget* window) {
    const History history = readHistory();
    auto* const dialog = new QFileDialog(window);
    QObject::connect(dialog, &QObject::destroyed, [history] { writeHistory(history); });
    return dialog;
}

} // namespace varda::window
