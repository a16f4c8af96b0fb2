#include "core/files/text_form.h"

#include <algorithm>
#include <array>

namespace varda::inline core {
namespace {

constexpr std::string_view littleEndianMark = "\xFF\xFE";
constexpr std::string_view bigEndianMark = "\xFE\xFF";
constexpr char32_t replacement = 0xFFFD;
constexpr char32_t firstPaired = 0x10000; ///< two units from here on
constexpr char32_t lastCharacter = 0x10FFFF;
constexpr char32_t unitBits = 10; ///< of a character in each unit of a pair

bool isHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool isLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

/// Takes the units of UTF-16 apart.
class UnitReader {
public:
    UnitReader(std::string_view bytes, TextForm form)
        : bytes_(bytes), high_(form == TextForm::Utf16BigEndian ? 0 : 1) {}

    bool atEnd() const { return bytes_.size() < 2; }

    char32_t nextCharacter() {
        const char32_t unit = take();
        if (!isHighSurrogate(unit) || atEnd() || !isLowSurrogate(peek())) {
            return unit;
        }
        return firstPaired + ((unit & 0x3FFU) << unitBits) + (take() & 0x3FFU);
    }

private:
    char32_t peek() const {
        return (static_cast<char32_t>(static_cast<std::uint8_t>(bytes_[high_])) << 8U) |
               static_cast<std::uint8_t>(bytes_[1 - high_]);
    }

    char32_t take() {
        const char32_t unit = peek();
        bytes_.remove_prefix(2);
        return unit;
    }

    std::string_view bytes_;
    std::size_t high_; ///< place of a unit's high byte
};

void appendUtf8(char32_t character, std::string& text) {
    constexpr char32_t lowSix = 0x3F;
    const auto append = [&text](char32_t byte) { text.push_back(static_cast<char>(byte)); };
    if (character < 0x80) {
        append(character);
        return;
    }
    if (character < 0x800) {
        append(0xC0 | (character >> 6U));
    } else {
        if (character < firstPaired) {
            append(0xE0 | (character >> 12U));
        } else {
            append(0xF0 | (character >> 18U));
            append(0x80 | ((character >> 12U) & lowSix));
        }
        append(0x80 | ((character >> 6U) & lowSix));
    }
    append(0x80 | (character & lowSix));
}

/// What the first byte of a character in UTF-8 tells.
struct Lead {
    std::size_t length; ///< 0 where none begins with the byte
    char32_t bits;
    char32_t smallest; ///< character that takes so many bytes
};

Lead leadOf(std::uint8_t byte) {
    if (byte < 0x80) {
        return {1, byte, 0};
    }
    if (byte >= 0xC0 && byte < 0xE0) {
        return {2, byte & 0x1FU, 0x80};
    }
    if (byte >= 0xE0 && byte < 0xF0) {
        return {3, byte & 0x0FU, 0x800};
    }
    if (byte >= 0xF0 && byte < 0xF8) {
        return {4, byte & 0x07U, firstPaired};
    }
    return {0, 0, 0};
}

/// Cuts the first character off a text; a byte that begins none is cut alone.
char32_t takeCharacter(std::string_view& text) {
    const Lead lead = leadOf(static_cast<std::uint8_t>(text.front()));
    char32_t character = lead.bits;
    bool isWhole = lead.length > 0 && lead.length <= text.size();
    for (std::size_t index = 1; isWhole && index < lead.length; ++index) {
        const auto byte = static_cast<std::uint8_t>(text[index]);
        isWhole = (byte & 0xC0U) == 0x80U;
        character = (character << 6U) | (byte & 0x3FU);
    }
    isWhole = isWhole && character >= lead.smallest && character <= lastCharacter;
    text.remove_prefix(isWhole ? lead.length : 1);
    return isWhole ? character : replacement;
}

void appendUnit(char32_t unit, TextForm form, std::string& bytes) {
    std::array<char, 2> pair = {static_cast<char>(unit >> 8U), static_cast<char>(unit & 0xFFU)};
    if (form == TextForm::Utf16LittleEndian) {
        std::swap(pair[0], pair[1]);
    }
    bytes.append(pair.data(), pair.size());
}

void appendUtf16(char32_t character, TextForm form, std::string& bytes) {
    if (character < firstPaired) {
        appendUnit(character, form, bytes);
        return;
    }
    const char32_t rest = character - firstPaired;
    appendUnit(0xD800 | (rest >> unitBits), form, bytes);
    appendUnit(0xDC00 | (rest & 0x3FFU), form, bytes);
}

} // namespace

TextForm textFormOf(std::string_view bytes) {
    if (bytes.starts_with(littleEndianMark)) {
        return TextForm::Utf16LittleEndian;
    }
    return bytes.starts_with(bigEndianMark) ? TextForm::Utf16BigEndian : TextForm::Plain;
}

std::optional<std::string> decodedText(std::string_view bytes, TextForm form) {
    if (form == TextForm::Plain) {
        return std::string(bytes);
    }
    if (bytes.size() % 2 != 0) {
        return std::nullopt;
    }
    std::string text;
    text.reserve(bytes.size() / 2);
    for (UnitReader reader(bytes.substr(littleEndianMark.size()), form); !reader.atEnd();) {
        appendUtf8(reader.nextCharacter(), text);
    }
    return text;
}

std::string encodedText(std::string text, TextForm form) {
    if (form == TextForm::Plain) {
        return text;
    }
    std::string bytes(form == TextForm::Utf16LittleEndian ? littleEndianMark : bigEndianMark);
    bytes.reserve(bytes.size() + 2 * text.size());
    for (std::string_view rest = text; !rest.empty();) {
        appendUtf16(takeCharacter(rest), form, bytes);
    }
    return bytes;
}

} // namespace varda::core
