#pragma once

#include "window/controls/state_label.h"

namespace varda::window {

/// A label of one line that leaves out the middle of a text for which it is too narrow.
class ElidedLabel : public StateLabel {
    Q_OBJECT

public:
    using StateLabel::StateLabel;

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace varda::window
