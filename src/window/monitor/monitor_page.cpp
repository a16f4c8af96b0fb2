#include "window/monitor/monitor_page.h"

#include "core/base/runtime_error.h"
#include "core/link/form.h"
#include "core/link/routes.h"
#include "core/link/serial_link.h"
#include "ui_monitor_page.h"
#include "window/controls/events.h"
#include "window/controls/file_dialogs.h"
#include "window/monitor/frmMonitoringData.h"
#include "window/monitor/monitor_delegate.h"
#include "window/system/file_name.h"

#include <QApplication>
#include <QCursor>
#include <QMouseEvent>
#include <QScrollBar>
#include <QWindow>

#include <utility>

namespace varda::window {
namespace {

FileDialogs::Kind logFiles() { return {QStringLiteral(".log"), QStringLiteral("Log")}; }

} // namespace

MonitorPage::MonitorPage(const PageContext& context, Surroundings surroundings, QWidget* parent)
    : ModePage(parent),
      context_(context),
      surroundings_(std::move(surroundings)),
      ui_(std::make_unique<Ui::MonitorPage>()),
      log_(surroundings_.clock),
      frmMonitoringData_(new FrmMonitoringData(this)) {
    ui_->setupUi(this);
    logToolTip_ = ui_->chkMonLog->toolTip();
    ui_->lstMonitor->setModel(&lines_);
    ui_->lstMonitor->setItemDelegate(new MonitorDelegate(this));
    ui_->lstMonitor->viewport()->installEventFilter(this);
    bind();
}

MonitorPage::~MonitorPage() = default;

void MonitorPage::bind() {
    Events& events = context_.events;
    events.click(ui_->cmdMonStart, [this] { cmdMonStart_Click(); });
    events.click(ui_->cmdMonStop, [this] { cmdMonStop_Click(); });
    events.click(ui_->cmdMonLogFile, [this] { cmdMonLogFile_Click(); });
    events.click(ui_->cmdClear, [this] { cmdClear_Click(); });
    connect(ui_->chkMonLog, &QCheckBox::toggled, this, [this] { chkMonLog_Click(); });
    connect(ui_->lstMonitor, &QListView::pressed, this, [this] { showLine(); });
    // A box that opens meanwhile would take the release of the button.
    connect(qApp, &QApplication::focusWindowChanged, this, [this] { frmMonitoringData_->closeLine(); });
}

void MonitorPage::cmdMonStart_Click() {
    if (!context_.link.isFreeForRun()) {
        return;
    }
    if (ui_->txtMonLogFile->text().isEmpty()) {
        ui_->chkMonLog->setChecked(false);
    }
    context_.link.enterMode(comm_mode::monitoring);
    isRunning_ = true;
    ui_->txtMonLogFile->setEnabled(false);
    ui_->chkMonLog->setEnabled(false);
    ui_->chkMonLog->setToolTip(logToolTip_);
    if (ui_->chkMonLog->isChecked()) {
        openLog();
    }
}

void MonitorPage::openLog() { log_.open(fileName(ui_->txtMonLogFile->text())); }

void MonitorPage::cmdMonStop_Click() {
    context_.link.enterMode(comm_mode::monitorIdle);
    isRunning_ = false;
    log_.close();
    ui_->txtMonLogFile->setEnabled(true);
    ui_->chkMonLog->setEnabled(true);
}

void MonitorPage::stopRun() {
    if (isRunning_) {
        cmdMonStop_Click();
    }
}

void MonitorPage::cmdMonLogFile_Click() {
    surroundings_.files.chooseToSave(logFiles(),
                                     [this](const QString& path) { ui_->txtMonLogFile->setText(path); });
}

void MonitorPage::chkMonLog_Click() {
    ui_->txtMonLogFile->setEnabled(ui_->chkMonLog->isChecked());
    ui_->cmdMonLogFile->setEnabled(ui_->chkMonLog->isChecked());
}

void MonitorPage::cmdClear_Click() { lines_.clear(); }

void MonitorPage::listBurst(const Bytes& burst) {
    const QTime now = surroundings_.now();
    const std::string stamp =
        ui_->chkTimeStamp->isChecked() ? timeStamp(now.hour(), now.minute(), now.second()) : std::string();
    MonitorLine line = {stamp, burst, ui_->chkASCIIDisplay->isChecked()};
    if (lines_.rowCount() > static_cast<int>(monitorLineLimit)) {
        lines_.clear();
    }
    ui_->txtLine->setText(QString::number(lines_.rowCount())); // kept: the count lags one behind
    const QScrollBar* const scrollBar = ui_->lstMonitor->verticalScrollBar();
    const bool follows = scrollBar->value() == scrollBar->maximum();
    lines_.append(std::move(line));
    if (follows) {
        ui_->lstMonitor->scrollToBottom();
    }
    if (log_.isOpen()) {
        writeLog(lines_.line(lines_.rowCount() - 1).text());
    }
}

void MonitorPage::writeLog(const std::string& line) {
    if (!log_.write(line)) {
        ui_->chkMonLog->setToolTip(tr("The log could not be written whole: is the disk full?"));
    }
}

void MonitorPage::showLine() {
    const QModelIndexList selected = ui_->lstMonitor->selectionModel()->selectedRows();
    if (selected.isEmpty()) {
        return;
    }
    const std::string line = lines_.line(selected.first().row()).text();
    if (!line.empty()) {
        frmMonitoringData_->showLine(QString::fromLatin1(line.data(), static_cast<qsizetype>(line.size())),
                                     QCursor::pos());
    }
}

/// A press below the last line shows the line that is selected, and leaves it selected.
bool MonitorPage::isBelowLines(const QEvent& press) const {
    const QPoint place = static_cast<const QMouseEvent&>(press).position().toPoint();
    return !ui_->lstMonitor->indexAt(place).isValid();
}

bool MonitorPage::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonPress && isBelowLines(*event)) {
        showLine();
        return true;
    }
    if (event->type() == QEvent::MouseButtonRelease) {
        frmMonitoringData_->closeLine();
    }
    return ModePage::eventFilter(watched, event);
}

} // namespace varda::window
