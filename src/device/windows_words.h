#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace varda::device::windows_words {

// What Windows says of ports and devices, taken apart without asking it: the tests of every system run this.

/// Why a port was not opened.
enum class Refusal { NotPermitted, InUse, Other };

/// @param systemError as GetLastError() has it
constexpr Refusal refusalOf(unsigned long systemError) {
    constexpr unsigned long accessDenied = 5; // what this system says of a port that somebody has
    constexpr unsigned long sharingViolation = 32;
    constexpr unsigned long busy = 170;
    constexpr unsigned long privilegeNotHeld = 1314;
    switch (systemError) {
    case accessDenied:
    case sharingViolation:
    case busy:
        return Refusal::InUse;
    case privilegeNotHeld:
        return Refusal::NotPermitted;
    default:
        return Refusal::Other;
    }
}

/// A port's name as the system lists it: it counts in letters of either size, and with the system's folder of
/// devices before it.
inline std::string listedName(const std::string& node) {
    constexpr std::string_view deviceFolder = R"(\\.\)";
    std::string name = node.starts_with(deviceFolder) ? node.substr(deviceFolder.size()) : node;
    std::ranges::transform(name, name.begin(), [](char letter) {
        return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
    });
    return name;
}

/// The last part of a USB device's id is its serial number, unless the system made it up: then it holds "&".
inline std::string serialNumberOf(const std::string& identity) {
    const std::string last = identity.substr(identity.rfind('\\') + 1);
    return identity.starts_with("USB\\") && last.find('&') == std::string::npos ? last : std::string();
}

/// A device's description without the name of its port, in which it ends.
inline std::string withoutPort(const std::string& description, const std::string& port) {
    return description.substr(0, description.find(" (" + port + ")"));
}

} // namespace varda::device::windows_words
