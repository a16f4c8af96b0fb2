#include "window/scenario/scenario_panel.h"

#include "core/base/conversion.h"
#include "core/base/period_timer.h"
#include "core/base/runtime_error.h"
#include "core/base/scope_exit.h"
#include "core/files/profile_file.h"
#include "core/link/form.h"
#include "core/link/period.h"
#include "core/link/routes.h"
#include "core/link/serial_link.h"
#include "core/runs/scenario_file.h"
#include "core/runs/scenario_frame.h"
#include "ui_scenario_panel.h"
#include "window/controls/events.h"
#include "window/controls/file_dialogs.h"
#include "window/controls/lists.h"
#include "window/controls/period_steps.h"
#include "window/controls/profile_files.h"
#include "window/controls/texts.h"
#include "window/scenario/frame_line_delegate.h"
#include "window/system/file_name.h"

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
      ui_(std::make_unique<Ui::ScenarioPanel>()) {
    ui_->setupUi(this);
    new FrameLineDelegate(ui_->lstSchedule);
    bind();
}

ScenarioPanel::~ScenarioPanel() = default;

void ScenarioPanel::bind() {
    Events& events = context_.events;
    events.click(ui_->cmdAddScenario, [this] { cmdAddScenario_Click(); });
    events.click(ui_->cmdDelScenario, [this] { cmdDelScenario_Click(); });
    events.click(ui_->cmdSaveScenario, [this] { cmdSaveScenario_Click(); });
    events.click(ui_->cmdLoadScenario, [this] { cmdLoadScenario_Click(); });
    events.click(ui_->cmdRunScenario, [this] { cmdRunScenario_Click(); });
    events.click(ui_->cmdStopScenario, [this] { cmdStopScenario_Click(); });
    new PeriodSteps(ui_->txtScnPeriod, {shortestStep, longestPeriod});
}

void ScenarioPanel::stop() {
    if (surroundings_.tmrScenario.isRunning()) {
        cmdStopScenario_Click();
    }
}

void ScenarioPanel::switchRunButtons() {
    const bool running = context_.link.state().CommMode == comm_mode::scenario;
    ui_->cmdRunScenario->setEnabled(ui_->lstSchedule->count() > 0 && !running);
    ui_->cmdStopScenario->setEnabled(running);
}

void ScenarioPanel::showNumber() {
    ui_->txtNumberOfScenario->setText(QString::number(ui_->lstSchedule->count()));
}

void ScenarioPanel::cmdAddScenario_Click() {
    const Route* const route = findRoute(surroundings_.shownCommMode());
    const std::string frame = route != nullptr ? context_.form.text(route->request) : std::string();
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

void ScenarioPanel::saveTo(const QString& path) {
    context_.form.setText("txtSimStatus", "");
    const std::string name = fileName(path);
    ProfileFile file = ProfileFile::load(name);
    storeScenario(linesOf(ui_->lstSchedule), file);
    ui_->lstSchedule->setCurrentRow(ui_->lstSchedule->count() - 1); // each line is visited in turn
    saveOrTell(file, name, context_, [this] {
        context_.form.setText("txtSimStatus",
                              "Saved Scenario Data completely !!!"); // kept: the simulator's status field
    });
}

void ScenarioPanel::cmdLoadScenario_Click() {
    surroundings_.files.chooseToOpen(scenarioFiles(), [this](const QString& path) {
        context_.events.guard([this, &path] { loadFrom(path); });
    });
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
}

void ScenarioPanel::cmdRunScenario_Click() {
    if (!context_.link.isFreeForRun()) {
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
    } catch (const RuntimeError&) {
        stopRun();
        throw;
    }
}

void ScenarioPanel::startRun() {
    if (context_.link.state().CommMode == comm_mode::monitoring) {
        context_.form.press("cmdMonStop"); // closes the log
    }
    SetMasterControls(false);
    ui_->lstSchedule->setCurrentRow(0);
    context_.link.enterMode(comm_mode::scenario);
    surroundings_.tmrScenario.setInterval(typedPeriod());
    surroundings_.tmrScenario.start();
}

int ScenarioPanel::typedPeriod() const {
    const int period = toLong(ui_->txtScnPeriod->text().toStdString());
    if (period < 0 || period > longestPeriod) {
        throw invalidPropertyValue();
    }
    return period;
}

void ScenarioPanel::stopRun() {
    surroundings_.tmrScenario.stop();
    ui_->cmdRunScenario->setEnabled(true);
    ui_->cmdStopScenario->setEnabled(false);
    SetMasterControls(true);
    const bool isMasterShown = findRoute(surroundings_.shownCommMode()) != nullptr;
    context_.form.EnableScenarioControls(isMasterShown); // off on the simulation and monitoring pages
    if (context_.link.state().CommMode == comm_mode::scenario) {
        context_.link.enterMode(surroundings_.shownCommMode());
    }
}

void ScenarioPanel::cmdStopScenario_Click() {
    const ScopeExit stopped([this] { stopRun(); }); // stops whatever the period field holds
    surroundings_.tmrScenario.setInterval(typedPeriod());
}

void ScenarioPanel::tmrScenario_Timer() {
    try {
        sendNextLine();
    } catch (const RuntimeError&) {
        stopRun();
        throw;
    }
}

void ScenarioPanel::sendNextLine() {
    const int row = ui_->lstSchedule->currentRow();
    const int next = row + 1 < ui_->lstSchedule->count() ? row + 1 : 0;
    ui_->lstSchedule->setCurrentRow(next);
    if (row < 0) {
        return;
    }
    const std::string line = ui_->lstSchedule->item(row)->text().toStdString();
    showText(ui_->txtScnSend, line);
    const Bytes frame = scenarioFrame(line);
    context_.link.sendScenarioFrame(frame, scenarioAnswerLength(frame));
}

void ScenarioPanel::SetMasterControls(bool enabled) {
    context_.form.setEnabled("tabMode", enabled);
    for (const Route& route : masterRoutes()) {
        context_.form.setEnabled(route.sendButton, enabled);
        context_.form.setTicked(route.continuousBox, false);
        context_.form.setEnabled(route.continuousBox, enabled);
    }
    context_.form.EnableScenarioControls(enabled);
}

} // namespace varda::window
