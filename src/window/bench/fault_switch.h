#pragma once

#include "core/faults/fault_injector.h"
#include "core/faults/fault_plan.h"

#include <QObject>
#include <QString>

#include <array>
#include <cstdint>

namespace varda::window {

/// The faults on purpose of the window: what is chosen, and whether it is done. Off when the program starts.
class FaultSwitch : public QObject {
    Q_OBJECT

public:
    explicit FaultSwitch(QObject* parent = nullptr);

    FaultInjector& injector() { return injector_; }

    /// What is done when it is switched on.
    const FaultPlan& chosen() const { return chosen_; }
    std::uint64_t seed() const { return seed_; }
    bool isOn() const { return isOn_; }
    /// Whether anything is done to what is sent: on, and a fault is chosen.
    bool isActive() const { return injector_.isOn(); }

    // Each of these begins anew where it changes something: the same plan and seed do the same once more.

    void choose(const FaultPlan& plan);
    void setSeed(std::uint64_t seed);
    void switchOn(bool isOn);

    /// A fault that was done.
    void count(const FaultDone& fault);
    std::uint64_t done(FaultKind kind) const { return done_.at(static_cast<std::size_t>(kind)); }

signals:
    void changed();
    void faultDone();

private:
    void apply();

    static constexpr std::size_t kinds = static_cast<std::size_t>(FaultKind::Late) + 1;

    FaultInjector injector_;
    FaultPlan chosen_;
    std::uint64_t seed_ = 1;
    bool isOn_ = false;
    std::array<std::uint64_t, kinds> done_{};
};

} // namespace varda::window
