#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace varda::inline core {

/// What byte `index` of a frame says, of a number of more bytes the whole of it.
/// @param request what the frame answers; an empty one leaves the answer's registers unnamed
/// @return empty where the frame has no such byte
std::string byteInWords(std::span<const std::uint8_t> frame, std::size_t index,
                        std::span<const std::uint8_t> request);

} // namespace varda::core
