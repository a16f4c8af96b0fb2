#include "core/protocol/register_words.h"

#include "core/protocol/hex_text.h"

#include <algorithm>

namespace varda::inline core {
namespace {

constexpr int bitsOfWord = 16;
constexpr int valueOn = 0xFF;

} // namespace

std::string hexNumber(int value, std::size_t digits) { return hex(value, digits) + 'h'; }

std::string wordName(int word) {
    const auto kinds = registerKinds();
    const auto kind = std::ranges::find_if(
        kinds, [word](const RegisterKind& other) { return word >= other.base && word <= other.last; });
    if (kind == kinds.end()) {
        return "address " + hexNumber(word, 4);
    }
    return std::string(kind->name) + ' ' + registerNumberText(kind->name, word - kind->base);
}

std::string bitName(int address) {
    return wordName(address / bitsOfWord) + '.' + std::to_string(address % bitsOfWord);
}

std::string nameOf(const Point& point) {
    return point.access == Access::Bit ? bitName(point.address) : wordName(point.address);
}

std::string wordInWords(std::string_view name, int value) {
    return std::string(name) + " = " + hexNumber(value, 4) + " = " + std::to_string(value);
}

std::string bitValue(int value) { return value == valueOn ? "ON" : value == 0 ? "OFF" : hexNumber(value, 2); }

} // namespace varda::core
