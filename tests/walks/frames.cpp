#include "walks/world.h"

#include <cstdio>

namespace varda::window_model {

std::string padHex(int value, int width) {
    std::string digits;
    auto rest = static_cast<unsigned>(value);
    do {
        digits.insert(digits.begin(), "0123456789ABCDEF"[rest % 16]);
        rest /= 16;
    } while (rest != 0);
    const auto size = static_cast<std::size_t>(width);
    return digits.size() < size ? std::string(size - digits.size(), '0') + digits
                                : digits.substr(digits.size() - size);
}

std::string padded(int number, int width) {
    const std::string digits = std::to_string(number);
    const auto size = static_cast<std::size_t>(width);
    return digits.size() < size ? std::string(size - digits.size(), '0') + digits : digits;
}

std::string hexText(const Octets& octets, const std::string& gap) {
    std::string text;
    for (const std::uint8_t octet : octets) {
        text += padHex(octet, 2) + gap;
    }
    return text;
}

Octets octetsOf(const std::string& text) {
    Octets octets;
    for (std::size_t at = 0; at + 1 < text.size(); at += 2) {
        octets.push_back(static_cast<std::uint8_t>(std::stoi(text.substr(at, 2), nullptr, 16)));
    }
    return octets;
}

Octets check(const Octets& octets) {
    unsigned rest = 0xFFFF; // bit by bit, without a table
    for (const std::uint8_t octet : octets) {
        rest ^= octet;
        for (int bit = 0; bit < 8; ++bit) {
            rest = (rest & 1U) != 0 ? (rest >> 1U) ^ 0xA001U : rest >> 1U;
        }
    }
    return {static_cast<std::uint8_t>(rest & 0xFFU), static_cast<std::uint8_t>(rest >> 8U)};
}

const std::vector<Kind>& kinds() {
    static const std::vector<Kind> all = {
        {"R", 0, 128, 4, true},      {"L", 128, 64, 4, true},     {"M", 192, 128, 4, true},
        {"K", 320, 128, 4, true},    {"F", 448, 16, 4, true},     {"TC", 464, 256, 3, true},
        {"W", 512, 2048, 4, false},  {"SV", 2560, 256, 3, false}, {"PV", 2816, 256, 3, false},
        {"SR", 3072, 512, 3, false},
    };
    return all;
}

int baseOf(const std::string& name, bool bit) {
    for (const Kind& kind : kinds()) {
        if (kind.name == name && (!bit || kind.bits)) {
            return kind.base;
        }
    }
    return 0;
}

} // namespace varda::window_model
