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

/// The folder of the USB device that a port belongs to; empty where it belongs to none.
files::path usbDevice(const files::path& terminal) {
    std::error_code error;
    files::path folder = files::canonical(terminal / "device", error);
    while (folder.has_relative_path() && !files::exists(folder / "idVendor", error)) {
        folder = folder.parent_path();
    }
    return folder.has_relative_path() ? folder : files::path();
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
        const files::path usb = usbDevice(entry->path());
        const auto told = [&usb](const char* what) {
            return usb.empty() ? std::string() : firstLine(usb / what);
        };
        const auto lasting = stable.find(name);
        ports.push_back({"/dev/" + name, told("product"), told("serial"), told("manufacturer"),
                         lasting == stable.end() ? std::string() : lasting->second});
    }
    std::ranges::sort(ports, {}, &PortName::node);
    return ports;
}

} // namespace varda::device
