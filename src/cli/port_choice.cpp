#include "cli/port_choice.h"

#include "core/link/line.h"
#include "device/serial_node.h"

#include <limits>

namespace varda::cli {

void PortChoice::declare(CLI::App& app) {
    app.add_option("-p,--port", name, std::string(device::portNamesInWords()))->required();
    app.add_option("--baud", baudRate, "Bits per second")
        ->check(CLI::Range(1, std::numeric_limits<int>::max()).description("above 0"))
        ->capture_default_str();
    app.add_option("--data", dataBits, "Data bits")->check(CLI::Range(5, 8))->capture_default_str();
    app.add_option("--stop", stopBits, "Stop bits")->check(CLI::Range(1, 2))->capture_default_str();
    app.add_option("--parity", parity, "Parity: none, even or odd")
        ->check(CLI::IsMember({"none", "even", "odd"}))
        ->capture_default_str();
}

std::string PortChoice::settings() const {
    return settingsText(
        {.baudRate = baudRate, .parity = parity.front(), .dataBits = dataBits, .stopBits = stopBits});
}

} // namespace varda::cli
