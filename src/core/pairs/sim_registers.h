#pragma once

#include "core/protocol/registers.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace varda::inline core {

/// Highest register number that the simulator steps to, 0 for an unknown kind.
int GetSimRegisterMaxAddress(std::string_view kind);

/// The kind that stepping goes on with; "ERR" after the last, empty for an unknown one.
std::string GetNextSimRegister(std::string_view kind);

/// The kind that stepping back goes on with; "ERR" before the first, empty for an unknown one.
std::string GetPrevSimRegister(std::string_view kind);

/// Where the simulation page stands: the texts of its register, number and bit fields.
struct SimPosition {
    std::string kind;
    std::string number; ///< decimal in any width
    std::string bit;    ///< decimal; word points neither read nor need it

    bool operator==(const SimPosition&) const = default;
};

/// The position of the next point: the next bit, else the next number, else the next register.
/// @param access Bit steps through the 16 bits of a number, any other value from number to number
/// @throws RuntimeError 13, 6 where a field is no number
SimPosition stepForward(const SimPosition& position, Access access);

/// The position `points` points before `position`; it does not go below number 0 of the first register.
/// @throws RuntimeError as stepForward does, except that no step reads no field
SimPosition stepBack(const SimPosition& position, std::size_t points, Access access);

} // namespace varda::core
