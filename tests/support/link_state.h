#pragma once

#include "core/link/serial_link.h"

namespace varda::test {

/// A link that is put into states that take long to reach.
class SettableLink : public SerialLink {
public:
    using SerialLink::ownState;
    using SerialLink::SerialLink;
};

} // namespace varda::test
