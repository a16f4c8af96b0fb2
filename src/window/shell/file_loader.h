#pragma once

#include "window/controls/page_context.h"

#include <QStringList>

#include <functional>
#include <string>

namespace varda::window {

class ScenarioPanel;
class SimulationPage;

/// Loads files that come from outside of the window into the place that what they hold belongs to: those that
/// are named on the command line, opened from a folder, or dropped.
class FileLoader {
public:
    struct Window {
        SimulationPage& simulation;
        ScenarioPanel& scenario;
        std::function<void()> showSimulation;
        std::function<void(const std::string&)> tell; ///< beside the counters
    };

    FileLoader(const PageContext& context, Window window) : context_(context), window_(std::move(window)) {}

    /// Loads files by what they hold, of each kind the first; tells in a box of others, and of one that holds
    /// nothing of this program.
    void load(const QStringList& paths) const;
    /// Loads prepared pairs, and shows them: but not while the port is open, for the simulation answers, nor
    /// while points are collected there, about which it would ask.
    /// @return true
    bool loadPackets(const QString& path) const;
    /// @return false where no scenario may be loaded now, which is told
    bool loadScenario(const QString& path) const;

private:
    void loadByContent(const QStringList& paths) const;
    void loadOneOf(const QStringList& paths, const std::string& what,
                   bool (FileLoader::*loadOne)(const QString& path) const) const;

    PageContext context_;
    Window window_;
};

} // namespace varda::window
