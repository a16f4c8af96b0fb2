#pragma once

#include "core/insight/trace.h"

#include <string>

namespace varda::inline core {

/// What the program did with a line of the trace, and why: plain sentences. Later lines may change them.
/// @return empty where there is no such line
std::string verdictInWords(const Trace& trace, Trace::Number number);

/// "38 ms", below ten of them "2.5 ms".
std::string inMilliseconds(Clock::Time::duration time);

} // namespace varda::core
