#pragma once

#include "core/pairs/sim_registers.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace varda::inline core {

/// The forms of a collected point's line.
enum class SimPointForm : std::uint8_t {
    BitRead,
    WordRead,
    BitWrite,
    WordWrite,
    MixedReadBit,
    MixedReadWord,
    MixedWriteBit,
    MixedWriteWord,
    ReloadedWordWrite, ///< a word write that was rebuilt from its frame
};

/// A line of the collected points: tag, TABs, register and number (and "." bit), TAB, value. The value is
/// read back with pointValue().
/// @param value a count, "ON" or "OFF", or the four digits of simWordValue()
std::string simPointLine(SimPointForm form, const SimPosition& position, std::string_view value);

/// The four hexadecimal digits of a typed word.
/// @param hexadecimal the text holds the digits themselves, of which the last four are kept as they are
///        typed; else it is a decimal number of -32768 .. 65535
/// @throws RuntimeError 13 where a decimal text is no number, 6 where it does not fit
std::string simWordValue(std::string_view text, bool hexadecimal);

/// What the page shows of a prepared request that is taken back for editing.
struct PreparedRequest {
    bool supported = false; ///< else only the stations and, for a mixed request, the mode are known
    std::string destination;
    std::string source;
    std::string mode;                ///< text of the mode list, empty for an unknown code
    SimPosition position;            ///< reads: the start address; writes: behind the last point
    std::string count;               ///< reads only
    std::vector<std::string> points; ///< writes only: one line for each value between header and check
};

/// Takes a prepared request apart. The check is not looked at, and the number of points of a write is that
/// of its data, whatever its count says.
/// @throws RuntimeError 13 where the text is too short or no frame text, or a data byte of a bit write is
///         neither FF nor 00
PreparedRequest parsePreparedRequest(std::string_view request);

/// The data digits of a prepared answer to a read: the text between its eight digits of header and four of
/// check.
std::string preparedAnswerData(std::string_view answer);

} // namespace varda::core
