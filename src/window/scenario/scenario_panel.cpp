#include "window/scenario/scenario_panel.h"

#include "core/base/runtime_error.h"
#include "core/base/scope_exit.h"
#include "core/files/profile_file.h"
#include "core/link/period.h"
#include "core/protocol/hex_text.h"
#include "core/recordings/recording.h"
#include "core/runs/scenario_file.h"
#include "ui_scenario_panel.h"
#include "window/controls/events.h"
#include "window/controls/file_dialogs.h"
#include "window/controls/form.h"
#include "window/controls/frame_line_delegate.h"
#include "window/controls/lists.h"
#include "window/controls/period_steps.h"
#include "window/controls/profile_files.h"
#include "window/controls/show_text.h"
#include "window/system/file_name.h"

#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace varda::window {
namespace {

constexpr int shortestStep = 10; ///< arrow keys go no lower; what is typed may

FileDialogs::Kind scenarioFiles() { return {QStringLiteral(".scn"), QStringLiteral("Data")}; }

} // namespace

ScenarioPanel::ScenarioPanel(const PageContext& context, Surroundings surroundings, QWidget* parent)
    : QWidget(parent),
      context_(context),
      surroundings_(std::move(surroundings)),
      run_(context.link, surroundings_.tmrScenario, *this),
      ui_(std::make_unique<Ui::ScenarioPanel>()) {
    ui_->setupUi(this);
    new FrameLineDelegate(ui_->lstSchedule);
    bind();
}

/// The list changes once more while it is taken down, when nobody of those who follow it is there.
ScenarioPanel::~ScenarioPanel() { disconnect(ui_->lstSchedule->model(), nullptr, this, nullptr); }

void ScenarioPanel::bind() {
    Events& events = context_.events;
    events.click(ui_->cmdAddScenario, [this] { cmdAddScenario_Click(); });
    events.click(ui_->cmdDelScenario, [this] { cmdDelScenario_Click(); });
    events.click(ui_->cmdSaveScenario, [this] { cmdSaveScenario_Click(); });
    events.click(ui_->cmdLoadScenario, [this] { cmdLoadScenario_Click(); });
    events.click(ui_->cmdRunScenario, [this] { cmdRunScenario_Click(); });
    events.click(ui_->cmdStopScenario, [this] { cmdStopScenario_Click(); });
    endNoteWithChange();
    tellOfLines();
    new PeriodSteps(ui_->txtScnPeriod, {shortestStep, longestPeriod});
}

void ScenarioPanel::stop() {
    if (run_.isTicking()) {
        cmdStopScenario_Click();
    }
}

void ScenarioPanel::switchRunButtons() {
    ui_->cmdRunScenario->setEnabled(count() > 0 && !run_.isRunning());
    ui_->cmdStopScenario->setEnabled(run_.isRunning());
}

void ScenarioPanel::showNumber() {
    ui_->txtNumberOfScenario->setText(QString::number(ui_->lstSchedule->count()));
}

void ScenarioPanel::cmdAddScenario_Click() {
    const std::string frame = surroundings_.shownRequest();
    if (!frame.empty()) {
        ui_->lstSchedule->addItem(QString::fromStdString(frame));
    }
    ui_->cmdDelScenario->setEnabled(true); // kept: also where nothing was added
    showNumber();
    if (ui_->lstSchedule->count() > 0) {
        ui_->cmdRunScenario->setEnabled(true);
    }
}

void ScenarioPanel::cmdDelScenario_Click() {
    const QList<QListWidgetItem*> marked = ui_->lstSchedule->selectedItems();
    if (!marked.isEmpty() && !marked.first()->text().isEmpty()) {
        const int row = ui_->lstSchedule->row(marked.first());
        delete marked.first();
        ui_->lstSchedule->setCurrentRow(std::min(row, ui_->lstSchedule->count() - 1));
    }
    const bool hasLines = ui_->lstSchedule->count() > 0;
    ui_->cmdDelScenario->setEnabled(hasLines);
    ui_->cmdRunScenario->setEnabled(hasLines);
    showNumber();
}

