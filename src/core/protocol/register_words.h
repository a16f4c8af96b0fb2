#pragma once

#include "core/protocol/registers.h"

#include <cstddef>
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

/// A word and its value in both bases: "W 0057 = 1234h = 4660".
std::string wordInWords(std::string_view name, int value);

/// A bit's value: "ON", "OFF"; a byte that is neither shows as it is.
std::string bitValue(int value);

} // namespace varda::core
