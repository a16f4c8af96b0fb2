#pragma once

#include <string>
#include <system_error>

namespace varda::inline core {

/// What an error of the system means, in words that every window can show: in English, or in UTF-8 where the
/// system has words in the user's language alone. Never in the bytes of a locale.
std::string systemText(const std::error_code& error);

} // namespace varda::core