void ScenarioPanel::cmdSaveScenario_Click() {
    surroundings_.files.chooseToSave(scenarioFiles(), [this](const QString& path) {
        context_.events.guard([this, &path] { saveTo(path); });
    });
}

/// A file that was saved holds another list by then. The list changes once more while the panel is taken
/// down, when nothing of it but the note may be asked.
void ScenarioPanel::endNoteWithChange() {
    StateLabel* const note = ui_->scenarioNote;
    const QAbstractItemModel* const lines = ui_->lstSchedule->model();
    const auto end = [note] {
        note->clear();
        note->setToolTip({});
        note->setAccessibleName({});
        note->tell({});
    };
    connect(lines, &QAbstractItemModel::rowsInserted, note, end);
    connect(lines, &QAbstractItemModel::rowsRemoved, note, end);
    connect(lines, &QAbstractItemModel::modelReset, note, end);
}

/// For who keeps something beside each line.
void ScenarioPanel::tellOfLines() {
    const QAbstractItemModel* const lines = ui_->lstSchedule->model();
    const auto count = [](int first, int last) {
        return static_cast<std::size_t>(last) + 1 - static_cast<std::size_t>(first);
    };
    connect(lines, &QAbstractItemModel::rowsInserted, this, [this, count](const auto&, int first, int last) {
        emit linesInserted(static_cast<std::size_t>(first), count(first, last));
    });
    connect(lines, &QAbstractItemModel::rowsRemoved, this, [this, count](const auto&, int first, int last) {
        emit linesRemoved(static_cast<std::size_t>(first), count(first, last));
    });
    connect(lines, &QAbstractItemModel::modelReset, this, &ScenarioPanel::linesCleared);
}

void ScenarioPanel::showNote(const QString& note, const QString& toolTip) {
    StateLabel* const label = ui_->scenarioNote;
    label->setText(label->fontMetrics().elidedText(note, Qt::ElideMiddle, label->width()));
    label->setToolTip(toolTip);
    label->setAccessibleName(note);
    label->tell(note);
}

void ScenarioPanel::tellSaved(const QString& path) {
    context_.form.setText("txtSimStatus",
                          "Saved Scenario Data completely !!!"); // kept: the simulator's status field
    showNote(tr("Saved: %1").arg(QFileInfo(path).fileName()), path);
}

void ScenarioPanel::saveTo(const QString& path) {
    context_.form.setText("txtSimStatus", "");
    showNote({});
    const std::string name = fileName(path);
    ProfileFile file = ProfileFile::load(name);
    storeScenario(linesOf(ui_->lstSchedule), file);
    ui_->lstSchedule->setCurrentRow(ui_->lstSchedule->count() - 1); // each line is visited in turn
    saveOrTell(file, name, context_, [this, path] { tellSaved(path); });
}

void ScenarioPanel::cmdLoadScenario_Click() {
    surroundings_.files.chooseToOpen(scenarioFiles(), [this](const QString& path) { load(path); });
}

bool ScenarioPanel::mayLoad() const { return ui_->cmdLoadScenario->isEnabled(); }

void ScenarioPanel::load(const QString& path) {
    context_.events.guard([this, &path] { loadFrom(path); });
}

void ScenarioPanel::loadFrom(const QString& path) {
    context_.form.setText("txtSimStatus", "");
    ui_->lstSchedule->clear();
    const ProfileFile file = ProfileFile::load(fileName(path));
    if (tellWhyUnreadable(file, context_)) {
        return;
    }
    const auto scenario = loadScenario(file);
    if (!scenario) {
        context_.form.showMessage(scenarioFileCorrupted, "Confirm");
        return;
    }
    QStringList lines;
    lines.reserve(static_cast<qsizetype>(scenario->lines.size()));
    for (const std::string& line : scenario->lines) {
        lines.append(QString::fromStdString(line));
    }
    ui_->lstSchedule->addItems(lines);
    if (scenario->isComplete) {
        ui_->cmdRunScenario->setEnabled(true);
        showNumber();
    }
    emit loaded(path);
}

