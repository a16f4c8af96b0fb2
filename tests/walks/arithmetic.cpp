#include "walks/arithmetic.h"

#include <algorithm>
#include <cctype>

namespace varda::walks {

namespace {

constexpr int noNumber = 13;
constexpr int overflow = 6;

bool isDigits(std::string_view text) {
    return !text.empty() &&
           std::all_of(text.begin(), text.end(), [](unsigned char c) { return std::isdigit(c) != 0; });
}

int digitValue(char digit) {
    const std::string_view digits = "0123456789ABCDEF";
    const auto place = digits.find(static_cast<char>(std::toupper(static_cast<unsigned char>(digit))));
    return place == std::string_view::npos ? -1 : static_cast<int>(place);
}

std::string padded(int number, int width) {
    std::string digits = std::to_string(number);
    while (digits.size() < static_cast<std::size_t>(width)) {
        digits.insert(digits.begin(), '0');
    }
    return digits;
}

Number decimal(std::string_view digits, bool negative) {
    long long value = 0;
    for (const char digit : digits) {
        value = std::min(value * 10 + (digit - '0'), 10000000000LL);
    }
    value = negative ? -value : value;
    if (value < -2147483648LL || value > 2147483647LL) {
        return {0, overflow};
    }
    return {static_cast<int>(value), 0};
}

} // namespace

Number hexNumber(std::string_view digits) {
    long long value = 0;
    for (const char digit : digits) {
        if (digitValue(digit) < 0) {
            return {0, noNumber};
        }
        value = std::min(value * 16 + digitValue(digit), 0x100000000LL);
    }
    if (digits.empty()) {
        return {0, noNumber};
    }
    return value > 0x7FFFFFFF ? Number{0, overflow} : Number{static_cast<int>(value), 0};
}

Number number32(std::string_view text) {
    if (text.size() > 2 && text[0] == '&' && (text[1] == 'H' || text[1] == 'h')) {
        return hexNumber(text.substr(2));
    }
    const bool negative = !text.empty() && text[0] == '-';
    const std::string_view digits = negative ? text.substr(1) : text;
    return isDigits(digits) ? decimal(digits, negative) : Number{0, noNumber};
}

Number number16(std::string_view text) {
    Number number = number32(text);
    if (number && !text.empty() && text[0] == '&' && number.value > 0x7FFF && number.value <= 0xFFFF) {
        number.value -= 0x10000; // a hexadecimal text of four digits is a 16-bit pattern
    }
    if (number && (number.value < -32768 || number.value > 32767)) {
        return {0, overflow};
    }
    return number;
}

std::string hex(int value) {
    auto rest = value < 0 ? static_cast<unsigned>(value) & 0xFFFFU : static_cast<unsigned>(value);
    std::string digits;
    do {
        digits.insert(digits.begin(), "0123456789ABCDEF"[rest % 16]);
        rest /= 16;
    } while (rest != 0);
    return digits;
}

std::string hex(int value, std::size_t width) {
    return lastCharacters(std::string(width, '0') + hex(value), width);
}

std::string lastCharacters(const std::string& text, std::size_t count) {
    return text.size() <= count ? text : text.substr(text.size() - count);
}

unsigned crc(const Octets& octets, std::size_t count) {
    unsigned check = 0xFFFF;
    for (std::size_t place = 0; place < count; ++place) {
        check ^= octets.at(place);
        for (int bit = 0; bit < 8; ++bit) {
            check = (check & 1U) != 0 ? (check >> 1U) ^ 0xA001U : check >> 1U;
        }
    }
    return check;
}

bool hasRightCrc(const Octets& frame) {
    const std::size_t length = frame.size() < 4 ? 0 : frame[3] + std::size_t{6};
    if (length < 6 || frame.size() < length) {
        return false;
    }
    const unsigned check = crc(frame, length - 2);
    return frame[length - 2] == (check & 0xFFU) && frame[length - 1] == check >> 8U;
}

const std::vector<Kind>& kinds() {
    static const std::vector<Kind> all = {{"R", true, 0, 127, 4},      {"L", true, 128, 63, 4},
                                          {"M", true, 192, 127, 4},    {"K", true, 320, 127, 4},
                                          {"F", true, 448, 15, 4},     {"TC", true, 464, 255, 3},
                                          {"W", false, 512, 2047, 4},  {"SV", false, 2560, 255, 3},
                                          {"PV", false, 2816, 255, 3}, {"SR", false, 3072, 511, 3}};
    return all;
}

int baseOf(bool bits, std::string_view kind) {
    for (const Kind& known : kinds()) {
        if (known.name == kind && (known.bits || !bits)) {
            return known.base;
        }
    }
    return 0;
}

std::vector<std::string> kindEntries(bool bits) {
    std::vector<std::string> entries;
    for (const Kind& known : kinds()) {
        if (known.bits || !bits) {
            entries.emplace_back(known.name);
        }
    }
    entries.emplace_back();
    return entries;
}

std::vector<std::string> numberEntries(std::string_view kind) {
    std::vector<std::string> entries;
    for (const Kind& known : kinds()) {
        for (int number = 0; known.name == kind && number <= known.highest; ++number) {
            entries.push_back(padded(number, known.width));
        }
    }
    return entries;
}

std::vector<std::string> bitEntries() {
    std::vector<std::string> entries;
    for (int bit = 0; bit < 16; ++bit) {
        entries.push_back(std::to_string(bit));
    }
    return entries;
}

std::vector<std::string> countEntries(int highest) {
    std::vector<std::string> entries;
    for (int count = 1; count <= highest; ++count) {
        entries.push_back(std::to_string(count));
    }
    return entries;
}

std::string bitAddress(int word, int bit) { return hex(word, 3) + hex(bit); }

std::string wordAddress(int word) { return hex(word, 4); }

} // namespace varda::walks
