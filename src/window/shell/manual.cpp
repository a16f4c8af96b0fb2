#include "window/shell/manual.h"

#include "core/base/runtime_error.h"
#include "window/controls/events.h"
#include "window/system/external_program.h"

#include <QChildEvent>
#include <QDialog>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QKeyEvent>
#include <QMessageBox>

#include <utility>

namespace varda::window {

const ManualPage& manualPageOf(Mode mode) {
    switch (mode) {
    case Mode::BitRead:
    case Mode::WordRead:
        return manual_page::read;
    case Mode::BitWrite:
    case Mode::WordWrite:
        return manual_page::write;
    case Mode::MixedRead:
        return manual_page::mixedRead;
    case Mode::MixedWrite:
        return manual_page::mixedWrite;
    case Mode::Simulation:
        return manual_page::simulation;
    case Mode::MonitorIdle:
    case Mode::Monitoring:
        return manual_page::monitoring;
    case Mode::Scenario:
        return manual_page::scenario;
    }
    return manual_page::start;
}

const ManualPage& manualPageOf(const QDialog& dialog) {
    return qobject_cast<const QMessageBox*>(&dialog) != nullptr       ? manual_page::troubleshooting
           : qobject_cast<const QFileDialog*>(&dialog) != nullptr     ? manual_page::files
           : dialog.objectName() == QLatin1String("frmWriteWord")     ? manual_page::write
           : dialog.objectName() == QLatin1String("portDoctorDialog") ? manual_page::ports
                                                                      : manual_page::start;
}

Manual::Manual(QWidget& window, Events& events, QString programFolder)
    : events_(events), programFolder_(std::move(programFolder)) {
    window.installEventFilter(this);
}

QString Manual::file() const {
    return QDir::toNativeSeparators(programFolder_) +
           QStringLiteral(R"(\\VARDA.CHM)"); // kept: two backslashes
}

void Manual::show() {
    startProgram(QStringLiteral("hh ") + file(), this,
                 [this](const RuntimeError& error) { events_.report(error); });
}

void Manual::show(const ManualPage& page) {
    const QString name = QString::fromUtf8(page.name.data(), static_cast<qsizetype>(page.name.size()));
    const QString own = ownName(file());
    QList<ProgramCall> calls = {{QStringLiteral("hh"), {file() + QLatin1String("::/") + name}, true}};
    if (QFileInfo::exists(own)) {
        calls.append(
            {QStringLiteral("xchm"), {QStringLiteral("-c"), QString::number(page.number), own}, false});
    }
    startFirstOf(calls, own, this, [this](const RuntimeError& error) { events_.report(error); });
}

bool Manual::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ChildPolished) { // a dialog comes up, whole by then
        QObject* const child = static_cast<QChildEvent*>(event)->child();
        if (auto* const dialog = qobject_cast<QDialog*>(child)) { // clazy:exclude=child-event-qobject-cast
            dialog->installEventFilter(this);
        }
    }
    const auto* const dialog = qobject_cast<const QDialog*>(watched);
    if (event->type() != QEvent::KeyPress || dialog == nullptr) {
        return false;
    }
    const auto& key = *static_cast<const QKeyEvent*>(event);
    const bool asks = key.key() == Qt::Key_F1 && key.modifiers() == Qt::NoModifier && !key.isAutoRepeat();
    if (asks) {
        events_.guard([this, dialog] { show(manualPageOf(*dialog)); });
    }
    return asks;
}

} // namespace varda::window
