#include "core/insight/json_text.h"

#include "core/protocol/hex_text.h"

#include <algorithm>

namespace varda::inline core {
namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";

unsigned byteOf(char character) { return static_cast<unsigned char>(character); }

bool continues(char character) { return (byteOf(character) & 0xC0U) == 0x80U; }

/// Bytes of the character that a text begins with, by its first byte; 0 for a byte that begins none.
std::size_t lengthByFirst(unsigned first) {
    return first < 0x80 ? 1 : first < 0xC2 ? 0 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : first < 0xF5 ? 4 : 0;
}

/// Whether the second byte keeps a character out of what UTF-8 forbids: longer forms than needed, halves of
/// pairs, numbers that are too high.
bool isAllowed(unsigned first, unsigned second) {
    return !(first == 0xE0 && second < 0xA0) && !(first == 0xED && second >= 0xA0) &&
           !(first == 0xF0 && second < 0x90) && !(first == 0xF4 && second >= 0x90);
}

/// Bytes of the character that a text begins with; 0 where that is none.
std::size_t characterLength(std::string_view text) {
    const std::size_t length = lengthByFirst(byteOf(text.front()));
    if (length > text.size() || !std::ranges::all_of(text.substr(std::min<std::size_t>(length, 1),
                                                                 length - std::min<std::size_t>(length, 1)),
                                                     continues)) {
        return 0;
    }
    return length < 2 || isAllowed(byteOf(text[0]), byteOf(text[1])) ? length : 0;
}

std::string escaped(char character) {
    switch (character) {
    case '"':
        return "\\\"";
    case '\\':
        return "\\\\";
    case '\n':
        return "\\n";
    case '\t':
        return "\\t";
    default:
        return byteOf(character) < ' ' ? "\\u" + hex(static_cast<int>(byteOf(character)), 4)
                                       : std::string(1, character);
    }
}

} // namespace

std::string jsonString(std::string_view text) {
    std::string json = "\"";
    while (!text.empty()) {
        const std::size_t length = characterLength(text);
        json += length == 0   ? std::string(replacement)
                : length == 1 ? escaped(text.front())
                              : std::string(text.substr(0, length));
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return json + '"';
}

} // namespace varda::core
