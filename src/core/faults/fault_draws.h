#pragma once

#include "core/faults/fault_plan.h"

#include <cstdint>
#include <random>

namespace varda::inline core {

/// Drawn numbers of one fault: the same from the same seed on every system, whatever the other faults draw.
class FaultDraws {
public:
    FaultDraws(std::uint64_t seed, FaultKind kind)
        : engine_(seed ^ (saltStep * (1 + static_cast<std::uint64_t>(kind)))) {}

    /// 0 .. end - 1. The standard library's distributions differ from system to system.
    std::uint64_t below(std::uint64_t end) { return engine_() % end; }
    std::uint32_t within(const FaultRange& range) {
        return range.low + static_cast<std::uint32_t>(below(std::uint64_t{range.high} - range.low + 1));
    }

private:
    static constexpr std::uint64_t saltStep = 0x9E3779B97F4A7C15; // bits without a pattern

    std::mt19937_64 engine_;
};

} // namespace varda::core
