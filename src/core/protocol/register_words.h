#pragma once

#include "core/protocol/registers.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace varda::inline core {

// Registers and their values in words.

/// A bit or a word of the memory.
struct Point {
    Access access;
    int address; ///< of the word, or of the bit

    bool operator==(const Point&) const = default;
    bool operator<(const Point& other) const {
        return access != other.access ? access < other.access : address < other.address;
    }
};

/// "0E00h": so many digits of a number, marked as hexadecimal.
std::string hexNumber(int value, std::size_t digits);

/// The register of a word address, "W 0057"; "address 0E00h" where no kind has it.
std::string wordName(int word);

/// The register of a bit address, "M 0002.3".
std::string bitName(int address);

/// The register of either.
std::string nameOf(const Point& point);

/// Reads a register as it is written here, "W 0100" or "R 0012.3"; letters of either case, with or without
/// the blank and the leading zeros.
/// @return nothing where it is none, or has a number that its kind is not offered with
std::optional<Point> readPoint(std::string_view text);

/// A word and its value in both bases: "W 0057 = 1234h = 4660".
std::string wordInWords(std::string_view name, int value);

/// A bit's value as it is typed: ON or 1, OFF or 0, letters of either case.
std::optional<bool> readBit(std::string_view text);

/// A bit's value: "ON", "OFF"; a byte that is neither shows as it is.
std::string bitValue(int value);

} // namespace varda::core
