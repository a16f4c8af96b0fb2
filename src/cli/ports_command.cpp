#include "cli/ports_command.h"

#include "device/port_doctor.h"
#include "device/port_names.h"

#include <ostream>

namespace varda::cli {

void PortsCommand::declare(CLI::App& app) {
    app.add_flag("--doctor", examine_, "Tell what is known of each: who has it, who may use it, what helps");
}

ExitCode PortsCommand::run(const Streams& streams, Report& report) {
    const std::size_t ports = examine_ ? examine(report) : list(report);
    if (ports == 0) {
        streams.error << "No serial port is there. VIRTUAL, the embedded controller, always is.\n";
    }
    return ExitCode::Right;
}

std::size_t PortsCommand::list(Report& report) {
    const std::vector<device::PortName> ports = device::portNames();
    for (const device::PortName& port : ports) {
        report.port(port);
    }
    return ports.size();
}

std::size_t PortsCommand::examine(Report& report) {
    const std::vector<device::PortFindings> ports = device::examinePorts({});
    for (const device::PortFindings& port : ports) {
        report.port(port);
    }
    return ports.size();
}

} // namespace varda::cli
