#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace varda::inline core {

/// How a file writes down its text, told by the byte order mark at its beginning.
enum class TextForm : std::uint8_t {
    Plain, ///< without a mark, or with that of UTF-8: kept byte for byte
    Utf16LittleEndian,
    Utf16BigEndian,
};

TextForm textFormOf(std::string_view bytes);

/// The text of a file in UTF-8, without a mark of UTF-16. Half a surrogate pair becomes three bytes of its
/// own, so that it comes back as it was.
/// @return nothing where UTF-16 has an odd number of bytes
std::optional<std::string> decodedText(std::string_view bytes, TextForm form);

/// The bytes that stand for a text, with the mark of UTF-16; what is no UTF-8 becomes the replacement
/// character there.
std::string encodedText(std::string text, TextForm form);

} // namespace varda::core
