#include "device/refusals.h"

#include "core/base/system_text.h"
#include "device/driver.h"

namespace varda::device {
namespace {

RuntimeError otherSettingsHelp(const std::string& label, const LineSettings& settings,
                               const std::string& reason) {
    return {comm_error::cannotBeSetUp, label + " cannot be set up as " + settingsText(settings) + " (" +
                                           reason + "). Choose other settings."};
}

/// Asio's error category is its own, with the system's numbers.
std::error_code ofSystem(const std::error_code& error) {
    const bool isGeneral = error.category() == std::generic_category();
    return isGeneral ? error : std::error_code(error.value(), std::system_category());
}

} // namespace

RuntimeError noSerialPort(const std::string& label, const char* kind) {
    return {comm_error::invalidPort, label + " is " + kind + ", not a serial port."};
}

RuntimeError cannotBeOpened(const std::string& label, const std::error_code& reason) {
    const std::error_code known = ofSystem(reason);
    if (driver::isOfNoDevice(known)) {
        return noSuchDevice(label);
    }
    return {comm_error::cannotBeSetUp, label + " cannot be opened: " + systemText(known) + "."};
}

RuntimeError cannotBeSetUp(const std::string& label, const LineSettings& settings,
                           const std::runtime_error& reason) {
    const auto* const ofTheSystem = dynamic_cast<const std::system_error*>(&reason);
    if (ofTheSystem == nullptr) {
        return otherSettingsHelp(label, settings, reason.what());
    }
    const std::error_code code = ofSystem(ofTheSystem->code());
    return code == std::errc::invalid_argument ? otherSettingsHelp(label, settings, systemText(code))
                                               : cannotBeOpened(label, code);
}

} // namespace varda::device
