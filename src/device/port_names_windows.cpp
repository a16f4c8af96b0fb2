#include "device/port_names.h"

#include "core/base/utf8_windows.h"
#include "device/windows_words.h"

#include <algorithm>
#include <map>

// In this order: the first defines what the others use.
#include <windows.h>

#include <devguid.h>
#include <setupapi.h>

namespace varda::device {
namespace {

constexpr DWORD longestText = 256;

/// A text of the registry, or of the devices' list: it may come with its final 0, or without.
std::string textOf(const wchar_t* text, DWORD bytes) {
    std::wstring whole(text, bytes / sizeof(wchar_t));
    return utf8(whole.substr(0, whole.find(L'\0')));
}

class RegistryKey {
public:
    explicit RegistryKey(HKEY key) : key_(key) {}
    RegistryKey(const RegistryKey&) = delete;
    RegistryKey& operator=(const RegistryKey&) = delete;
    ~RegistryKey() {
        if (isOpen()) {
            ::RegCloseKey(key_);
        }
    }

    bool isOpen() const { return key_ != nullptr && key_ != INVALID_HANDLE_VALUE; }
    HKEY get() const { return key_; }

private:
    HKEY key_;
};

HKEY openedKey(const wchar_t* path) {
    HKEY key = nullptr;
    return ::RegOpenKeyExW(HKEY_LOCAL_MACHINE, path, 0, KEY_READ, &key) == ERROR_SUCCESS ? key : nullptr;
}

/// The ports that drivers have registered, by their names.
std::map<std::string, PortName> registeredPorts() {
    std::map<std::string, PortName> ports;
    const RegistryKey key(openedKey(L"HARDWARE\\DEVICEMAP\\SERIALCOMM"));
    for (DWORD index = 0; key.isOpen(); ++index) {
        wchar_t driver[longestText]{};
        wchar_t name[longestText]{};
        DWORD driverLength = longestText;
        DWORD nameBytes = sizeof(name);
        DWORD type = 0;
        if (::RegEnumValueW(key.get(), index, driver, &driverLength, nullptr, &type,
                            reinterpret_cast<BYTE*>(name), &nameBytes) != ERROR_SUCCESS) {
            break;
        }
        if (type == REG_SZ) {
            const std::string port = textOf(name, nameBytes);
            ports[port].node = port;
        }
    }
    return ports;
}

std::string property(HDEVINFO devices, SP_DEVINFO_DATA& device, DWORD which) {
    wchar_t text[longestText]{};
    DWORD bytes = 0;
    return ::SetupDiGetDeviceRegistryPropertyW(devices, &device, which, nullptr,
                                               reinterpret_cast<BYTE*>(text), sizeof(text), &bytes) != 0
               ? textOf(text, bytes)
               : std::string();
}

std::string portOf(HDEVINFO devices, SP_DEVINFO_DATA& device) {
    const RegistryKey key(::SetupDiOpenDevRegKey(devices, &device, DICS_FLAG_GLOBAL, 0, DIREG_DEV, KEY_READ));
    wchar_t name[longestText]{};
    DWORD bytes = sizeof(name);
    return key.isOpen() && ::RegQueryValueExW(key.get(), L"PortName", nullptr, nullptr,
                                              reinterpret_cast<BYTE*>(name), &bytes) == ERROR_SUCCESS
               ? textOf(name, bytes)
               : std::string();
}

/// The system's own name of a device, in which a USB device without a serial number has its socket.
std::string identityOf(HDEVINFO devices, SP_DEVINFO_DATA& device) {
    wchar_t id[longestText]{};
    return ::SetupDiGetDeviceInstanceIdW(devices, &device, id, longestText, nullptr) != 0 ? utf8(id)
                                                                                          : std::string();
}

/// Adds what the devices' list knows. Its descriptions end in the port's name, which stands before them here.
void describePorts(std::map<std::string, PortName>& ports) {
    const HDEVINFO devices = ::SetupDiGetClassDevsW(&GUID_DEVCLASS_PORTS, nullptr, nullptr, DIGCF_PRESENT);
    if (devices == INVALID_HANDLE_VALUE) {
        return;
    }
    SP_DEVINFO_DATA device{};
    device.cbSize = sizeof(device);
    for (DWORD index = 0; ::SetupDiEnumDeviceInfo(devices, index, &device) != 0; ++index) {
        const auto found = ports.find(portOf(devices, device));
        if (found == ports.end()) {
            continue;
        }
        PortName& port = found->second;
        port.description =
            windows_words::withoutPort(property(devices, device, SPDRP_FRIENDLYNAME), port.node);
        port.maker = property(devices, device, SPDRP_MFG);
        port.identity = identityOf(devices, device);
        port.serialNumber = windows_words::serialNumberOf(port.identity);
    }
    ::SetupDiDestroyDeviceInfoList(devices);
}

} // namespace

std::vector<PortName> portNames(const std::string& /*root*/) {
    auto found = registeredPorts();
    describePorts(found);
    std::vector<PortName> ports;
    for (auto& [name, port] : found) {
        ports.push_back(std::move(port));
    }
    return ports;
}

} // namespace varda::device
