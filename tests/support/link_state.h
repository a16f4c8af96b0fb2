#pragma once

#include "core/link/serial_link.h"

namespace varda::inline core {

/// Puts a link into a state that takes long to reach.
class LinkStateOfATest {
public:
    static LinkState& of(SerialLink& link) { return link.state_; }
};

} // namespace varda::core
