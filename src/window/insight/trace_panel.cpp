#include "window/insight/trace_panel.h"

#include "core/insight/trace_words.h"
#include "core/insight/verdict_words.h"
#include "ui_trace_panel.h"
#include "window/controls/counted_text.h"
#include "window/controls/make_form.h"
#include "window/insight/recording_exporter.h"
#include "window/insight/trace_exporter.h"
#include "window/insight/trace_model.h"

#include <QAction>
#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMenu>
#include <QShortcut>

#include <algorithm>

namespace varda::window {
TracePanel::TracePanel(const InsightContext& context, QWidget* parent)
    : QWidget(parent),
      context_(context),
      ui_(makeForm<Ui::TracePanel>(this)),
      model_(new TraceModel(context.trace, context.names, this)),
      exporter_(new TraceExporter(context, this)),
      recordings_(new RecordingExporter(context, this)),
      filling_(context.clock, [this] { showState(); }),
      searching_(context.clock, [this] { showState(); }),
      copying_(context.clock, [this] { showState(); }) {
    setFocusProxy(ui_->traceTable);
    ui_->traceTable->showTrace(model_);
    ui_->explanation->useNames(context.names);
    ui_->traceAndExplanation->setStretchFactor(0, 3);
    ui_->traceAndExplanation->setStretchFactor(1, 2);
    bindSearch();
    bindButtons();
    bindExport();
    addTableActions();
    connect(ui_->traceTable, &TraceTable::lineChosen, this,
            [this](int row) { explainLine(model_->line(row)); });
    connect(ui_->traceTable, &TraceTable::clicked, this, // also where the line was chosen before
            [this](const QModelIndex& index) { explainLine(model_->line(index.row())); });
    connect(ui_->explanation, &ExplanationPane::partnerWanted, this, &TracePanel::goToPartner);
    takeNews();
}

TracePanel::~TracePanel() = default;

void TracePanel::bindSearch() {
    connect(ui_->traceFilter, &QLineEdit::textChanged, this, &TracePanel::filter);
    connect(ui_->traceFind, &QLineEdit::returnPressed, this, [this] { find(true); });
    connect(ui_->findNext, &QPushButton::clicked, this, [this] { find(true); });
    connect(ui_->findPrevious, &QPushButton::clicked, this, [this] { find(false); });
    const auto add = [this](const QKeySequence& keys, auto&& press) {
        connect(new QShortcut(keys, this), &QShortcut::activated, this, press);
    };
    add(Qt::Key_F3, [this] { find(true); });
    add(QKeyCombination(Qt::ShiftModifier, Qt::Key_F3), [this] { find(false); });
    add(QKeySequence::Find, [this] {
        ui_->traceFind->setFocus(Qt::ShortcutFocusReason);
        ui_->traceFind->selectAll();
    });
}

void TracePanel::bindButtons() {
    connect(ui_->followTrace, &QCheckBox::toggled, ui_->traceTable, &TraceTable::follow);
    connect(ui_->traceTable, &TraceTable::followingChanged, ui_->followTrace, &QCheckBox::setChecked);
    connect(ui_->pauseTrace, &QCheckBox::toggled, this, &TracePanel::pause);
    connect(ui_->markLines, &QPushButton::clicked, this, &TracePanel::mark);
    connect(ui_->clearTrace, &QPushButton::clicked, this, &TracePanel::clear);
    connect(ui_->cancelWork, &QPushButton::clicked, this, &TracePanel::cancelWork);
}

/// The menu says how many lines an entry takes along, and which.
void TracePanel::bindExport() {
    auto* const menu = new QMenu(ui_->exportTrace);
    QMenu* const selection = menu->addMenu(QString());
    QMenu* const all = menu->addMenu(QString());
    const auto add = [this](QMenu* entries, const QString& prefix, const TraceExporter::Lines& lines) {
        exporter_->addEntries(entries, prefix, lines);
        recordings_->addEntries(entries, prefix, lines);
    };
    add(selection, QStringLiteral("exportSelected"), [this] { return ui_->traceTable->selectedLines(); });
    add(all, QStringLiteral("exportAll"), [this] { return model_->lines(); });
    connect(recordings_, &RecordingExporter::told, this, &TracePanel::tell);
    connect(menu, &QMenu::aboutToShow, this, [this, selection, all] {
        const int selected = ui_->traceTable->selectedCount();
        selection->setTitle(tr("Selected: %1").arg(countedText(static_cast<std::size_t>(selected), "line")));
        selection->setEnabled(selected > 0);
        all->setTitle(
            tr("%1: %2").arg(model_->filter() == TraceFilter() ? tr("All") : tr("Filtered"), shownLines()));
        all->setEnabled(model_->rowCount() > 0 && !filling_.isRunning());
    });
    connect(exporter_, &TraceExporter::wentOn, this, &TracePanel::showState);
    connect(exporter_, &TraceExporter::saved, this, [this](const QString& path, qulonglong lines) {
        tell(tr("%1 written to %2").arg(countedText(lines, "line"), QFileInfo(path).fileName()));
    });
    ui_->exportTrace->setMenu(menu);
}

void TracePanel::addTableActions() {
    const auto add = [this](const char* name, const QString& caption, const QKeySequence& keys, auto&& run) {
        auto* const action = new QAction(caption, ui_->traceTable);
        action->setObjectName(QLatin1String(name));
        action->setShortcut(keys);
        action->setShortcutContext(Qt::WidgetShortcut);
        connect(action, &QAction::triggered, this, run);
        ui_->traceTable->addAction(action);
    };
    add("copyHex", tr("Copy as hex"), QKeySequence::Copy, [this] { copy(TraceForm::Hex); });
    add("copyText", tr("Copy as text"), QKeyCombination(Qt::ControlModifier | Qt::ShiftModifier, Qt::Key_C),
        [this] { copy(TraceForm::Text); });
    add("markLine", tr("Mark, or take the mark away"), QKeyCombination(Qt::ControlModifier, Qt::Key_M),
        [this] { mark(); });
    ui_->traceTable->setContextMenuPolicy(Qt::ActionsContextMenu);
}

void TracePanel::filter() {
    searching_.cancel();
    ui_->traceTable->setFilter(readTraceFilter(ui_->traceFilter->text().toStdString()));
    news_.clear();
    takeNews();
}

/// With the lines that were not looked at yet; what is under way goes on by itself.
void TracePanel::fillOn() {
    if (model_->left() > 0 && !filling_.isRunning()) {
        filling_.start([this] { return ui_->traceTable->fill(); },
                       [this] {
                           offerPartner();
                           showState();
                       });
    }
}

/// From the line that is chosen on, or from the end that lies behind; past the other end it goes on from
/// there. It waits for a filter that is under way, which has not shown every line yet that it will.
void TracePanel::find(bool isForward) {
    if (ui_->traceFind->text().trimmed().isEmpty()) {
        ui_->traceFind->setFocus(Qt::ShortcutFocusReason);
        return;
    }
    const TraceFilter wanted = readTraceFilter(ui_->traceFind->text().toStdString());
    const auto search =
        std::make_shared<TraceSearch>(model_->search(wanted, ui_->traceTable->chosenLine(), isForward));
    searching_.start([this, search] { return filling_.isRunning() || search->look(SlicedWork::slice); },
                     [this, search, isForward] { showFound(*search, isForward); });
}

void TracePanel::showFound(const TraceSearch& search, bool isForward) {
    const auto row = search.found() ? model_->rowOf(*search.found()) : std::nullopt;
    if (row) {
        ui_->traceTable->choose(*row);
    }
    tell(!row                ? tr("No such line")
         : !search.isRound() ? QString()
         : isForward         ? tr("Went on from the first line")
                             : tr("Went on from the last line"));
}

/// What was asked for, beside the lines that are filtered.
bool TracePanel::hasErrand() const {
    return searching_.isRunning() || copying_.percent() || exporter_->percent();
}

/// What was asked for last goes first, and leaves the filter alone. No half of a filter is shown: all lines
/// are again.
void TracePanel::cancelWork() {
    if (hasErrand()) {
        searching_.cancel();
        copying_.cancel();
        exporter_->cancel();
    } else {
        ui_->traceFilter->clear();
    }
    tell(tr("Cancelled"));
}

void TracePanel::pause(bool isHeld) {
    model_->setHeld(isHeld);
    takeNews();
}

void TracePanel::clear() {
    ui_->pauseTrace->setChecked(false);
    context_.trace.clear();
    takeNews();
    tell({});
}

/// Takes the marks away where all of the lines have one.
void TracePanel::mark() {
    const std::vector<Trace::Number> lines = ui_->traceTable->selectedLines();
    const bool allMarked = std::ranges::all_of(lines, [this](Trace::Number number) {
        const TraceLine* const line = context_.trace.find(number);
        return line == nullptr || line->isMarked;
    });
    model_->mark(lines, !allMarked);
    if (lines.empty()) {
        tell(tr("Choose lines to mark them"));
    }
}

/// The clipboard has the lines at once, or stays as it was.
void TracePanel::copy(TraceForm form) {
    const std::vector<Trace::Number> lines = ui_->traceTable->selectedLines();
    if (lines.empty()) {
        tell(tr("Choose lines to copy them"));
        return;
    }
    copying_.start(context_.trace, lines, form, context_.names,
                   [this, form](std::string text, std::size_t /*lines*/) {
                       if (text.empty()) {
                           tell(tr("These lines have no bytes"));
                           return;
                       }
                       if (form == TraceForm::Hex) {
                           text.pop_back(); // one line is pasted as bytes alone
                       }
                       QGuiApplication::clipboard()->setText(QString::fromStdString(text));
                       showState();
                   });
}

void TracePanel::takeNews() {
    ui_->traceTable->takeNews();
    fillOn();
    refreshExplanation();
    showState();
}

void TracePanel::showNames() {
    model_->showNames();
    ui_->explanation->showNames();
    refreshExplanation();
}

void TracePanel::explainLine(Trace::Number number) {
    explained_ = number;
    refreshExplanation();
}

/// What became of a line may turn out later; a line that has gone stays explained as it was.
void TracePanel::refreshExplanation() {
    offerPartner();
    const TraceLine* const line = explained_ ? context_.trace.find(*explained_) : nullptr;
    if (line == nullptr) {
        return;
    }
    const auto cell = [this](TraceColumn column) {
        return QString::fromStdString(cellInWords(context_.trace, *explained_, column, context_.names));
    };
    const QString flaw = context_.trace.isWrong(*explained_) ? QStringLiteral("! ") : QString();
    ui_->explanation->explain(
        {.title =
             QStringList{cell(TraceColumn::Time), cell(TraceColumn::Direction), cell(TraceColumn::Kind)}.join(
                 QStringLiteral("   ")),
         .sentence = flaw + QString::fromStdString(verdictInWords(context_.trace, *explained_)),
         .bytes = explainedBytes(*line),
         .size = explainedSize(*line),
         .request = line->request ? *line->request : Bytes()});
}

void TracePanel::explain(const Explained& explained, std::size_t caret) {
    explained_.reset();
    offerPartner();
    ui_->explanation->explain(explained);
    ui_->explanation->chooseByte(static_cast<int>(caret));
}

/// Where the line stands that belongs to the explained one; nothing where the filter keeps it back.
std::optional<int> TracePanel::partnerRow() const {
    const TraceLine* const line = explained_ ? context_.trace.find(*explained_) : nullptr;
    const bool isKept = line != nullptr && line->partner && context_.trace.find(*line->partner) != nullptr;
    return isKept ? model_->rowOf(*line->partner) : std::nullopt;
}

void TracePanel::offerPartner() {
    const auto row = partnerRow();
    ui_->explanation->offerPartner(!row                               ? QString()
                                   : model_->line(*row) > *explained_ ? tr("Go to its answer")
                                                                      : tr("Go to its request"));
}

void TracePanel::goToPartner() {
    if (const auto row = partnerRow()) {
        ui_->traceTable->choose(*row);
    }
}

void TracePanel::tell(const QString& news) {
    news_ = news;
    showState();
}

void TracePanel::showState() {
    QStringList words = {shownLines()};
    if (model_->isHeld()) {
        words.append(tr("paused"));
    }
    for (const QString& more : {workInWords(), news_}) {
        if (!more.isEmpty()) {
            words.append(more);
        }
    }
    ui_->traceState->setText(words.join(QStringLiteral(" \u2013 ")));
    ui_->exportTrace->setEnabled(!exporter_->percent()); // a second one would take its place
    ui_->cancelWork->setVisible(hasErrand() || (filling_.isRunning() && !ui_->traceFilter->text().isEmpty()));
}

QString TracePanel::shownLines() const {
    const auto shown = static_cast<std::size_t>(model_->rowCount());
    const std::size_t kept = context_.trace.size();
    return shown == kept || model_->filter() == TraceFilter()
               ? countedText(shown, "line")
               : tr("%1 of %2").arg(shown).arg(countedText(kept, "line"));
}

/// What is under way, of which the window shows how far it has got.
QString TracePanel::workInWords() const {
    if (const auto percent = exporter_->percent()) {
        return tr("writing, %1 %").arg(*percent);
    }
    if (const auto percent = copying_.percent()) {
        return tr("copying, %1 %").arg(*percent);
    }
    if (filling_.isRunning()) {
        constexpr std::size_t whole = 100;
        return tr("looking through the lines, %1 %")
            .arg(whole - model_->left() * whole / std::max<std::size_t>(context_.trace.size(), 1));
    }
    return searching_.isRunning() ? tr("looking for the line") : QString();
}

} // namespace varda::window
