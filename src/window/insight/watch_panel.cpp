#include "window/insight/watch_panel.h"

#include "core/base/runtime_error.h"
#include "core/files/atomic_file.h"
#include "core/insight/register_names.h"
#include "core/insight/register_watch.h"
#include "ui_watch_panel.h"
#include "window/controls/counted_text.h"
#include "window/controls/events.h"
#include "window/controls/file_dialogs.h"
#include "window/controls/make_form.h"
#include "window/controls/saving.h"
#include "window/controls/table_lines.h"
#include "window/insight/history_delegate.h"
#include "window/insight/watch_model.h"
#include "window/system/file_name.h"

#include <QFileInfo>

#include <algorithm>
#include <array>
#include <utility>

namespace varda::window {
namespace {

/// What usually stands in the columns.
constexpr std::array usualTexts = {"Station ", "SR 0000.15", "a name of a register", "00000 ",
                                   "-00000 ",  "0000h ",     "0000 0000 0000 0000",  "00 min 00 s",
                                   "Changes "};

/// @param taken names of the other lines
RuntimeError badLines(const std::string& path, const std::vector<std::size_t>& lines, std::size_t taken) {
    constexpr std::size_t most = 10;
    std::string text = '"' + path + "\" has lines that name no register: ";
    for (std::size_t index = 0; index < std::min(lines.size(), most); ++index) {
        text += (index > 0 ? ", " : "") + std::to_string(lines[index]);
    }
    text += lines.size() > most ? " and others" : "";
    RuntimeError error(run_time_error::fileAccessError, text + '.');
    error.advise(std::string("A line is a register and its name, W 0100,tank level for example. ") +
                 (taken > 0 ? "The others are taken." : "No name was taken: those from before stay."));
    return error;
}

} // namespace

WatchPanel::WatchPanel(const InsightContext& context, QWidget* parent)
    : CompanionPart(parent),
      context_(context),
      ui_(makeForm<Ui::WatchPanel>(this)),
      model_(new WatchModel(context.watch, context.names, context.clock, this)) {
    ui_->watchTable->setModel(model_);
    ui_->watchTable->setItemDelegateForColumn(WatchModel::History, new HistoryDelegate(this));
    showLines(ui_->watchTable, ui_->watchTable->fontMetrics().height());
    fitColumns(ui_->watchTable, usualTexts);
    context_.events.click(ui_->clearWatch, [this] { clear(); });
    context_.events.click(ui_->loadNames, [this] { chooseNames(); });
    refresh();
}

WatchPanel::~WatchPanel() = default;

void WatchPanel::refresh() {
    model_->refresh();
    showState();
}

void WatchPanel::clear() {
    model_->clear();
    context_.watch.clear();
    refresh();
}

void WatchPanel::chooseNames() {
    const FileDialogs::Chosen load = [this](const QString& path) { loadNames(path); };
    context_.files.chooseToOpen({QStringLiteral(".csv"), QStringLiteral("Data")},
                                context_.events.guarded(load));
}

void WatchPanel::loadNames(const QString& path) {
    const std::string name = fileName(path);
    const FileText file = readRegularFile(name, RegisterNames::sizeLimit);
    if (file.problem) {
        context_.talk.tell(*file.problem);
        return;
    }
    RegisterNames names = RegisterNames::parse(file.text);
    if (!names.badLines().empty()) {
        context_.talk.tell(badLines(name, names.badLines(), names.size()));
    }
    if (names.size() == 0) {
        return; // those that are there stay
    }
    context_.names = std::move(names);
    namesFrom_ = tr("%1 from %2").arg(countedText(context_.names.size(), "name"), QFileInfo(path).fileName());
    refresh();
    emit namesChanged();
}

void WatchPanel::showState() {
    QStringList words = {countedText(context_.watch.size(), "register")};
    if (const auto leftOut = context_.watch.leftOut(); leftOut > 0) {
        words.append(tr("no room for more"));
    }
    if (!namesFrom_.isEmpty()) {
        words.append(namesFrom_);
    }
    ui_->watchState->setText(words.join(QStringLiteral(" \u2013 ")));
}

} // namespace varda::window
