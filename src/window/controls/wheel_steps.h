#pragma once

#include <QWheelEvent>

namespace varda::window {

/// Counts the steps of a wheel, of which fine ones send less than a step at a time.
class WheelSteps {
public:
    /// @return whole steps since the last one that was counted, upwards positive
    int take(const QWheelEvent& wheel) {
        turned_ += wheel.angleDelta().y();
        const int steps = turned_ / QWheelEvent::DefaultDeltasPerStep;
        turned_ -= steps * QWheelEvent::DefaultDeltasPerStep;
        return steps;
    }

private:
    int turned_ = 0; ///< since the last step, in eighths of a degree
};

} // namespace varda::window
