#include "monitor/frmMonitoringData.h"

#include "ui_monitoring_data.h"

#include <QFontDatabase>
#include <QScreen>

#include <algorithm>

namespace varda {
namespace {

constexpr int belowPointer = 10;
constexpr int margins = 24;
constexpr qsizetype paragraph =
    12000; ///< longer lines are shown in paragraphs, which are laid out one by one

/// Characters stand in groups of two or three, so a paragraph ends between two groups.
QString inParagraphs(const QString& line) {
    QString shown;
    for (qsizetype start = 0; start < line.size(); start += paragraph) {
        shown += (start == 0 ? QString() : QStringLiteral("\n")) + line.mid(start, paragraph);
    }
    return shown;
}

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
    ui_->txtMonitoringData->setPlainText(inParagraphs(line));
    const QScreen* const screen = parentWidget()->screen();
    const QRect free = screen->availableGeometry();
    const QFontMetrics metrics(ui_->txtMonitoringData->font());
    const int column = metrics.horizontalAdvance(QLatin1Char('0'));
    const int widest = std::max(free.width() / 2, 1);
    const int textWidth = static_cast<int>(std::min<qsizetype>(line.size() * column, widest - margins));
    const qsizetype perRow = std::max(textWidth / column - 2, 1);
    const qsizetype rows =
        std::clamp<qsizetype>(line.size() / perRow + 1, 1, free.height() / metrics.lineSpacing() / 2);
    resize(textWidth + margins + 2 * column, static_cast<int>(rows + 1) * metrics.lineSpacing() + margins);
    const int left = std::clamp(pointer.x(), free.left(), std::max(free.left(), free.right() - width()));
    const int below = pointer.y() + belowPointer;
    const int top = below + height() <= free.bottom() ? below : pointer.y() - belowPointer - height();
    move(left, std::max(top, free.top()));
    show();
}

void FrmMonitoringData::closeLine() {
    ui_->txtMonitoringData->clear();
    close();
}

} // namespace varda
