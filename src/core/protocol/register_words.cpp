#include "core/protocol/register_words.h"

#include "core/base/blanks.h"
#include "core/base/conversion.h"
#include "core/base/name_index.h"
#include "core/protocol/hex_text.h"

#include <algorithm>

namespace varda::inline core {
namespace {

constexpr int valueOn = 0xFF;

bool isLetter(char character) {
    return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z');
}

/// The text in capitals of A to Z.
std::string capitals(std::string_view text) {
    std::string changed(text);
    std::ranges::transform(changed, changed.begin(), [](char character) {
        const bool isSmall = character >= 'a' && character <= 'z';
        return isSmall ? static_cast<char>(character - 'a' + 'A') : character;
    });
    return changed;
}

std::optional<int> readNumber(std::string_view digits, int most) {
    const auto number = readDigits(digits);
    return number && *number <= static_cast<std::uint32_t>(most) ? std::optional(static_cast<int>(*number))
                                                                 : std::nullopt;
}

} // namespace

std::string hexNumber(int value, std::size_t digits) { return hex(value, digits) + 'h'; }

std::string wordName(int word) {
    const RegisterKind* const kind = kindOfWord(word);
    return kind == nullptr
               ? "address " + hexNumber(word, 4)
               : std::string(kind->name) + ' ' + registerNumberText(kind->name, word - kind->base);
}

std::string bitName(int address) {
    return wordName(address / bitsOfWord) + '.' + std::to_string(address % bitsOfWord);
}

std::string nameOf(const Point& point) {
    return point.access == Access::Bit ? bitName(point.address) : wordName(point.address);
}

std::optional<Point> readPoint(std::string_view text) {
    text = withoutBlanksAround(text);
    const auto letters = static_cast<std::size_t>(std::ranges::find_if_not(text, isLetter) - text.begin());
    const RegisterKind* const kind = findRegisterKind(capitals(text.substr(0, letters)));
    const std::string_view digits = withoutBlanksAround(text.substr(letters));
    const auto dot = digits.find('.');
    if (kind == nullptr || digits.empty() || dot == 0) {
        return std::nullopt;
    }
    const auto number = readNumber(digits.substr(0, dot), kind->highestListed);
    if (!number) {
        return std::nullopt;
    }
    const int word = kind->base + *number;
    if (dot == std::string_view::npos) {
        return Point{Access::Word, word};
    }
    const std::string_view bits = digits.substr(dot + 1);
    const auto bit = readNumber(bits, bitsOfWord - 1);
    return bit ? std::optional(Point{Access::Bit, word * bitsOfWord + *bit}) : std::nullopt;
}

std::string wordInWords(std::string_view name, int value) {
    return std::string(name) + " = " + hexNumber(value, 4) + " = " + std::to_string(value);
}

std::optional<bool> readBit(std::string_view text) {
    return equalNames(text, "ON") || text == "1"    ? std::optional(true)
           : equalNames(text, "OFF") || text == "0" ? std::optional(false)
                                                    : std::nullopt;
}

std::string bitValue(int value) { return value == valueOn ? "ON" : value == 0 ? "OFF" : hexNumber(value, 2); }

} // namespace varda::core
