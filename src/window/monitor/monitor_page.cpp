#include "window/monitor/monitor_page.h"

#include "core/base/runtime_error.h"
#include "core/base/scope_exit.h"
#include "ui_monitor_page.h"
#include "window/controls/events.h"
#include "window/controls/file_dialogs.h"
#include "window/controls/form.h"
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
      run_(context.link, surroundings_.clock, lines_),
      frmMonitoringData_(new FrmMonitoringData(this)) {
    ui_->setupUi(this);
    logToolTip_ = ui_->chkMonLog->toolTip();
    ui_->lstMonitor->setModel(&lines_);
    ui_->lstMonitor->setItemDelegate(new MonitorDelegate(this));
    ui_->lstMonitor->viewport()->installEventFilter(this);
    ui_->monitorState->tell(ui_->monitorState->text()); // nobody listens yet: the start is no news
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
    connect(&lines_, &QAbstractItemModel::rowsInserted, this, [this] { ui_->cmdClear->setEnabled(true); });
    connect(ui_->lstMonitor, &QListView::pressed, this, [this] { showLine(); });
    // A box that opens meanwhile would take the release of the button.
    connect(qApp, &QApplication::focusWindowChanged, this, [this] { frmMonitoringData_->closeLine(); });
}

void MonitorPage::cmdMonStart_Click() {
    if (!context_.isFreeForRun()) {
        return;
    }
    if (ui_->txtMonLogFile->text().isEmpty()) {
        ui_->chkMonLog->setChecked(false);
    }
    run_.start();
    ui_->txtMonLogFile->setEnabled(false);
    ui_->chkMonLog->setEnabled(false);
    ui_->chkMonLog->setToolTip(logToolTip_);
    const ScopeExit shown([this] { showRun(); }); // whether or not there is a log
    if (ui_->chkMonLog->isChecked()) {
        advised([this] { run_.openLog(fileName(ui_->txtMonLogFile->text())); },
                [](const RuntimeError& /*error*/) {
                    return "Choose a log file in a folder that is there and that you may write to.";
                });
    }
}

void MonitorPage::cmdMonStop_Click() {
    run_.stop();
    ui_->txtMonLogFile->setEnabled(true); // kept: without a run and without a log as well
    ui_->chkMonLog->setEnabled(true);
    showRun();
}

void MonitorPage::showRun() {
    const bool running = run_.isRunning();
    const bool listening = running && context_.link.port().isOpen();
    QFont font = this->font();
    font.setBold(listening);
    ui_->monitorState->setFont(font);
    ui_->monitorState->setText(listening ? tr("Listening") : running ? tr("Port closed") : tr("Stopped"));
    ui_->monitorState->tell(ui_->monitorState->text());
    switchButtons(listening, running);
}

/// The focus goes on to the button that takes back what the pressed one did.
void MonitorPage::switchButtons(bool listening, bool running) {
    const bool lacksItsLog = ui_->chkMonLog->isChecked() && !run_.isLogging(); // Start would open it
    const bool startDoesSomething = !listening || lacksItsLog;
    const bool followsStart = !startDoesSomething && ui_->cmdMonStart->hasFocus();
    const bool freesTheFile = !ui_->txtMonLogFile->isEnabledTo(this); // itself, whatever the page is
    const bool stopDoesSomething = running || freesTheFile;
    const bool followsStop = !stopDoesSomething && ui_->cmdMonStop->hasFocus();
    ui_->cmdMonStart->setEnabled(startDoesSomething);
    ui_->cmdMonStop->setEnabled(stopDoesSomething);
    if (followsStart) {
        ui_->cmdMonStop->setFocus();
    } else if (followsStop) {
        ui_->cmdMonStart->setFocus();
    }
}

void MonitorPage::stopRun() {
    if (run_.isRunning()) {
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
    showRun();
}

void MonitorPage::cmdClear_Click() {
    if (ui_->cmdClear->hasFocus()) {
        ui_->lstMonitor->setFocus();
    }
    lines_.clear();
    ui_->cmdClear->setEnabled(false);
}

void MonitorPage::told(const Exchange& exchange) {
    if (exchange.outcome == Outcome::Heard) {
        listBurst(exchange.answer);
    }
}

void MonitorPage::listBurst(const Bytes& burst) {
    const QScrollBar* const scrollBar = ui_->lstMonitor->verticalScrollBar();
    const bool follows = scrollBar->value() == scrollBar->maximum();
    const QTime now = surroundings_.now();
    const auto stamp = ui_->chkTimeStamp->isChecked()
                           ? std::optional(TimeOfDay{now.hour(), now.minute(), now.second()})
                           : std::nullopt;
    if (!run_.list(burst, stamp, ui_->chkASCIIDisplay->isChecked())) {
        ui_->chkMonLog->setToolTip(tr("The log could not be written whole: is the disk full?"));
    }
    ui_->txtLine->setText(QString::number(lines_.rowCount() - 1)); // kept: the count lags one behind
    if (follows) {
        ui_->lstMonitor->showEnd();
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
