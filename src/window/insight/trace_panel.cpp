#include "window/insight/trace_panel.h"

#include "core/insight/trace_export.h"
#include "core/insight/trace_words.h"
#include "core/insight/verdict_words.h"
#include "core/protocol/hex_text.h"
#include "ui_trace_panel.h"
#include "window/controls/make_form.h"
#include "window/insight/trace_exporter.h"
#include "window/insight/trace_model.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QLocale>
#include <QMenu>
#include <QShortcut>

#include <algorithm>

namespace varda::window {
namespace {

QString counted(std::uint64_t lines) {
    return lines == 1 ? TracePanel::tr("1 line")
                      : TracePanel::tr("%1 lines").arg(QLocale::c().toString(static_cast<qulonglong>(lines)));
}

QString filesName(const QString& path) { return path.section(QLatin1Char('/'), -1); }

} // namespace

TracePanel::TracePanel(const InsightContext& context, QWidget* parent)
    : QWidget(parent),
      context_(context),
      ui_(makeForm<Ui::TracePanel>(this)),
      model_(new TraceModel(context.trace, context.names, this)) {
    setFocusProxy(ui_->traceTable);
    ui_->traceTable->showTrace(model_);
    ui_->explanation->useNames(context.names);
    ui_->traceAndExplanation->setStretchFactor(0, 3);
    ui_->traceAndExplanation->setStretchFactor(1, 2);
    bindSearch();
    bindButtons();
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
    auto* const exporter = new TraceExporter(context_, this);
    auto* const menu = new QMenu(ui_->exportTrace);
    QMenu* const selection = menu->addMenu(tr("Selected lines"));
    exporter->addEntries(selection, QStringLiteral("exportSelected"), [this] { return selectedLines(); });
    QMenu* const all = menu->addMenu(tr("All lines shown"));
    exporter->addEntries(all, QStringLiteral("exportAll"), [this] { return model_->lines(); });
    connect(menu, &QMenu::aboutToShow, this, [this, selection, all] {
        selection->setEnabled(!selectedLines().empty());
        all->setEnabled(model_->rowCount() > 0);
    });
    connect(exporter, &TraceExporter::saved, this, [this](const QString& path, int lines) {
        tell(tr("%1 written to %2").arg(counted(static_cast<std::uint64_t>(lines)), filesName(path)));
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
    add("copyHex", tr("Copy as hex"), QKeySequence::Copy, [this] { copyHex(); });
    add("copyText", tr("Copy as text"), QKeyCombination(Qt::ControlModifier | Qt::ShiftModifier, Qt::Key_C),
        [this] { copyText(); });
    add("markLine", tr("Mark, or take the mark away"), QKeyCombination(Qt::ControlModifier, Qt::Key_M),
        [this] { mark(); });
    ui_->traceTable->setContextMenuPolicy(Qt::ActionsContextMenu);
}

/// The line that was chosen stays so where the filter lets it pass.
void TracePanel::filter() {
    const auto chosen = ui_->traceTable->chosenRow();
    const auto number = chosen ? std::optional(model_->line(*chosen)) : std::nullopt;
    const bool isFollowing = ui_->traceTable->isFollowing();
    model_->setFilter(readTraceFilter(ui_->traceFilter->text().toStdString()));
    const auto row = number ? model_->rowOf(*number) : std::nullopt;
    if (row && !isFollowing) {
        ui_->traceTable->choose(*row);
    } else {
        ui_->traceTable->follow(isFollowing);
    }
    tell({});
}

/// From the line that is chosen on, or from the end that lies behind; past the other end it goes on from
/// there.
void TracePanel::find(bool isForward) {
    if (ui_->traceFind->text().trimmed().isEmpty()) {
        ui_->traceFind->setFocus(Qt::ShortcutFocusReason);
        return;
    }
    const TraceFilter wanted = readTraceFilter(ui_->traceFind->text().toStdString());
    const auto chosen = ui_->traceTable->chosenRow();
    TraceSearch search =
        model_->search(wanted, chosen ? std::optional(model_->line(*chosen)) : std::nullopt, isForward);
    search.look();
    const auto row = search.found() ? model_->rowOf(*search.found()) : std::nullopt;
    if (row) {
        ui_->traceTable->choose(*row);
    }
    tell(!row ? tr("No such line")
         : search.isRound()
             ? (isForward ? tr("Went on from the first line") : tr("Went on from the last line"))
             : QString());
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
    const std::vector<Trace::Number> lines = selectedLines();
    const bool allMarked = std::ranges::all_of(lines, [this](Trace::Number number) {
        const TraceLine* const line = context_.trace.find(number);
        return line == nullptr || line->isMarked;
    });
    for (const Trace::Number number : lines) {
        model_->mark(number, !allMarked);
    }
    if (lines.empty()) {
        tell(tr("Choose lines to mark them"));
    }
}

std::vector<Trace::Number> TracePanel::selectedLines() const {
    std::vector<Trace::Number> lines;
    for (const int row : ui_->traceTable->selectedRows()) {
        lines.push_back(model_->line(row));
    }
    return lines;
}

void TracePanel::copyHex() const {
    QStringList texts;
    for (const Trace::Number number : selectedLines()) {
        const TraceLine* const line = context_.trace.find(number);
        if (line != nullptr && !line->bytes.empty()) {
            texts.append(QString::fromStdString(hexSpaced(line->bytes)));
        }
    }
    QGuiApplication::clipboard()->setText(texts.join(QLatin1Char('\n')));
}

void TracePanel::copyText() const {
    std::string text;
    exportTrace(context_.trace, selectedLines(), TraceForm::Text, context_.names,
                [&text](std::string_view part) { text += part; });
    QGuiApplication::clipboard()->setText(QString::fromStdString(text));
}

void TracePanel::takeNews() {
    ui_->traceTable->takeNews();
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
         .bytes = readBytes(*line),
         .size = readSize(*line),
         .request = line->request ? *line->request : Bytes()});
    offerPartner();
}

void TracePanel::explain(const Explained& explained, std::size_t caret) {
    explained_.reset();
    offerPartner();
    ui_->explanation->explain(explained);
    ui_->explanation->chooseByte(static_cast<int>(caret));
}

void TracePanel::offerPartner() {
    const TraceLine* const line = explained_ ? context_.trace.find(*explained_) : nullptr;
    const bool isThere = line != nullptr && line->partner && model_->rowOf(*line->partner) &&
                         context_.trace.find(*line->partner);
    ui_->explanation->offerPartner(!isThere                       ? QString()
                                   : *line->partner > *explained_ ? tr("Go to its answer")
                                                                  : tr("Go to its request"));
}

void TracePanel::goToPartner() {
    const TraceLine* const line = explained_ ? context_.trace.find(*explained_) : nullptr;
    const auto row = line != nullptr && line->partner ? model_->rowOf(*line->partner) : std::nullopt;
    if (row) {
        ui_->traceTable->choose(*row);
    }
}

void TracePanel::tell(const QString& news) {
    news_ = news;
    showState();
}

void TracePanel::showState() {
    const std::uint64_t shown = static_cast<std::uint64_t>(model_->rowCount());
    const std::uint64_t kept = context_.trace.size();
    QStringList words = {shown == kept || model_->isHeld() ? counted(shown)
                                                           : tr("%1 of %2").arg(shown).arg(counted(kept))};
    if (model_->isHeld()) {
        words.append(tr("paused"));
    }
    if (!news_.isEmpty()) {
        words.append(news_);
    }
    ui_->traceState->setText(words.join(QStringLiteral(" \u2013 ")));
}

} // namespace varda::window