void ScenarioPanel::cmdRunScenario_Click() {
    if (!context_.isFreeForRun()) {
        return;
    }
    ui_->cmdRunScenario->setEnabled(false);
    ui_->cmdStopScenario->setEnabled(true);
    if (ui_->lstSchedule->count() == 0) {
        cmdStopScenario_Click();
        return;
    }
    try {
        startRun();
        ui_->cmdStopScenario->setFocus(); // the button that helps now; the one that was pressed is off
    } catch (const RuntimeError&) {
        stopRun();
        throw;
    }
}

void ScenarioPanel::startRun() {
    if (context_.link.state().CommMode == Mode::Monitoring) {
        surroundings_.stopMonitor(); // closes the log
    }
    SetMasterControls(false);
    emit runBegins();
    run_.start(periodText());
}

std::string ScenarioPanel::periodText() const { return ui_->txtScnPeriod->text().toStdString(); }

void ScenarioPanel::stopRun() {
    ui_->cmdRunScenario->setEnabled(true);
    if (ui_->cmdStopScenario->hasFocus()) {
        ui_->cmdRunScenario->setFocus();
    }
    ui_->cmdStopScenario->setEnabled(false);
    freeThePort();
}

void ScenarioPanel::freeThePort() {
    SetMasterControls(true);
    const bool isMasterShown = findRoute(surroundings_.shownMode()) != nullptr;
    context_.form.EnableScenarioControls(isMasterShown); // off on the simulation and monitoring pages
    run_.stop(surroundings_.shownMode());
}

bool ScenarioPanel::beginPlaying() {
    if (isPlaying_ || run_.isRunning() || !context_.isFreeForRun()) {
        return isPlaying_;
    }
    if (context_.link.state().CommMode == Mode::Monitoring) {
        surroundings_.stopMonitor(); // closes the log
    }
    isPlaying_ = true;
    ui_->cmdRunScenario->setEnabled(false);
    SetMasterControls(false);
    context_.link.enterMode(Mode::Scenario);
    return true;
}

void ScenarioPanel::sendPlayed(const Bytes& frame) {
    showText(ui_->txtScnSend, hexSpaced(frame));
    context_.link.sendScenarioFrame(frame, answerLengthOf(frame));
}

void ScenarioPanel::endPlaying() {
    if (isPlaying_) {
        isPlaying_ = false;
        freeThePort();
        switchRunButtons();
    }
}

void ScenarioPanel::cmdStopScenario_Click() {
    const ScopeExit stopped([this] { stopRun(); }); // stops whatever the period field holds
    run_.setPeriod(periodText());
}

void ScenarioPanel::tmrScenario_Timer() {
    try {
        const int row = current();
        if (const std::optional<std::string> line = run_.next()) {
            showText(ui_->txtScnSend, *line);
            const ScopeExit isSent([this] { sending_.reset(); });
            sending_ = static_cast<std::size_t>(row);
            run_.send(*line);
        }
    } catch (const RuntimeError&) {
        stopRun();
        throw;
    }
}

void ScenarioPanel::told(const Exchange& exchange) {
    const bool endsARun = exchange.mode == Mode::Scenario && !isPlaying_ && !run_.isSilenceExpected();
    if (exchange.outcome == Outcome::Silent && endsARun) {
        cmdStopScenario_Click();
    }
}

int ScenarioPanel::count() const { return ui_->lstSchedule->count(); }

std::string ScenarioPanel::line(int row) const { return ui_->lstSchedule->item(row)->text().toStdString(); }

int ScenarioPanel::current() const { return ui_->lstSchedule->currentRow(); }

void ScenarioPanel::choose(int row) { ui_->lstSchedule->setCurrentRow(row); }

void ScenarioPanel::SetMasterControls(bool enabled) {
    surroundings_.enableMasters(enabled);
    context_.form.EnableScenarioControls(enabled);
}

} // namespace varda::window
