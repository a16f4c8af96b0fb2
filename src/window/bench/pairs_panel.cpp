#include "window/bench/pairs_panel.h"

#include "core/base/runtime_error.h"
#include "core/files/atomic_file.h"
#include "core/files/profile_file.h"
#include "core/insight/pair_lint.h"
#include "core/pairs/packet_file.h"
#include "core/pairs/packet_table.h"
#include "core/runs/pair_hits.h"
#include "ui_pairs_panel.h"
#include "window/bench/finding_model.h"
#include "window/bench/hit_model.h"
#include "window/controls/counted_text.h"
#include "window/controls/events.h"
#include "window/controls/file_dialogs.h"
#include "window/controls/make_form.h"
#include "window/controls/saving.h"
#include "window/controls/table_lines.h"
#include "window/controls/wrapping_row.h"
#include "window/system/file_name.h"

#include <QFileInfo>

#include <array>
#include <utility>

namespace varda::window {
namespace {

/// What usually stands in the columns.
constexpr std::array usualHits = {"Pair 0", "Hits 00", "word read, W 0000 .. W 0009", "FFFF230300020001FFFF"};
constexpr std::array usualFindings = {"Pair 0",
                                      "The check of its request is 0000h, and has to be 0000h now."};

FileDialogs::Kind pairFiles() { return {QStringLiteral(".ini"), QStringLiteral("Data")}; }

} // namespace

PairsPanel::PairsPanel(PreparedPairs pairs, const BenchContext& context, QWidget* parent)
    : CompanionPart(parent),
      pairs_(std::move(pairs)),
      context_(context),
      ui_(makeForm<Ui::PairsPanel>(this)),
      hits_(new HitModel(pairs_.table, pairs_.hits, this)),
      findings_(new FindingModel(this)) {
    WrappingRow::replace(ui_->pairsPanelLayout, ui_->pairsRow);
    ui_->hitTable->setModel(hits_);
    ui_->findingTable->setModel(findings_);
    for (QTableView* const table : {ui_->hitTable, ui_->findingTable}) {
        showLines(table, fontMetrics().height());
    }
    fitColumns(ui_->hitTable, usualHits);
    fitColumns(ui_->findingTable, usualFindings);
    bind();
    refresh();
}

PairsPanel::~PairsPanel() = default;

void PairsPanel::bind() {
    Events& events = context_.events;
    events.click(ui_->checkPairs, [this] { check(); });
    events.click(ui_->checkPairFile, [this] { chooseFile(); });
    events.click(ui_->clearHits, [this] {
        pairs_.hits.clear();
        refresh();
    });
    const auto go = [this] { context_.events.guard([this] { goToPair(); }); };
    onChosenLine(ui_->findingTable, go);
}

void PairsPanel::refresh() {
    hits_->refresh();
    ui_->checkPairs->setEnabled(hits_->rowCount() > 0);
    dropStaleFindings();
}

/// What was found has the number of its pair, which may be another one's by now.
void PairsPanel::dropStaleFindings() {
    const bool areStale = checked_ && *checked_ != pairTexts();
    if (areStale) {
        checked_.reset();
        findings_->show({});
        ui_->pairsState->setText(tr("The pairs have changed: check them again."));
    }
}

PairsPanel::Texts PairsPanel::pairTexts() const { return {pairs_.table.requests(), pairs_.table.answers()}; }

void PairsPanel::check() {
    checked_ = pairTexts();
    showFindings(pairs_.table, tr("the pairs that are loaded"));
}

void PairsPanel::showFindings(const PacketTable& table, const QString& name) {
    findings_->show(lintPairs(table));
    const auto found = findings_->findings().size();
    ui_->pairsState->setText(tr("%1 in %2, %3")
                                 .arg(found == 0 ? tr("Nothing wrong") : countedText(found, "finding"), name,
                                      countedText(table.requests().size(), "pair")));
}

void PairsPanel::chooseFile() {
    const FileDialogs::Chosen chosen = [this](const QString& path) { checkFile(path); };
    context_.files.chooseToOpen(pairFiles(), context_.events.guarded(chosen));
}

void PairsPanel::checkFile(const QString& path) {
    const ProfileFile file = ProfileFile::load(fileName(path));
    if (file.problem()) {
        context_.talk.tell(*file.problem());
        return;
    }
    PacketTable table;
    const PacketLoad load = loadPackets(table, file);
    if (table.requests().empty() || load == PacketLoad::NoTotal) {
        context_.talk.tell(fileError(fileName(path), "holds no prepared pairs."));
        return;
    }
    checked_.reset();
    showFindings(table, QFileInfo(path).fileName());
}

void PairsPanel::goToPair() {
    dropStaleFindings();
    const auto row = static_cast<std::size_t>(ui_->findingTable->currentIndex().row());
    if (!checked_ || !ui_->findingTable->currentIndex().isValid() || row >= findings_->findings().size()) {
        return;
    }
    const std::size_t pair = findings_->findings()[row].pair;
    if (pair < pairs_.table.requests().size()) {
        ui_->hitTable->setCurrentIndex(hits_->index(static_cast<int>(pair), 0));
        pairs_.show(pair);
    }
}

} // namespace varda::window
