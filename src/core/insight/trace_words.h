#pragma once

#include "core/insight/register_names.h"
#include "core/insight/trace.h"

#include <array>
#include <string>
#include <string_view>

namespace varda::inline core {

// A line of the trace in words, column by column: decoded when it is asked for.

enum class TraceColumn : std::uint8_t { Time, Delta, Direction, Kind, Station, Registers, Hex, Verdict };

inline constexpr std::array traceColumns = {TraceColumn::Time, TraceColumn::Delta,   TraceColumn::Direction,
                                            TraceColumn::Kind, TraceColumn::Station, TraceColumn::Registers,
                                            TraceColumn::Hex,  TraceColumn::Verdict};

/// The heading of a column.
std::string_view columnName(TraceColumn column);

/// What stands in a column of a line; empty where there is no such line.
std::string cellInWords(const Trace& trace, Trace::Number number, TraceColumn column,
                        const RegisterNames& names = noNames());

/// "13:05:07.123", in the time zone of this computer.
std::string timeInWords(std::chrono::system_clock::time_point time);
/// "2026-11-22T13:05:07.123456Z", the world's time.
std::string universalTime(std::chrono::system_clock::time_point time);

/// Milliseconds from the beginning of the line before to that of this one; 0 for the oldest that is left.
double deltaOf(const Trace& trace, Trace::Number number);

/// "word read", both kinds of a burst that holds two frames, "part of answer to word read" where more of it
/// stands in the lines beside it; of an event what happened.
std::string kindOfLine(const TraceLine& line);

} // namespace varda::core
