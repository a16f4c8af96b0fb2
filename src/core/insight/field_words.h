#pragma once

#include "core/insight/decoder.h"
#include "core/insight/register_names.h"

#include <string>

namespace varda::inline core {

// A decoded frame in words. Those who have names for registers hand them in.

/// "1 byte", "12 bytes".
std::string counted(std::size_t number, const std::string& what);

/// "word read", "answer to bit write", "unknown".
std::string kindInWords(const FrameKind& kind);

/// What a field is: "DA", "Address", a value's register.
std::string fieldName(const Field& field, const RegisterNames& names = noNames());
/// What it says: "station 5", "1234h = 4660".
std::string fieldValue(const DecodedFrame& frame, const Field& field, const RegisterNames& names = noNames());
/// Both in one line, as a tool tip has it.
std::string fieldInWords(const DecodedFrame& frame, const Field& field,
                         const RegisterNames& names = noNames());

/// What is wrong with a frame, as a sentence.
std::string faultInWords(const DecodedFrame& frame, Fault fault);

/// "W 0100 .. W 0109", "R 0000.3"; commas between runs.
std::string runsInWords(const std::vector<PointRun>& runs, const RegisterNames& names = noNames());

/// A number in the forms in which an engineer may want to see it.
struct NumberForms {
    std::string decimal;
    std::string withSign; ///< as a number of so many bits with a sign
    std::string hex;
    std::string binary; ///< in groups of four
};

/// @param access a bit has one byte, a word two
NumberForms numberForms(Access access, int value);

} // namespace varda::core
