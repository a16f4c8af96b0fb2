#pragma once

#include "core/link/exchange.h"

namespace varda::window {

namespace Ui {
class SimulationPage;
}
class PacketLists;

/// Shows on the simulation page which request came in, and what it was answered with.
class RequestView : public LinkObserver {
public:
    /// @param ui the page's form @param lists outlives this
    RequestView(Ui::SimulationPage& ui, PacketLists& lists) : ui_(ui), lists_(lists) {}

    void told(const Exchange& exchange) override;

private:
    Ui::SimulationPage& ui_;
    PacketLists& lists_;
};

} // namespace varda::window
