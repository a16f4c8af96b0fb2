#pragma once

#include "core/base/bytes.h"
#include "core/pairs/sim_registers.h"

#include <string>
#include <string_view>
#include <vector>

namespace varda::inline core {

/// The fields of the simulation page that a prepared frame is built from, as they are typed.
struct SimFields {
    std::string destination; ///< station numbers; what is no number of 0 .. 255 counts as station 0
    std::string source;
    SimPosition position;
    std::string count;               ///< number of points to read
    std::string sendData;            ///< answer data in hexadecimal digits
    std::vector<std::string> points; ///< collected point lines of a write
};

/// The bytes of a frame that is written as pairs of hexadecimal digits without separators.
/// @throws RuntimeError 13 where the length is odd or a pair is no hexadecimal number
Bytes bytesOfFrameText(std::string_view text);

/// The frame check over a body, to be appended to it: low byte first, two digits each.
/// @param kind "BIT_READ", "BIT_READ_ANS", "WORD_READ", "WORD_READ_ANS", "BIT_WRITE", "BIT_WRITE_ANS",
///        "WORD_WRITE" or "WORD_WRITE_ANS"; any other kind, the two mixed ones included, has no check
/// @param body a body shorter than what its kind covers counts as followed by zero bytes
/// @throws RuntimeError 13 where the body of a kind with a check is no frame text
std::string AppendSimPacketCheck(std::string_view kind, std::string_view body);

/// The builders return a whole frame as text, its check included.
/// All throw RuntimeError 13 for a field or answer data that is no number, 6 for an address beyond 16 bits.
std::string MakeSimBitReadFormat(const SimFields& fields);
std::string MakeSimWordReadFormat(const SimFields& fields);
std::string MakeSimBitReadAnsFormat(const SimFields& fields);
std::string MakeSimWordReadAnsFormat(const SimFields& fields);

/// A write request over the collected points. The page stands behind the last point, so the address is found
/// by stepping back over all of them.
std::string MakeSimBitWriteFormat(const SimFields& fields);
std::string MakeSimWordWriteFormat(const SimFields& fields);
std::string MakeSimBitWriteAnsFormat(const SimFields& fields);
std::string MakeSimWordWriteAnsFormat(const SimFields& fields);

/// Mixed frames cannot be prepared: the text is empty.
std::string MakeSimMixedReadFormat();
std::string MakeSimMixedWriteFormat();

} // namespace varda::core
