#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace varda::inline core {

/// What is odd about something that came as the answer to a request: sentences, each with a blank before it.
/// Empty where it is the answer that it should be.
std::string remarksOnAnswer(std::span<const std::uint8_t> bytes, std::span<const std::uint8_t> request);

/// What is odd about frames that nobody asked for.
std::string remarksOnFrames(std::span<const std::uint8_t> bytes);

} // namespace varda::core
