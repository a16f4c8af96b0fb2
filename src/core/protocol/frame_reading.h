#pragma once

#include "core/base/bytes.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace varda::inline core {

// Frames in words, for who looks at their bytes one by one.

/// The register of a word address, "W 0057"; "address 0E00h" where no kind has it.
std::string wordName(int word);

/// The register of a bit address, "M 0002.3".
std::string bitName(int address);

/// A word and its value in both bases: "W 0057 = 1234h = 4660".
std::string wordInWords(std::string_view name, int value);

/// A bit and its value: "M 0002.3 = ON"; a byte that is neither ON nor OFF shows as it is.
std::string bitInWords(std::string_view name, int value);

/// What byte `index` of a frame says, of a data byte the whole value that it belongs to.
/// @param request what the frame answers; an empty one leaves the answer's registers unnamed
/// @return empty where the frame has no such byte
std::string byteInWords(std::span<const std::uint8_t> frame, std::size_t index,
                        std::span<const std::uint8_t> request);

/// The bytes of a frame text of either form: groups with a space behind each, or two digits for every byte
/// run together. What follows the first group that is no byte is left out.
Bytes bytesOfText(std::string_view text);

/// The byte of a frame text to which the character at `place` belongs; a space belongs to the group before
/// it.
std::size_t byteAt(std::string_view text, std::size_t place);

} // namespace varda::core
