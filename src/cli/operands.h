#pragma once

#include "core/protocol/register_words.h"

#include <optional>
#include <string>
#include <vector>

namespace varda::cli {

/// Bits or words that a user names: where they begin, and how many, or what is to be written there.
struct Operand {
    Point first;
    std::optional<int> count; ///< as typed behind the register
    std::vector<int> values;  ///< words 0 .. 65535, bits 0 or 1; empty where none are given

    bool operator==(const Operand&) const = default;
};

/// Reads registers as they are written here, "R 0012.3", "W 0100 4", "W 0100=1A2Bh,7", "M 0000.0=ON": as one
/// word of the command line or as several, letters of either case.
/// @throws Failure Usage where one is not understood, or there is none
std::vector<Operand> readOperands(const std::vector<std::string>& words);

} // namespace varda::cli
