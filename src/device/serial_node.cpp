#include "device/serial_node.h"

#include "core/base/blanks.h"
#include "core/virtual/virtual_line.h"

#include <algorithm>
#include <charconv>

namespace varda::device {
namespace {

#ifdef __linux__
/// The number n of a name "COMn"; 0 for every other name.
int comNumber(std::string_view name) {
    constexpr std::string_view prefix = "COM";
    if (!name.starts_with(prefix)) {
        return 0;
    }
    const auto digits = name.substr(prefix.size());
    int number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    const bool isWhole = error == std::errc{} && end == digits.data() + digits.size();
    return isWhole && number > 0 ? number : 0;
}

std::string nodeOfName(std::string_view name) {
    if (name.empty() || name.find('/') != std::string_view::npos) {
        return std::string(name);
    }
    if (const int number = comNumber(name); number > 0) {
        return "/dev/ttyS" + std::to_string(number - 1);
    }
    return "/dev/" + std::string(name);
}

bool isComPort(std::string_view name) { return comNumber(name) > 0; }

constexpr std::string_view namesInWords = "COM1 .. COM20, a device such as /dev/ttyUSB0, or VIRTUAL";
#elif defined(_WIN32)
std::string nodeOfName(std::string_view name) { return std::string(name); }

/// Here the system takes a port's name in letters of either size.
bool isComPort(std::string_view /*name*/) { return false; }

constexpr std::string_view namesInWords = "COM1 .. COM20, any other port such as COM21, or VIRTUAL";
#else
std::string nodeOfName(std::string_view name) { return std::string(name); }

bool isComPort(std::string_view /*name*/) { return false; }

constexpr std::string_view namesInWords = "COM1 .. COM20, a device such as /dev/cu.usbserial, or VIRTUAL";
#endif

std::string inCapitals(std::string_view text) {
    std::string capitals(text);
    std::ranges::transform(capitals, capitals.begin(), [](char letter) {
        return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
    });
    return capitals;
}

} // namespace

std::string deviceNode(std::string_view name) { return nodeOfName(withoutBlanksAround(name)); }

std::string_view portNamesInWords() { return namesInWords; }

std::string meantInCapitals(std::string_view name) {
    const std::string_view typed = withoutBlanksAround(name);
    std::string meant = inCapitals(typed);
    const bool isKnown = meant == virtualPortName || isComPort(meant);
    return isKnown && meant != typed ? meant : std::string();
}

} // namespace varda::device
