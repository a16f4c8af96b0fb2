#include "core/base/conversion.h"

#include "core/base/blanks.h"
#include "core/base/runtime_error.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <optional>
#include <string>

namespace varda::inline core {
namespace {

/// All of `digits` as one number; nothing where it is no number, the largest number where it is too long.
std::optional<std::int64_t> parse(std::string_view digits, int base) {
    std::uint64_t value = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value, base);
    if (stop != end || error == std::errc::invalid_argument) {
        return std::nullopt;
    }
    constexpr auto largest = std::uint64_t{std::numeric_limits<std::int64_t>::max()};
    return error == std::errc{} ? static_cast<std::int64_t>(std::min(value, largest))
                                : std::numeric_limits<std::int64_t>::max();
}

bool hasHexPrefix(std::string_view text) {
    return text.size() > 2 && text[0] == '&' && (text[1] == 'H' || text[1] == 'h');
}

/// "&H" numbers keep the bits of the smallest of 16 and 32 bits that holds them, so the upper half is
/// negative.
std::int64_t signedFromBits(std::int64_t bits) {
    if (bits >= 0x8000 && bits <= 0xFFFF) {
        return bits - 0x10000;
    }
    return bits >= 0x80000000 && bits <= 0xFFFFFFFF ? bits - 0x100000000 : bits;
}

std::optional<std::int64_t> findNumber(std::string_view text) {
    text = withoutBlanksAround(text);
    if (hasHexPrefix(text)) {
        const auto bits = parse(text.substr(2), 16);
        return bits ? std::optional(signedFromBits(*bits)) : std::nullopt;
    }
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    const auto value = parse(text, 10);
    return value && negative ? std::optional(-*value) : value;
}

std::int64_t number(std::string_view text) {
    const auto found = findNumber(text);
    return found ? *found : throw typeMismatch();
}

template <typename Narrow>
bool fits(std::int64_t value) {
    return value >= std::numeric_limits<Narrow>::min() && value <= std::numeric_limits<Narrow>::max();
}

template <typename Narrow>
std::optional<Narrow> findNarrow(std::string_view text) {
    const auto value = findNumber(text);
    return value && fits<Narrow>(*value) ? std::optional(static_cast<Narrow>(*value)) : std::nullopt;
}

template <typename Narrow>
Narrow narrowed(std::int64_t value) {
    return fits<Narrow>(value) ? static_cast<Narrow>(value) : throw overflow();
}

template <typename Number>
std::string fieldAdvice(const RuntimeError& error, std::string_view text, std::string_view field) {
    const std::string name(field);
    if (text.empty()) {
        return name + " is empty. Fill it in.";
    }
    const std::string typed = name + " \"" + std::string(text) + "\" is ";
    if (error.number() == run_time_error::typeMismatch) {
        return typed + "no number. Type digits only.";
    }
    using Limits = std::numeric_limits<Number>;
    return typed + "out of range: " + std::to_string(Limits::min()) + " to " + std::to_string(Limits::max()) +
           '.';
}

template <typename Number>
Number toNumber(std::string_view text, std::string_view field) {
    return advised(
        [text] { return narrowed<Number>(number(text)); },
        [text, field](const RuntimeError& error) { return fieldAdvice<Number>(error, text, field); });
}

} // namespace

std::optional<std::int16_t> readInteger(std::string_view text) { return findNarrow<std::int16_t>(text); }

std::optional<std::int32_t> readLong(std::string_view text) { return findNarrow<std::int32_t>(text); }

std::int16_t toInteger(std::string_view text) { return narrowed<std::int16_t>(number(text)); }

std::int32_t toLong(std::string_view text) { return narrowed<std::int32_t>(number(text)); }

std::int16_t toInteger(std::string_view text, std::string_view field) {
    return toNumber<std::int16_t>(text, field);
}

std::int32_t toLong(std::string_view text, std::string_view field) {
    return toNumber<std::int32_t>(text, field);
}

std::optional<std::uint32_t> readDigits(std::string_view text) {
    const auto number = parse(text, 10);
    return number && *number <= std::numeric_limits<std::uint32_t>::max()
               ? std::optional(static_cast<std::uint32_t>(*number))
               : std::nullopt;
}

std::int16_t toInteger16(std::int64_t value) { return narrowed<std::int16_t>(value); }

std::uint8_t toByte(std::int64_t value) { return narrowed<std::uint8_t>(value); }

} // namespace varda::core
