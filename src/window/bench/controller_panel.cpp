#include "window/bench/controller_panel.h"

#include "core/base/runtime_error.h"
#include "core/files/atomic_file.h"
#include "core/pairs/packet_table.h"
#include "core/protocol/hex_text.h"
#include "core/protocol/registers.h"
#include "core/runs/unknown_requests.h"
#include "ui_controller_panel.h"
#include "window/bench/memory_model.h"
#include "window/bench/unknown_model.h"
#include "window/controls/counted_text.h"
#include "window/controls/events.h"
#include "window/controls/file_dialogs.h"
#include "window/controls/make_form.h"
#include "window/controls/saving.h"
#include "window/controls/table_lines.h"
#include "window/controls/wrapping_row.h"
#include "window/system/file_name.h"

#include <QFileInfo>
#include <QHeaderView>
#include <QTabBar>

#include <algorithm>
#include <array>
#include <utility>

namespace varda::window {
namespace {

/// What usually stands in the columns.
constexpr std::array usualMemory = {"Register 0000", "Decimal ", "00000h "};
constexpr std::array usualUnknown = {"Count 00", "00 00 00 00 00 00 00 00 00 00 00 ",
                                     "mixed read, W 0000 .. W 0009, M 0000.3 ", "from memory "};

FileDialogs::Kind memoryFiles() { return {QStringLiteral(".csv"), QStringLiteral("Data")}; }

} // namespace

ControllerPanel::ControllerPanel(SimulatedController simulated, const BenchContext& context, QWidget* parent)
    : CompanionPart(parent),
      simulated_(std::move(simulated)),
      context_(context),
      ui_(makeForm<Ui::ControllerPanel>(this)),
      kinds_(new QTabBar(this)),
      memory_(new MemoryModel(simulated_.controller, this)),
      unknown_(new UnknownModel(simulated_.unknown, this)) {
    makeTables();
    bind();
    refresh();
}

ControllerPanel::~ControllerPanel() = default;

void ControllerPanel::makeTables() {
    WrappingRow::replace(ui_->controllerPanelLayout, ui_->memoryRow);
    WrappingRow::replace(ui_->unknownLayout, ui_->unknownRow);
    kinds_->setObjectName(QStringLiteral("memoryKinds"));
    kinds_->setAccessibleName(tr("Kind of register"));
    kinds_->setExpanding(false);
    for (const RegisterKind& kind : registerKinds()) {
        kinds_->addTab(QString::fromUtf8(kind.name.data(), static_cast<qsizetype>(kind.name.size())));
    }
    ui_->memoryLayout->insertWidget(0, kinds_);
    setTabOrder(ui_->saveMemory, kinds_);
    setTabOrder(kinds_, ui_->memoryTable);
    const int height = fontMetrics().height();
    ui_->memoryTable->setModel(memory_);
    showLines(ui_->memoryTable, height);
    fitColumns(ui_->memoryTable, usualMemory);
    QHeaderView* const columns = ui_->memoryTable->horizontalHeader();
    columns->setStretchLastSection(false);
    columns->setMinimumSectionSize(1);
    for (int bit = MemoryModel::FirstBit; bit < MemoryModel::columns; ++bit) {
        columns->resizeSection(bit, 2 * height);
    }
    ui_->unknownTable->setModel(unknown_);
    showLines(ui_->unknownTable, height);
    fitColumns(ui_->unknownTable, usualUnknown);
    ui_->memoryAndUnknown->setStretchFactor(0, 3);
    ui_->memoryAndUnknown->setStretchFactor(1, 2);
}

void ControllerPanel::bind() {
    Events& events = context_.events;
    events.click(ui_->answerFromMemory,
                 [this] { simulated_.living.switchOn(ui_->answerFromMemory->isChecked()); });
    events.click(ui_->loadMemory, [this] { chooseMemory(); });
    events.click(ui_->saveMemory, [this] { chooseWhereToSave(); });
    events.click(ui_->makePair, [this] { makePair(); });
    events.click(ui_->clearUnknown, [this] { clearUnknown(); });
    const auto make = [this] { context_.events.guard([this] { makePair(); }); };
    onChosenLine(ui_->unknownTable, make);
    connect(kinds_, &QTabBar::currentChanged, this,
            [this](int kind) { memory_->showKind(static_cast<std::size_t>(std::max(kind, 0))); });
    connect(memory_, &MemoryModel::refused, this, &ControllerPanel::showMemoryState);
}

void ControllerPanel::refresh() {
    memory_->refresh(editedRow());
    unknown_->refresh();
    ui_->clearUnknown->setEnabled(unknown_->rowCount() > 0);
    ui_->makePair->setEnabled(unknown_->rowCount() > 0);
}

/// What is typed would be written over by what comes.
std::optional<int> ControllerPanel::editedRow() const {
    const QModelIndex current = ui_->memoryTable->currentIndex();
    return current.isValid() && ui_->memoryTable->isPersistentEditorOpen(current)
               ? std::optional(current.row())
               : std::nullopt;
}

void ControllerPanel::chooseMemory() {
    const FileDialogs::Chosen chosen = [this](const QString& path) { load(path); };
    context_.files.chooseToOpen(memoryFiles(), context_.events.guarded(chosen));
}

/// A file that is not understood leaves the memory as it is.
void ControllerPanel::load(const QString& path) {
    const std::string name = fileName(path);
    const FileText file = readRegularFile(name, largestMemoryFile);
    if (file.problem) {
        context_.talk.tell(*file.problem);
        return;
    }
    try {
        simulated_.controller.setMemory(readMemory(file.text));
    } catch (const RuntimeError& error) {
        RuntimeError told = fileError(name, "is no memory of a controller.");
        told.advise(error.what());
        context_.talk.tell(told);
        return;
    }
    refresh();
    showMemoryState(
        tr("%1 from %2").arg(countedText(memory_->wordsSet(), "word"), QFileInfo(path).fileName()));
}

void ControllerPanel::chooseWhereToSave() {
    const FileDialogs::Chosen chosen = [this](const QString& path) { save(path); };
    context_.files.chooseToSave(memoryFiles(), context_.events.guarded(chosen));
}

void ControllerPanel::save(const QString& path) {
    saveTextOrTell(fileName(path), memoryText(simulated_.controller.memory()), context_.talk,
                   [this, path] { showMemoryState(tr("Saved: %1").arg(QFileInfo(path).fileName())); });
}

void ControllerPanel::makePair() {
    const auto row = static_cast<std::size_t>(ui_->unknownTable->currentIndex().row());
    const auto& requests = simulated_.unknown.requests();
    if (!ui_->unknownTable->currentIndex().isValid() || row >= requests.size()) {
        showUnknownState(tr("Choose a request."));
        return;
    }
    const Bytes request = requests[row].bytes;
    const bool isPrepared = simulated_.pairs.find(hexRun(request)).has_value();
    const auto pair = pairFromMemory(request, simulated_.controller.memory());
    if (!isPrepared && !pair) {
        showUnknownState(tr("The memory gives no answer to it."));
        return;
    }
    if (!isPrepared) {
        simulated_.addPair(*pair);
    }
    simulated_.unknown.forget(request);
    unknown_->reset();
    refresh();
    const int rows = unknown_->rowCount();
    ui_->unknownTable->setCurrentIndex(unknown_->index(std::min(static_cast<int>(row), rows - 1), 0));
    showUnknownState(isPrepared ? tr("A pair answers it by now.")
                                : tr("Pair %1 was made.").arg(simulated_.pairs.requests().size()));
}

void ControllerPanel::clearUnknown() {
    simulated_.unknown.clear();
    refresh();
    showUnknownState({});
}

void ControllerPanel::showMemoryState(const QString& news) { ui_->memoryState->setText(news); }

void ControllerPanel::showUnknownState(const QString& news) { ui_->unknownState->setText(news); }

} // namespace varda::window
