#pragma once

#include "device/port_names.h"

#include <string>
#include <vector>

namespace varda::device {

/// A command that helps, to be typed into a terminal, and what it does.
struct PortRemedy {
    std::string command;
    std::string purpose;
};

/// All that could be found out about one port without opening it.
struct PortFindings {
    PortName port;
    std::vector<std::string> facts; ///< a sentence each
    std::vector<PortRemedy> remedies;
};

/// Looks at every serial port of this computer: what it is, who has it, who may use it. Opens none of them.
/// Takes a while where many programs run; may be called from any thread.
/// @param chosen a port's name as deviceNode() takes it, which is looked at first whatever it leads to; empty
/// for none @param root where the system's folders are looked for, for tests
std::vector<PortFindings> examinePorts(const std::string& chosen, const std::string& root = {});

/// What was found out about one port, a line each.
std::string describe(const PortFindings& findings);

/// The findings as a text to read and to hand on.
std::string reportOf(const std::vector<PortFindings>& findings);

} // namespace varda::device
