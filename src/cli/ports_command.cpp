#include "cli/ports_command.h"

#include "device/port_doctor.h"
#include "device/port_names.h"

#include <ostream>

namespace varda::cli {

void PortsCommand::declare(CLI::App& app) {
    app.add_flag("--doctor", examine_, "Tell what is known of each: who has it, who may use it, what helps");
}

ExitCode PortsCommand::run(const Streams& streams, Report& report) {
    if (examine_) {
        streams.out << device::reportOf(device::examinePorts({}));
        return ExitCode::Right;
    }
    const std::vector<device::PortName> ports = device::portNames();
    for (const device::PortName& port : ports) {
        report.port(port);
    }
    if (ports.empty()) {
        streams.error << "No serial port is there. VIRTUAL, the embedded controller, always is.\n";
    }
    return ExitCode::Right;
}

} // namespace varda::cli
