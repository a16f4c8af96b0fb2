#pragma once

#include "walks/desk.h"

namespace varda::window_model {

class World;

/// The six modes and the groups of controls that they switch.
class ModesModel {
public:
    explicit ModesModel(World& world);

    /// A click on the option or the tab of that index; on the one in front it does nothing.
    void click(int index, bool onTab);
    void start() { enter(0); }
    int shown() const { return shown_; }
    /// CommMode of the page shown.
    int shownMode() const;

    void enableRead(bool on) const;
    void enableWrite(bool on) const;

    Action draw(Draw& draw) const;

private:
    void enter(int index);
    void enableGroup(const std::vector<std::string>& names, bool on) const;

    World& world_;
    int shown_ = 0;
};

} // namespace varda::window_model
