#pragma once

#include "walks/link_model.h"
#include "walks/modes_model.h"
#include "walks/monitor_model.h"
#include "walks/pages_model.h"
#include "walks/profile_model.h"
#include "walks/scenario_model.h"
#include "walks/simulator_model.h"

namespace varda::window_model {

/// Everything together: what is done to it, and what is seen then.
class World {
public:
    World();
    World(const World&) = delete;
    World& operator=(const World&) = delete;
    World(World&&) = delete;
    World& operator=(World&&) = delete;
    ~World() = default;

    /// Does one step; one that the window would not let through does nothing.
    void apply(const Action& action);
    Observation expected() const;

    /// Shows a box behind those that wait; the same is not queued twice.
    void showBox(const Box& box);
    void showRuntimeError(const std::string& number, const std::string& text);
    /// Neither it nor what stands around it is disabled.
    bool isEnabled(const std::string& control) const;
    /// Whether a user reaches it: it is enabled and on the screen. A master page's name stands for its
    /// fields.
    bool isUsable(const std::string& control) const;
    bool asks() const { return !boxes.empty(); }

    Desk desk;
    Agenda agenda;
    std::deque<Box> boxes;
    std::string written;                     ///< of this step: time and bytes of each write
    std::map<std::string, Profile> profiles; ///< the files that were saved or written by hand

    LinkModel link{*this};
    PagesModel master{*this};
    SimulatorModel simulator{*this};
    ScenarioModel scenario{*this};
    MonitorModel monitor{*this};
    ModesModel modes{*this};

private:
    void answer(const std::string& caption);
    void press(const std::string& button);
    void toggle(const std::string& box);
    void applyToField(const Action& action);
    void applyToFile(const Action& action);
    void write(const std::string& field, const std::string& text);
};

/// Octets as hex text, each followed by `gap`.
std::string hexText(const Octets& octets, const std::string& gap);
/// The octets of hex text without gaps.
Octets octetsOf(const std::string& text);
/// The check of a frame, low byte first.
Octets check(const Octets& octets);

/// A register kind as every list has it.
struct Kind {
    std::string name;
    int base;
    int numbers; ///< 0 .. numbers - 1 are offered
    int width;
    bool bits;
};
const std::vector<Kind>& kinds();
/// Its base; 0 for a kind without that access.
int baseOf(const std::string& name, bool bit);
std::string padded(int number, int width);
std::string padHex(int value, int width);

} // namespace varda::window_model
