#include "window/shell/port_doctor.h"

#include "device/port_doctor.h"
#include "ui_port_doctor.h"
#include "window/controls/make_form.h"
#include "window/shell/look.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QPointer>
#include <QThreadPool>

#include <utility>

namespace varda::window {
namespace {

QString examined(const std::string& port) {
    try {
        return QString::fromStdString(device::reportOf(device::examinePorts(port)));
    } catch (const std::exception& error) {
        return PortDoctor::tr("The ports could not be looked at: %1").arg(QString::fromUtf8(error.what()));
    }
}

} // namespace

PortDoctor::PortDoctor(std::function<std::string()> chosenPort, QWidget* parent)
    : QDialog(parent), ui_(makeForm<Ui::PortDoctor>(this)), chosenPort_(std::move(chosenPort)) {
    useFixedWidthForFrames(this);
    connect(ui_->lookAgain, &QPushButton::clicked, this, [this] { look(); });
    connect(ui_->copyReport, &QPushButton::clicked, this, [this] { copy(); });
    connect(ui_->closeDoctor, &QPushButton::clicked, this, &QDialog::accept);
}

PortDoctor::~PortDoctor() = default;

void PortDoctor::look() {
    ui_->portReport->setPlainText(tr("Looking at the ports .."));
    ui_->lookAgain->setEnabled(false);
    show();
    raise();
    activateWindow();
    QThreadPool::globalInstance()->start([self = QPointer(this), port = chosenPort_()] {
        const QString report = examined(port);
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [self, report] {
                if (self != nullptr) {
                    self->showReport(report);
                }
            },
            Qt::QueuedConnection);
    });
}

void PortDoctor::showReport(const QString& report) {
    ui_->portReport->setPlainText(report);
    ui_->lookAgain->setEnabled(true);
}

void PortDoctor::copy() const { QGuiApplication::clipboard()->setText(ui_->portReport->toPlainText()); }

} // namespace varda::window
