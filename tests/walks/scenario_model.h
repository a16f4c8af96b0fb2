#pragma once

#include "walks/desk.h"

namespace varda::window_model {

class World;

/// The scenario panel: its list, its files and its run.
class ScenarioModel {
public:
    explicit ScenarioModel(World& world);

    void press(const std::string& button);
    void select(int row);
    void setPeriod(const std::string& text);
    void save(const std::string& file);
    void load(const std::string& file);
    void stop();
    /// What a mode click does to Run and Stop.
    void switchRunButtons();
    /// What a mixed page leaves after a send.
    void enableButtons();
    void enableEditing(bool on);

    Action draw(Draw& draw) const;

private:
    void add();
    void del();
    void run();
    void tick();
    void setMasterControls(bool on);
    void showCount();

    World& world_;
    Ticker timer_;
    const std::string list_ = "lstSchedule";
};

} // namespace varda::window_model
