#include "monitor/frmMonitoringData.h"

#include "ui_monitoring_data.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QScreen>

#include <algorithm>

namespace varda {
namespace {

constexpr int belowPointer = 10;
constexpr int margins = 24;

} // namespace

FrmMonitoringData::FrmMonitoringData(QWidget* parent)
    : QWidget(parent, Qt::ToolTip | Qt::WindowDoesNotAcceptFocus),
      ui_(std::make_unique<Ui::FrmMonitoringData>()) {
    ui_->setupUi(this);
    setAttribute(Qt::WA_ShowWithoutActivating);
    ui_->txtMonitoringData->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    ui_->txtMonitoringData->setFocusPolicy(Qt::NoFocus);
}

FrmMonitoringData::~FrmMonitoringData() = default;

void FrmMonitoringData::showLine(const QString& line, const QPoint& pointer) {
    ui_->txtMonitoringData->setPlainText(line);
    const QScreen* const pointed = QGuiApplication::screenAt(pointer);
    const QRect free = (pointed != nullptr ? pointed : parentWidget()->screen())->availableGeometry();
    const QFontMetrics metrics(ui_->txtMonitoringData->font());
    const int column = metrics.horizontalAdvance(QLatin1Char('0'));
    const int textWidth =
        static_cast<int>(std::min<qsizetype>((line.size() + 2) * column, free.width() - margins));
    const qsizetype perRow = std::max(textWidth / column - 3, 1); // a row breaks between groups
    const qsizetype rows = line.size() / perRow + 2;
    const qsizetype height = std::min<qsizetype>(rows * metrics.lineSpacing() + margins, free.height());
    resize(textWidth + margins, static_cast<int>(height));
    const int left = std::clamp(pointer.x(), free.left(), std::max(free.left(), free.right() - width()));
    const int below = pointer.y() + belowPointer;
    const int above = pointer.y() - belowPointer - this->height();
    move(left, below + this->height() <= free.bottom() ? below : std::max(above, free.top()));
    show();
}

void FrmMonitoringData::closeLine() {
    ui_->txtMonitoringData->clear();
    close();
}

} // namespace varda
