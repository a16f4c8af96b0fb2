#pragma once

#include "core/base/bytes.h"
#include "core/faults/fault_draws.h"

#include <cstdint>
#include <optional>

namespace varda::inline core {

// What the faults do to the bytes of a frame. Each returns the number that the trace tells, and nothing where
// the bytes leave no room for the fault; they are as they were then.

/// Another code of the same side, a request's or an answer's. A check that was right is right again.
std::optional<std::uint32_t> changeCommand(Bytes& frame, FaultDraws& draws);
/// Another station: the source of an answer, the destination of a request. A check that was right is right
/// again.
std::optional<std::uint32_t> changeStation(Bytes& frame, const FaultRange& stations, FaultDraws& draws);
/// Another frame check than the one that stands there, and nothing else.
std::optional<std::uint32_t> breakCheck(Bytes& frame, FaultDraws& draws);
std::optional<std::uint32_t> flipBits(Bytes& frame, const FaultRange& bits, FaultDraws& draws);
std::optional<std::uint32_t> cutEnd(Bytes& frame, const FaultRange& bytes, FaultDraws& draws);
std::optional<std::uint32_t> addNoiseBefore(Bytes& frame, const FaultRange& bytes, FaultDraws& draws);
std::optional<std::uint32_t> addNoiseBehind(Bytes& frame, const FaultRange& bytes, FaultDraws& draws);

/// Whether these bytes are a request by their code.
bool isRequestCode(const Bytes& frame);

} // namespace varda::core
