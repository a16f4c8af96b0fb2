#include "window/insight/recording_exporter.h"

#include "core/files/profile_file.h"
#include "core/insight/taken_expectations.h"
#include "core/pairs/packet_file.h"
#include "core/pairs/packet_table.h"
#include "core/recordings/recording_files.h"
#include "core/runs/scenario_file.h"
#include "window/controls/counted_text.h"
#include "window/controls/events.h"
#include "window/controls/file_dialogs.h"
#include "window/controls/profile_files.h"
#include "window/system/file_name.h"

#include <QFileInfo>
#include <QMenu>

#include <array>
#include <utility>

namespace varda::window {
namespace {

QString storeAsScenario(const Recording& recording, ProfileFile& file) {
    const std::vector<std::string> lines = scenarioOf(recording);
    storeScenario(lines, file);
    return countedText(lines.size(), "request");
}

QString storeAsExpectations(const Recording& recording, ProfileFile& file) {
    const std::vector<std::string> texts = expectationsOf(recording);
    storeExpectations(texts, file);
    return countedText(texts.size(), "expectation");
}

QString storeAsPairs(const Recording& recording, ProfileFile& file) {
    RecordedPairs pairs = pairsOf(recording);
    PacketTable table;
    table.replace(std::move(pairs.requests), std::move(pairs.answers));
    storePackets(table, file);
    QString news = countedText(table.requests().size(), "pair");
    if (pairs.unanswered > 0) {
        news += RecordingExporter::tr(", %1 without an answer left out")
                    .arg(countedText(pairs.unanswered, "request"));
    }
    if (pairs.changing > 0) {
        news += RecordingExporter::tr(", %1 answered otherwise later").arg(pairs.changing);
    }
    return news;
}

} // namespace

void RecordingExporter::addEntries(QMenu* menu, const QString& namePrefix, const Lines& lines) {
    static constexpr std::array forms = {
        Form{"Scenario", QT_TR_NOOP("Scenario of the requests .."), ".scn", storeAsScenario},
        Form{"Expectations", QT_TR_NOOP("Expectations of that scenario .."), ".expect", storeAsExpectations},
        Form{"Pairs", QT_TR_NOOP("Prepared pairs .."), ".ini", storeAsPairs}};
    menu->addSeparator();
    for (const Form& form : forms) {
        const auto choose = [this, lines, &form] { chooseFile(lines(), form); };
        QAction* const entry =
            menu->addAction(tr(form.caption), this, [this, choose] { context_.events.guard(choose); });
        entry->setObjectName(namePrefix + QLatin1String(form.name));
    }
}

/// The lines are those of the moment in which they were asked for, however long the dialog is open.
void RecordingExporter::chooseFile(const std::vector<Trace::Number>& lines, const Form& form) {
    const Recording recording = recordingOf(context_.trace, lines);
    if (exchangesOf(recording).empty()) {
        emit told(tr("No request is among these lines"));
        return;
    }
    const FileDialogs::Chosen chosen = [this, recording, store = form.store](const QString& path) {
        save(path, recording, store);
    };
    context_.files.chooseToSave(
        {.extension = QLatin1String(form.extension), .folder = QStringLiteral("Data")},
        context_.events.guarded(chosen));
}

void RecordingExporter::save(const QString& path, const Recording& recording, Store store) {
    const std::string name = fileName(path);
    ProfileFile file = ProfileFile::load(name);
    const QString stored = store(recording, file);
    saveOrTell(file, name, context_.talk, [this, path, stored] {
        emit told(tr("%1 written to %2").arg(stored, QFileInfo(path).fileName()));
    });
}

} // namespace varda::window
