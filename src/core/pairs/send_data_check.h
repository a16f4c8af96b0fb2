#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace varda::inline core {

enum class SendDataVerdict : std::uint8_t {
    Accepted,
    LengthDiffers, ///< the digits do not divide into whole values
    ValueRefused,  ///< a value is none that the kind knows
};

/// Whether typed answer data fit their kind. No data at all fit every kind.
/// @param kind "BIT_READ": groups of two digits, "00" or "FF"; "WORD_READ": groups of four hexadecimal
///        digits; "BIT_WRITE" and "WORD_WRITE" carry no data and accept anything; no other kind accepts any
SendDataVerdict CheckSimSendData(std::string_view kind, std::string_view text);

/// The messages to show for a verdict in their order, none for accepted data.
std::vector<std::string> sendDataMessages(std::string_view kind, SendDataVerdict verdict);

/// What a key typed into the answer data becomes.
/// @param answerKind text of the answer kind list
/// @return the character to enter, nothing where the key is dropped
std::optional<char> filterSendDataKey(std::string_view answerKind, char key);

} // namespace varda::core
