#include "window/monitor/frmMonitoringData.h"

#include "ui_monitoring_data.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>

namespace varda::window {
namespace {

constexpr int belowPointer = 10;

} // namespace

FrmMonitoringData::FrmMonitoringData(QWidget* parent)
    : QWidget(parent, Qt::ToolTip | Qt::WindowDoesNotAcceptFocus),
      ui_(std::make_unique<Ui::FrmMonitoringData>()) {
    ui_->setupUi(this);
    setAttribute(Qt::WA_ShowWithoutActivating);
}

FrmMonitoringData::~FrmMonitoringData() = default;

void FrmMonitoringData::showLine(const QString& line, const QPoint& pointer) {
    ui_->txtMonitoringData->setText(line);
    const QScreen* const pointed = QGuiApplication::screenAt(pointer);
    const QRect free = (pointed != nullptr ? pointed : parentWidget()->screen())->availableGeometry();
    resize(ui_->txtMonitoringData->sizeToShowAll(free.width()).boundedTo(free.size()));
    const int left = std::clamp(pointer.x(), free.left(), std::max(free.left(), free.right() - width()));
    const int below = pointer.y() + belowPointer;
    const int above = pointer.y() - belowPointer - this->height();
    move(left, below + this->height() <= free.bottom() ? below : std::max(above, free.top()));
    show();
}

void FrmMonitoringData::closeLine() {
    ui_->txtMonitoringData->setText({});
    close();
}

} // namespace varda::window
