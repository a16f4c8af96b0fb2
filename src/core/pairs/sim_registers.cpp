#include "core/pairs/sim_registers.h"

#include "core/base/conversion.h"
#include "core/protocol/hex_text.h"

namespace varda::inline core {
namespace {

constexpr std::string_view noRegister = "ERR";
constexpr int lastBit = 15;
constexpr std::size_t steppedDigits = 4;

/// A position while it is being stepped back.
struct Place {
    std::string kind;
    int number;
    int bit;
};

void stepToPreviousRegister(Place& place) {
    const std::string previous = GetPrevSimRegister(place.kind);
    if (previous == noRegister || previous.empty()) {
        return;
    }
    // kept: "K" goes back to the end of "K" itself, so a run that began in "M" gets an address in "K"
    place = {previous, GetSimRegisterMaxAddress(previous), lastBit};
}

void stepBackOnce(Place& place, Access access) {
    if (access == Access::Bit && place.bit > 0) {
        --place.bit;
    } else if (place.number > 0) {
        --place.number;
        place.bit = lastBit;
    } else {
        stepToPreviousRegister(place);
    }
}

} // namespace

int GetSimRegisterMaxAddress(std::string_view kind) { return GetRegisterMaxNumber(kind); }

std::string GetNextSimRegister(std::string_view kind) { return NextRegisterKind(kind); }

std::string GetPrevSimRegister(std::string_view kind) { return PrevRegisterKind(kind); }

SimPosition stepForward(const SimPosition& position, Access access) {
    if (access == Access::Bit) {
        const int bit = toInteger(position.bit, "Bit number") + 1;
        if (bit <= lastBit) {
            return {position.kind, position.number, std::to_string(bit)};
        }
    }
    const int number = toInteger(position.number, "Register number") + 1;
    if (number <= GetSimRegisterMaxAddress(position.kind)) {
        return {position.kind, decimal(number, steppedDigits), "0"};
    }
    const std::string next = GetNextSimRegister(position.kind);
    if (next == noRegister) {
        return position;
    }
    return {next, "00000", "0"}; // kept: five digits, unlike every other number that stepping shows
}

SimPosition stepBack(const SimPosition& position, std::size_t points, Access access) {
    if (points == 0) {
        return position;
    }
    const bool bits = access == Access::Bit;
    Place place{position.kind, toInteger(position.number, "Register number"),
                bits ? toInteger(position.bit, "Bit number") : 0};
    for (std::size_t step = 0; step < points; ++step) {
        stepBackOnce(place, access);
    }
    return {place.kind, decimal(place.number, steppedDigits),
            bits ? std::to_string(place.bit) : position.bit};
}

} // namespace varda::core
