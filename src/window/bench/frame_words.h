#pragma once

#include "core/insight/decoder.h"
#include "core/insight/field_words.h"

#include <QString>

#include <cstdint>
#include <span>

namespace varda::window {

/// "word read, W 0100 .. W 0103": what a frame is, and what it speaks of.
inline QString frameInWords(std::span<const std::uint8_t> bytes) {
    const DecodedFrame frame = decode(bytes);
    const std::string registers = runsInWords(runsOf(frame));
    return QString::fromStdString(kindInWords(frame.kind) + (registers.empty() ? "" : ", " + registers));
}

} // namespace varda::window
