#pragma once

#include "walks/desk.h"

namespace varda::window_model {

class World;

/// The monitor: its lines, its run and its log.
class MonitorModel {
public:
    explicit MonitorModel(World& world);

    void press(const std::string& button);
    void toggleLog();
    void list(const Octets& burst);
    void switchButtons();
    /// What a click on the mode prepares.
    void enterMode();
    /// What leaving a run by a click on another mode does.
    void leave();
    void chooseLog(const std::string& file);

    Action draw(Draw& draw) const;

private:
    void start();
    void stop();

    World& world_;
    std::string logFile_; ///< of the run under way
};

} // namespace varda::window_model
