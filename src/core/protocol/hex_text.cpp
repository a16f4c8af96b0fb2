#include "core/protocol/hex_text.h"

#include "core/base/conversion.h"
#include "core/base/runtime_error.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace varda::inline core {
namespace {

constexpr std::string_view digitsOfHex = "0123456789ABCDEF";

/// "000102 .. FF".
constexpr auto pairsOfHex = [] {
    std::array<char, 512> pairs{};
    for (std::size_t digit = 0; digit < pairs.size(); ++digit) {
        const std::size_t byte = digit / 2;
        pairs.at(digit) = digitsOfHex[digit % 2 == 0 ? byte >> 4U : byte & 0xFU];
    }
    return pairs;
}();

std::string zeroFilled(const std::string& text, std::size_t digits) {
    return text.size() < digits ? std::string(digits - text.size(), '0') + text : text;
}

} // namespace

std::string hex(int value) {
    constexpr std::size_t most = 4;
    std::string text = hex(value, most);
    return text.erase(0, std::min(text.find_first_not_of('0'), most - 1));
}

std::string hex(int value, std::size_t digits) {
    auto bits = static_cast<unsigned>(value) & 0xFFFFU;
    std::string text(digits, '0');
    for (auto place = text.rbegin(); place != text.rend() && bits != 0; ++place) {
        *place = digitsOfHex[bits & 0xFU];
        bits >>= 4U;
    }
    return text;
}

std::string_view twoDigits(std::uint8_t byte) {
    return std::string_view(pairsOfHex.data(), pairsOfHex.size()).substr(2 * std::size_t{byte}, 2);
}

std::string decimal(int value, std::size_t digits) { return zeroFilled(std::to_string(value), digits); }

std::string hexGroups(std::span<const std::uint8_t> bytes) {
    std::string text;
    appendHexGroups(text, bytes);
    return text;
}

void appendHexGroups(std::string& text, std::span<const std::uint8_t> bytes) {
    constexpr std::size_t group = 3;
    const std::size_t begin = text.size();
    text.resize(begin + bytes.size() * group, ' ');
    char* place = &text[begin]; // without a look at the text's end for every digit: a flood takes its time
    for (const std::uint8_t byte : bytes) {
        place[0] = digitsOfHex[byte >> 4U];
        place[1] = digitsOfHex[byte & 0xFU];
        place += group;
    }
}

std::string hexSpaced(std::span<const std::uint8_t> bytes) {
    std::string text = hexGroups(bytes);
    text.resize(text.size() - (text.empty() ? 0 : 1));
    return text;
}

std::string hexRun(std::span<const std::uint8_t> bytes) {
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const std::uint8_t byte : bytes) {
        text += twoDigits(byte);
    }
    return text;
}

int fromHex(std::string_view text) {
    std::uint16_t value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value, 16);
    if (stop != end || error == std::errc::invalid_argument) {
        throw typeMismatch();
    }
    if (error == std::errc::result_out_of_range) {
        throw overflow();
    }
    return value;
}

std::optional<Bytes> readHexRun(std::string_view text) {
    Bytes bytes(text.size() / 2);
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        const char* const pair = text.data() + 2 * index;
        const auto [stop, error] = std::from_chars(pair, pair + 2, bytes[index], 16);
        if (error != std::errc{} || stop != pair + 2) {
            return std::nullopt;
        }
    }
    return text.size() % 2 == 0 ? std::optional(std::move(bytes)) : std::nullopt;
}

std::uint8_t byteFromHex(std::string_view text) { return toByte(fromHex(text)); }

} // namespace varda::core
