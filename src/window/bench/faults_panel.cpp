#include "window/bench/faults_panel.h"

#include "core/base/runtime_error.h"
#include "ui_faults_panel.h"
#include "window/bench/fault_model.h"
#include "window/bench/fault_switch.h"
#include "window/controls/counted_text.h"
#include "window/controls/events.h"
#include "window/controls/make_form.h"
#include "window/controls/table_lines.h"
#include "window/controls/wrapping_row.h"

#include <QRandomGenerator>

#include <array>

namespace varda::window {
namespace {

/// What usually stands in the columns.
constexpr std::array usualTexts = {"[x] noise-before", "600000..600000 ms", "each third ", "000000 ",
                                   "It is sent once more"};

} // namespace

FaultsPanel::FaultsPanel(FaultSwitch& faults, const BenchContext& context, QWidget* parent)
    : CompanionPart(parent),
      context_(context),
      faults_(faults),
      ui_(makeForm<Ui::FaultsPanel>(this)),
      model_(new FaultModel(faults, this)) {
    WrappingRow::replace(ui_->faultsPanelLayout, ui_->faultSwitchRow);
    ui_->faultTable->setModel(model_);
    showLines(ui_->faultTable, ui_->faultTable->fontMetrics().height());
    fitColumns(ui_->faultTable, usualTexts);
    bind();
    showProblems();
    showChosen();
}

FaultsPanel::~FaultsPanel() = default;

void FaultsPanel::bind() {
    Events& events = context_.events;
    events.click(ui_->faultsOn, [this] { faults_.switchOn(ui_->faultsOn->isChecked()); });
    events.click(ui_->clearFaults, [this] { untickAll(); });
    events.click(ui_->newFaultSeed, [this] { faults_.setSeed(QRandomGenerator::global()->generate()); });
    connect(ui_->faultSeed, &QLineEdit::editingFinished, this,
            [this] { context_.events.guard([this] { takeSeed(); }); });
    connect(ui_->faultText, &QLineEdit::editingFinished, this,
            [this] { context_.events.guard([this] { takeText(); }); });
    connect(model_, &FaultModel::refused, this, &FaultsPanel::showProblems);
    connect(&faults_, &FaultSwitch::changed, this, &FaultsPanel::showChosen);
}

void FaultsPanel::takeSeed() {
    bool isNumber = false;
    const qulonglong seed = ui_->faultSeed->text().trimmed().toULongLong(&isNumber);
    seedProblem_ = isNumber
                       ? QString()
                       : tr("The seed is a whole number from 0 on. %1 is still in use.").arg(faults_.seed());
    showProblems();
    if (isNumber) {
        faults_.setSeed(seed);
    }
}

/// What is not understood changes nothing.
void FaultsPanel::takeText() {
    try {
        const FaultPlan plan = parseFaults(ui_->faultText->text().toStdString());
        textProblem_.clear();
        showProblems();
        faults_.choose(plan);
    } catch (const RuntimeError& error) {
        textProblem_ = QString::fromUtf8(error.what());
        showProblems();
    }
}

void FaultsPanel::untickAll() {
    textProblem_.clear();
    showProblems();
    faults_.switchOn(false);
    faults_.choose({});
}

/// What is wrong with one field stays while another one is put right; what was wrong with a cell does not
/// stand there any more.
void FaultsPanel::showProblems(const QString& ofCell) {
    QStringList problems = {ofCell, textProblem_, seedProblem_};
    problems.removeAll(QString());
    ui_->faultProblem->setText(problems.join(QLatin1Char(' ')));
    ui_->faultProblem->setVisible(!problems.isEmpty());
}

void FaultsPanel::showChosen() {
    ui_->faultsOn->setChecked(faults_.isOn());
    ui_->faultSeed->setText(QString::number(faults_.seed()));
    ui_->faultText->setText(QString::fromStdString(faultText(faults_.chosen())));
    refresh();
}

void FaultsPanel::refresh() {
    std::uint64_t done = 0;
    for (const FaultRule& rule : faultRules()) {
        done += faults_.done(rule.kind);
    }
    const QString waiting = faults_.isOn() && !faults_.isActive() ? tr("No fault is ticked.") : QString();
    ui_->faultsState->setText(done > 0 ? tr("%1 done").arg(countedText(done, "fault")) : waiting);
    model_->showDone();
}

} // namespace varda::window
