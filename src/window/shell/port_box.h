#pragma once

class QComboBox;

namespace varda::window {

/// Completes the port list with what is really there: while typing, a list offers the serial ports of this
/// computer and VIRTUAL, and the tool tip says which node the text stands for. The text itself changes only
/// when an offer is chosen.
void offerRealPorts(QComboBox* cbPort);

} // namespace varda::window
