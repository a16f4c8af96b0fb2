#include "window/insight/trace_exporter.h"

#include "core/base/scope_exit.h"
#include "window/controls/file_dialogs.h"
#include "window/controls/saving.h"
#include "window/system/file_name.h"

#include <QGuiApplication>
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

const char* extensionOf(TraceForm form) { return forms.at(static_cast<std::size_t>(form)).extension; }

} // namespace

void TraceExporter::addEntries(QMenu* menu, const QString& namePrefix, const Lines& lines) {
    for (const ExportForm& form : forms) {
        QAction* const entry = menu->addAction(
            tr(form.caption), this, [this, lines, kind = form.form] { chooseFile(lines(), kind); });
        entry->setObjectName(namePrefix + QLatin1String(form.name));
    }
}

/// The lines are those of the moment in which they were asked for, however long the dialog is open.
void TraceExporter::chooseFile(const std::vector<Trace::Number>& lines, TraceForm form) {
    const FileDialogs::Kind kind = {QLatin1String(extensionOf(form)), QStringLiteral("Log")};
    context_.files.chooseToSave(kind, [this, lines, form](const QString& path) { save(path, lines, form); });
}

void TraceExporter::save(const QString& path, const std::vector<Trace::Number>& lines, TraceForm form) {
    std::string content;
    {
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
        const ScopeExit restored([] { QGuiApplication::restoreOverrideCursor(); });
        exportTrace(context_.trace, lines, form, context_.names,
                    [&content](std::string_view part) { content += part; });
    }
    saveTextOrTell(fileName(path), std::move(content), context_.talk,
                   [this, path, count = static_cast<int>(lines.size())] { emit saved(path, count); });
}

} // namespace varda::window
