#include "window/shell/file_loader.h"

#include "core/files/profile_file.h"
#include "core/link/serial_link.h"
#include "core/runs/file_kind.h"
#include "window/controls/events.h"
#include "window/controls/form.h"
#include "window/controls/profile_files.h"
#include "window/scenario/scenario_panel.h"
#include "window/simulator/simulation_page.h"
#include "window/system/file_name.h"

namespace varda::window {

void FileLoader::load(const QStringList& paths) const {
    context_.events.guard([this, &paths] { loadByContent(paths); });
}

void FileLoader::loadByContent(const QStringList& paths) const {
    QStringList scenarios;
    QStringList packets;
    for (const QString& path : paths) {
        const ProfileFile file = ProfileFile::load(fileName(path));
        if (tellWhyUnreadable(file, context_)) {
            continue;
        }
        switch (kindOf(file)) {
        case FileKind::Packets:
            packets.append(path);
            break;
        case FileKind::Scenario:
            scenarios.append(path);
            break;
        case FileKind::Neither:
            context_.form.showMessage(
                '"' + path.toStdString() + "\" holds neither prepared pairs nor a scenario.", "Confirm");
            break;
        }
    }
    // in this order: on the page that packets may bring up no scenario is loaded
    loadOneOf(scenarios, "scenario", &FileLoader::loadScenario);
    loadOneOf(packets, "file of prepared pairs", &FileLoader::loadPackets);
}

/// Each would take the place of the one before.
void FileLoader::loadOneOf(const QStringList& paths, const std::string& what,
                           bool (FileLoader::*loadOne)(const QString& path) const) const {
    if (paths.isEmpty()) {
        return;
    }
    const bool isTaken = (this->*loadOne)(paths.first());
    if (isTaken && paths.size() > 1) {
        context_.form.showMessage("One " + what + " is taken at a time: \"" + paths.first().toStdString() +
                                      "\". Load the others by themselves.",
                                  "Confirm");
    }
}

/// The page is entered first: entering switches off what loading switches on, and asks about points that were
/// collected.
bool FileLoader::loadPackets(const QString& path) const {
    if (!context_.link.port().isOpen() && !window_.simulation.isVisible() &&
        !window_.simulation.hasPoints()) {
        window_.showSimulation();
    }
    window_.simulation.loadPackets(path);
    if (!window_.simulation.isVisible()) {
        window_.tell("Prepared pairs were loaded. Simulation shows them, and answers.");
    }
    return true;
}

bool FileLoader::loadScenario(const QString& path) const {
    const bool mayLoad = window_.scenario.mayLoad();
    if (mayLoad) {
        window_.scenario.load(path);
    } else {
        context_.form.showMessage(
            "A scenario can be loaded while one of the first four modes is chosen and none runs.", "Warning");
    }
    return mayLoad;
}

} // namespace varda::window
