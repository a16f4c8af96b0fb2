#pragma once

#include "cli/operands.h"
#include "core/base/bytes.h"
#include "core/link/routes.h"
#include "core/protocol/mixed_requests.h"

#include <span>

namespace varda::cli {

/// A request as it goes on the wire.
struct Request {
    Mode mode;
    Bytes bytes;
    int answerLength; ///< in bytes
};

/// The requests that the pages send, built by the same rules. @throws Failure Usage where an operand does not
/// go with the request, RuntimeError where the points are too many for one
Request readRequest(const StationTexts& stations, const Operand& operand);
Request writeRequest(const StationTexts& stations, const Operand& operand);
Request mixedReadRequest(const StationTexts& stations, std::span<const Operand> operands);
Request mixedWriteRequest(const StationTexts& stations, std::span<const Operand> operands);

} // namespace varda::cli
