#include "device/port_names.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>

namespace varda::device {
namespace {

namespace files = std::filesystem;

std::string firstLine(const files::path& file) {
    std::ifstream stream(file);
    std::string line;
    std::getline(stream, line);
    return line.substr(0, line.find_last_not_of(" \t\r") + 1);
}

/// The driver's own terminals have a device behind them; of the ports that a computer may have the driver
/// knows some that this one has not: they are of type 0.
bool isPort(const files::path& terminal) {
    std::error_code error;
    return files::exists(terminal / "device", error) && firstLine(terminal / "type") != "0";
}

/// The device that a port belongs to, or one that this belongs to, whichever tells of `what`; empty where
/// none does.
files::path deviceThatTells(const files::path& terminal, const char* what) {
    std::error_code error;
    files::path folder = files::canonical(terminal / "device", error);
    while (folder.has_relative_path() && !files::exists(folder / what, error)) {
        folder = folder.parent_path();
    }
    return folder.has_relative_path() ? folder : files::path();
}

/// Kind and serial number of a USB device, and which of its ports this is. Without a serial number it is
/// known by the socket that it is plugged into: another of its kind may be there at the same time.
std::string identityOf(const files::path& terminal, const files::path& usb) {
    if (usb.empty()) {
        return {};
    }
    const std::string serialNumber = firstLine(usb / "serial");
    const files::path part = deviceThatTells(terminal, "bInterfaceNumber");
    return "usb " + firstLine(usb / "idVendor") + ':' + firstLine(usb / "idProduct") + ' ' +
           (serialNumber.empty() ? "at " + usb.filename().string() : serialNumber) + " part " +
           firstLine(part / "bInterfaceNumber") + '.' + firstLine(terminal / "device" / "port_number");
}

/// For each node the first of the names that stay with the device.
std::map<std::string, std::string> stableNames(const files::path& root) {
    const files::path folder = "/dev/serial/by-id";
    std::map<std::string, std::string> names;
    std::error_code error;
    for (files::directory_iterator entry(root / folder.relative_path(), error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code lost;
        const auto node = files::canonical(entry->path(), lost);
        if (!lost) {
            const std::string name = (folder / entry->path().filename()).string();
            auto& known = names[node.filename().string()];
            known = known.empty() ? name : std::min(known, name);
        }
    }
    return names;
}

} // namespace

std::vector<PortName> portNames(const std::string& root) {
    const files::path top = root.empty() ? "/" : root;
    const auto stable = stableNames(top);
    std::vector<PortName> ports;
    std::error_code error;
    for (files::directory_iterator entry(top / "sys/class/tty", error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        std::error_code unknown;
        if (!isPort(entry->path()) || !files::exists(top / "dev" / name, unknown)) {
            continue;
        }
        const files::path usb = deviceThatTells(entry->path(), "idVendor");
        const auto told = [&usb](const char* what) {
            return usb.empty() ? std::string() : firstLine(usb / what);
        };
        const auto lasting = stable.find(name);
        ports.push_back({"/dev/" + name, told("product"), told("serial"), told("manufacturer"),
                         lasting == stable.end() ? std::string() : lasting->second,
                         identityOf(entry->path(), usb)});
    }
    std::ranges::sort(ports, {}, &PortName::node);
    return ports;
}

} // namespace varda::device
