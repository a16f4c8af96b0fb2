#include "window/bench/expectations_panel.h"

#include "core/base/runtime_error.h"
#include "core/files/atomic_file.h"
#include "core/files/profile_file.h"
#include "core/insight/expectation.h"
#include "ui_expectations_panel.h"
#include "window/bench/expectation_model.h"
#include "window/bench/scenario_expectations.h"
#include "window/controls/counted_text.h"
#include "window/controls/events.h"
#include "window/controls/file_dialogs.h"
#include "window/controls/make_form.h"
#include "window/controls/profile_files.h"
#include "window/controls/table_lines.h"
#include "window/controls/wrapping_row.h"
#include "window/system/file_name.h"

#include <QFileInfo>
#include <QHeaderView>

#include <array>
#include <utility>

namespace varda::window {
namespace {

/// What usually stands in the columns.
constexpr std::array usualExpected = {"Line 0",
                                      "word read, W 0000 .. W 0009",
                                      "FF FF A3 04 19 00 28 00 ..",
                                      "Limit ms ",
                                      "not understood ",
                                      "Why",
                                      "Right 0",
                                      "Wrong 0"};

FileDialogs::Kind expectationFiles() { return {QStringLiteral(".expect"), QStringLiteral("Data")}; }

} // namespace

ExpectationsPanel::ExpectationsPanel(ScenarioExpectations& expectations,
                                     std::function<std::string(int row)> lineText,
                                     const BenchContext& context, QWidget* parent)
    : CompanionPart(parent),
      context_(context),
      expectations_(expectations),
      ui_(makeForm<Ui::ExpectationsPanel>(this)),
      model_(new ExpectationModel(expectations, std::move(lineText), this)) {
    WrappingRow::replace(ui_->expectationsPanelLayout, ui_->expectationsRow);
    ui_->expectationTable->setModel(model_);
    showLines(ui_->expectationTable, fontMetrics().height());
    fitColumns(ui_->expectationTable, usualExpected);
    QHeaderView* const columns = ui_->expectationTable->horizontalHeader();
    columns->setStretchLastSection(false);
    columns->setSectionResizeMode(ExpectationModel::Why, QHeaderView::Stretch);
    context_.events.click(ui_->takeFromRun, [this] { takeFromRun(); });
    context_.events.click(ui_->loadExpectations, [this] { chooseFile(); });
    context_.events.click(ui_->saveExpectations, [this] { chooseWhereToSave(); });
    connect(&expectations, &ScenarioExpectations::newsCame, this, &ExpectationsPanel::refresh);
    connect(&expectations, &ScenarioExpectations::linesChanged, this, [this] {
        news_.clear();
        refresh();
    });
    refresh();
}

ExpectationsPanel::~ExpectationsPanel() = default;

void ExpectationsPanel::refresh() {
    model_->refresh();
    const ExpectedLines& expected = expectations_.expected();
    const bool hasLines = !expected.lines().empty();
    QStringList words;
    if (!hasLines) {
        words.append(tr("No scenario is loaded."));
    } else if (expected.right() + expected.wrong() > 0) {
        words.append(tr("%1 right, %2 wrong").arg(expected.right()).arg(expected.wrong()));
    }
    for (const QString& more : {expectations_.name(), news_}) {
        if (!more.isEmpty()) {
            words.append(more);
        }
    }
    ui_->expectationsState->setText(words.join(QStringLiteral(" \u2013 ")));
    showProblem();
    for (QPushButton* const button : {ui_->takeFromRun, ui_->loadExpectations, ui_->saveExpectations}) {
        button->setEnabled(hasLines);
    }
}

void ExpectationsPanel::showProblem() {
    const auto& problem = expectations_.problem();
    ui_->expectationsProblem->setVisible(problem.has_value());
    ui_->expectationsProblem->setText(
        problem ? tr("What is expected was not taken along. %1 %2")
                      .arg(QString::fromUtf8(problem->what()), QString::fromStdString(problem->advice()))
                : QString());
}

/// Other texts stand in the cells.
void ExpectationsPanel::showAll() {
    model_->reset();
    refresh();
}

void ExpectationsPanel::takeFromRun() {
    const std::size_t taken = expectations_.expected().takeFromRun();
    news_ = taken > 0 ? tr("taken for %1").arg(countedText(taken, "line"))
                      : tr("Run the scenario first: nothing is known of its answers.");
    showAll();
}

void ExpectationsPanel::chooseFile() {
    const FileDialogs::Chosen chosen = [this](const QString& path) { load(path); };
    context_.files.chooseToOpen(expectationFiles(), context_.events.guarded(chosen));
}

void ExpectationsPanel::load(const QString& path) {
    const ProfileFile file = ProfileFile::load(fileName(path));
    if (file.problem()) {
        context_.talk.tell(*file.problem());
        return;
    }
    if (!holdsExpectations(file, expectations_.expected().lines().size())) {
        RuntimeError error = fileError(fileName(path), "holds no expectation of these lines");
        error.advise("Choose a file with entries Expect0, Expect1 and so on of a section [Expect].");
        context_.talk.tell(error);
        return;
    }
    news_.clear();
    expectations_.take(file, QFileInfo(path).fileName());
    showAll();
}

void ExpectationsPanel::chooseWhereToSave() {
    const FileDialogs::Chosen chosen = [this](const QString& path) { save(path); };
    context_.files.chooseToSave(expectationFiles(), context_.events.guarded(chosen));
}

void ExpectationsPanel::save(const QString& path) {
    const std::string name = fileName(path);
    ProfileFile file = ProfileFile::load(name);
    expectations_.expected().store(file);
    saveOrTell(file, name, context_.talk, [this, path] {
        news_ = tr("saved");
        expectations_.setName(QFileInfo(path).fileName());
    });
}

} // namespace varda::window
