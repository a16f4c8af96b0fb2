#include "window/insight/trace_exporter.h"

#include "window/controls/counted_text.h"
#include "window/controls/events.h"
#include "window/controls/file_dialogs.h"
#include "window/controls/saving.h"
#include "window/system/file_name.h"

#include <QMenu>

#include <array>
#include <utility>

namespace varda::window {
namespace {

struct ExportForm {
    TraceForm form;
    const char* name;
    const char* caption;
    const char* extension;
};

constexpr std::array forms = {
    ExportForm{TraceForm::Text, "Text", QT_TRANSLATE_NOOP("TraceExporter", "Text .."), ".txt"},
    ExportForm{TraceForm::Csv, "Csv", QT_TRANSLATE_NOOP("TraceExporter", "CSV, for a spreadsheet .."),
               ".csv"},
    ExportForm{TraceForm::JsonLines, "Json", QT_TRANSLATE_NOOP("TraceExporter", "JSON lines .."), ".jsonl"},
    ExportForm{TraceForm::Pcapng, "Pcapng", QT_TRANSLATE_NOOP("TraceExporter", "Capture for Wireshark .."),
               ".pcapng"}};

} // namespace

void TraceExporter::addEntries(QMenu* menu, const QString& namePrefix, const Lines& lines) {
    for (const ExportForm& form : forms) {
        const QString extension = QLatin1String(form.extension);
        const auto choose = [this, lines, kind = form.form, extension] {
            chooseFile(lines(), kind, extension);
        };
        QAction* const entry =
            menu->addAction(tr(form.caption), this, [this, choose] { context_.events.guard(choose); });
        entry->setObjectName(namePrefix + QLatin1String(form.name));
    }
}

/// The lines are those of the moment in which they were asked for, however long the dialog is open.
void TraceExporter::chooseFile(const std::vector<Trace::Number>& lines, TraceForm form,
                               const QString& extension) {
    const FileDialogs::Chosen chosen = [this, lines, form](const QString& path) { write(path, lines, form); };
    context_.files.chooseToSave({.extension = extension,
                                 .folder = QStringLiteral("Log"),
                                 .title = tr("Export %1").arg(countedText(lines.size(), "line"))},
                                context_.events.guarded(chosen));
}

void TraceExporter::write(const QString& path, const std::vector<Trace::Number>& lines, TraceForm form) {
    export_.start(
        context_.trace, lines, form, context_.names,
        [this, path](std::string content, std::size_t written) { save(path, std::move(content), written); });
}

void TraceExporter::save(const QString& path, std::string content, std::size_t lines) {
    const auto written = static_cast<qulonglong>(lines);
    saveTextOrTell(fileName(path), std::move(content), context_.talk,
                   [this, path, written] { emit saved(path, written); });
    emit wentOn();
}

void TraceExporter::cancel() {
    export_.cancel();
    emit wentOn();
}

} // namespace varda::window
