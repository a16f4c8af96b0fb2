#include "window/bench/fault_switch.h"

namespace varda::window {

FaultSwitch::FaultSwitch(QObject* parent) : QObject(parent) {}

void FaultSwitch::choose(const FaultPlan& plan) {
    if (plan != chosen_) {
        chosen_ = plan;
        apply();
    }
}

void FaultSwitch::setSeed(std::uint64_t seed) {
    if (seed != seed_) {
        seed_ = seed;
        apply();
    }
}

void FaultSwitch::switchOn(bool isOn) {
    if (isOn != isOn_) {
        isOn_ = isOn;
        apply();
    }
}

void FaultSwitch::apply() {
    injector_.setPlan(isOn_ ? chosen_ : FaultPlan(), seed_);
    if (isActive()) {
        done_ = {};
    }
    emit changed();
}

void FaultSwitch::count(const FaultDone& fault) {
    ++done_.at(static_cast<std::size_t>(fault.kind));
    emit faultDone();
}

} // namespace varda::window
