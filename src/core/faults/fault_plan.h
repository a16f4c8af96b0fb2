#pragma once

#include <chrono>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace varda::inline core {

/// What may be done on purpose to a frame that this program sends. In the order in which they are done.
enum class FaultKind : std::uint8_t {
    HangUp,
    Silence,
    Drop,
    Command,
    Station,
    Check,
    Flip,
    Cut,
    NoiseBefore,
    NoiseBehind,
    Double,
    Split,
    Late,
};

/// A number that is drawn anew each time: both ends may come up.
struct FaultRange {
    std::uint32_t low = 0;
    std::uint32_t high = 0;

    bool operator==(const FaultRange&) const = default;
};

/// How often a fault is done.
struct FaultRate {
    enum class Kind : std::uint8_t {
        Each,  ///< to each nth frame, counted from 1
        Only,  ///< to the nth frame alone
        Share, ///< to so many of a million, drawn
    };
    static constexpr std::uint32_t million = 1'000'000;

    Kind kind = Kind::Each;
    std::uint32_t number = 1;

    bool operator==(const FaultRate&) const = default;
};

/// All that there is to know of a kind of fault.
struct FaultRule {
    FaultKind kind;
    std::string_view name;      ///< as it is typed
    std::string_view parameter; ///< what its number is; empty where it has none
    FaultRange allowed;         ///< of the number
    FaultRange preset;          ///< where none is typed
    std::string_view help;      ///< a sentence
    std::string_view done;      ///< what the trace says of it, with the number behind it where # stands
};

/// One row a fault, in the order of FaultKind.
std::span<const FaultRule> faultRules();
const FaultRule& ruleOf(FaultKind kind);

struct PlannedFault {
    FaultKind kind = FaultKind::Drop;
    FaultRange number; ///< means nothing to a fault without a parameter
    FaultRate rate;

    bool operator==(const PlannedFault&) const = default;
};

/// At most one of each kind, in the order of FaultKind.
using FaultPlan = std::vector<PlannedFault>;

/// A fault as it is typed alone: done to every frame, with its preset.
PlannedFault presetFault(FaultKind kind);

/// Reads faults as they are typed, between commas: NAME, NAME=NUMBER or NAME=LOW..HIGH, with @RATE behind it
/// where not every frame is meant: "@3rd" each third, "@1%" drawn, "@only20" the twentieth alone. Blanks and
/// case mean nothing.
/// @throws RuntimeError 13 whose description names the part that is not understood, and the remedy
FaultPlan parseFaults(std::string_view text);

/// The plan as parseFaults reads it; empty for an empty one.
std::string faultText(const FaultPlan& plan);

/// What of that text is a fault's number, "50..500"; empty for a fault without one.
std::string numberText(const PlannedFault& fault);
/// What of it says how often, "@3rd"; empty for every frame.
std::string rateText(const FaultRate& rate);

/// A line for each fault, for the help: its name, its number, what it does.
std::string faultHelp();

} // namespace varda::core
