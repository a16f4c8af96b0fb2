#include "window/insight/statistics_panel.h"

#include "core/insight/link_statistics.h"
#include "ui_statistics_panel.h"
#include "window/controls/events.h"
#include "window/controls/file_dialogs.h"
#include "window/controls/make_form.h"
#include "window/controls/saving.h"
#include "window/controls/table_lines.h"
#include "window/system/file_name.h"

#include <QHeaderView>

#include <utility>
#include <vector>

namespace varda::window {
namespace {

struct Column {
    QString name;
    QString tip;
};

QString milliseconds(double time) { return QString::number(time, 'f', 1); }

std::vector<Column> columns() {
    const auto tr = [](const char* text) { return StatisticsPanel::tr(text); };
    return {
        {tr("Request"), tr("Kind of the request")},
        {tr("Sent"), tr("Requests that went to the port")},
        {tr("Answered"), tr("Answers that were taken, those with a wrong check among them")},
        {tr("Check wrong"), tr("Answers that were taken although their check is wrong")},
        {tr("Wrong length"), tr("Answers that were dropped for their length")},
        {tr("Silent"), tr("Requests without an answer")},
        {tr("Overtaken"), tr("Requests after which the next one went out before an answer came")},
        {tr("Not sent"), tr("Requests that the port did not take")},
        {tr("Response min"), tr("From the request to the last byte of its answer: the shortest time, ms")},
        {tr("median"), tr("Half of the responses took no longer, ms")},
        {tr("99 %"), tr("Of a hundred responses 99 took no longer, ms")},
        {tr("max"), tr("The longest response, ms")},
        {tr("On the wire"),
         tr("What of a response the bytes took on the line, at the settings of then: median, ms")},
        {tr("Period"), tr("From one request of the kind to the next one: median, ms")},
        {tr("Wanted"), tr("The period that was in the field when the last of them was sent, ms")}};
}

/// The cells of a row behind its name.
QStringList cellsOf(const LinkStatistics::Row& row) {
    QStringList cells;
    for (const std::size_t count :
         {row.sent, row.answered, row.wrongCheck, row.wrongLength, row.silent, row.overtaken, row.notSent}) {
        cells.append(QString::number(static_cast<qulonglong>(count)));
    }
    const auto add = [&cells](const std::optional<Spread>& spread, double Spread::*which) {
        cells.append(spread ? milliseconds((*spread).*which) : QString());
    };
    for (double Spread::*const which :
         {&Spread::least, &Spread::median, &Spread::percentile99, &Spread::most}) {
        add(row.response, which);
    }
    add(row.onWire, &Spread::median);
    add(row.period, &Spread::median);
    cells.append(row.wantedPeriod ? QString::number(*row.wantedPeriod) : QString());
    return cells;
}

} // namespace

StatisticsPanel::StatisticsPanel(const InsightContext& context, QWidget* parent)
    : CompanionPart(parent), context_(context), ui_(makeForm<Ui::StatisticsPanel>(this)) {
    const std::vector<Column> shown = columns();
    ui_->statisticsTable->setColumnCount(static_cast<int>(shown.size()));
    for (int column = 0; column < ui_->statisticsTable->columnCount(); ++column) {
        auto* const heading = new QTableWidgetItem(shown.at(static_cast<std::size_t>(column)).name);
        heading->setToolTip(shown.at(static_cast<std::size_t>(column)).tip);
        ui_->statisticsTable->setHorizontalHeaderItem(column, heading);
    }
    ui_->statisticsTable->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    showLines(ui_->statisticsTable, fontMetrics().height());
    ui_->responsePlot->plot(context.statistics, context.clock);
    context_.events.click(ui_->resetStatistics, [this] { reset(); });
    context_.events.click(ui_->saveStatistics, [this] { saveCsv(); });
    refresh();
}

StatisticsPanel::~StatisticsPanel() = default;

/// Percentiles take time to work out, and the plot moves on even where nothing comes.
void StatisticsPanel::refresh() {
    if (shownChanges_ != context_.statistics.changes()) {
        shownChanges_ = context_.statistics.changes();
        showRows();
    }
    ui_->responsePlot->refresh();
}

void StatisticsPanel::showRows() {
    const auto rows = context_.statistics.rows();
    ui_->statisticsTable->setRowCount(static_cast<int>(rows.size()));
    int row = 0;
    for (const LinkStatistics::Row& shown : rows) {
        setCell(row, 0, QString::fromStdString(shown.kind));
        int column = 1;
        for (const QString& cell : cellsOf(shown)) {
            setCell(row, column++, cell);
        }
        ++row;
    }
    ui_->saveStatistics->setEnabled(!rows.empty());
    ui_->resetStatistics->setEnabled(!rows.empty());
}

void StatisticsPanel::setCell(int row, int column, const QString& text) {
    QTableWidgetItem* item = ui_->statisticsTable->item(row, column);
    if (item == nullptr) {
        item = new QTableWidgetItem;
        item->setTextAlignment((column == 0 ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
        ui_->statisticsTable->setItem(row, column, item);
    }
    item->setText(text);
}

void StatisticsPanel::reset() {
    context_.statistics.reset();
    refresh();
}

void StatisticsPanel::saveCsv() {
    const FileDialogs::Chosen save = [this](const QString& path) {
        saveTextOrTell(fileName(path), context_.statistics.csv(), context_.talk, [] {});
    };
    context_.files.chooseToSave({QStringLiteral(".csv"), QStringLiteral("Log")},
                                context_.events.guarded(save));
}

} // namespace varda::window
