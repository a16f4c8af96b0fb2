#include "core/protocol/point_list.h"

#include "core/base/conversion.h"

#include <algorithm>

namespace varda::inline core {
namespace {

constexpr char tab = '\t';

std::optional<Access> accessOf(std::string_view line) {
    switch (line.front()) {
    case 'B':
        return Access::Bit;
    case 'W':
        return Access::Word;
    default:
        return std::nullopt;
    }
}

std::string_view before(std::string_view text, char separator) {
    return text.substr(0, text.find(separator));
}

std::string_view behind(std::string_view text, char separator) {
    const std::size_t at = text.find(separator);
    return at == std::string_view::npos ? std::string_view() : text.substr(at + 1);
}

/// Kind and number of a line.
std::string_view namedPart(std::string_view line) { return before(behind(line, tab), tab); }

std::size_t lettersOf(std::string_view named) {
    const auto isLetter = [](char character) { return character >= 'A' && character <= 'Z'; };
    return static_cast<std::size_t>(std::ranges::find_if_not(named, isLetter) - named.begin());
}

} // namespace

std::string bitPointLine(std::string_view kind, std::string_view number, std::string_view bit,
                         std::string_view value) {
    return std::string("BIT\t").append(kind).append(number).append(".").append(bit).append("\t").append(
        value);
}

std::string wordPointLine(std::string_view kind, std::string_view number, std::string_view value) {
    return std::string("WORD\t").append(kind).append(number).append("\t").append(value);
}

std::string pointName(std::string_view line) {
    const std::string_view named = namedPart(line);
    const std::size_t letters = lettersOf(named);
    return std::string(named.substr(0, letters)) + ' ' + std::string(named.substr(letters));
}

std::string pointAdvice(int number, std::string_view line) {
    const std::string point = pointName(line) + ": ";
    if (number != run_time_error::typeMismatch) {
        return point +
               "with this point a number or the request is too large. Remove points, or lower their counts.";
    }
    if (lettersOf(namedPart(line)) > 1) {
        return point +
               "mixed requests carry no two-letter kind. Remove the point; the single pages carry it.";
    }
    return pointValue(line).empty() ? point + "the point has no value. Remove it, and add it with one."
                                    : point + "the point bears no number. Remove it, and add it with one.";
}

std::string_view pointValue(std::string_view line) {
    const std::size_t lastTab = line.rfind(tab);
    return lastTab == std::string_view::npos ? line : line.substr(lastTab + 1);
}

PointLine parsePointLine(std::string_view line) {
    const auto access = accessOf(line);
    const std::string_view named = namedPart(line);
    // kept: one character is cut off as the kind, so the number of "TC", "SV", "PV" and "SR" is no number
    const std::string_view number = named.empty() ? named : named.substr(1);
    return {access, std::string(named.substr(0, 1)),
            toInteger(access == Access::Bit ? before(number, '.') : number),
            access == Access::Bit ? toInteger(behind(number, '.')) : 0, std::string(pointValue(line))};
}

std::uint8_t GetListDataLength(std::span<const std::string> lines, int perBit, int perWord) {
    std::uint8_t sum = 0;
    for (const std::string& line : lines) {
        if (!line.empty()) {
            const auto access = accessOf(line);
            const int size = access == Access::Bit ? perBit : access == Access::Word ? perWord : 0;
            sum = takingPoint(line, [=] { return toByte(sum + size); });
        }
    }
    return sum;
}

std::uint8_t GetMRAnswerLength(std::span<const std::string> lines) {
    std::uint8_t sum = 0;
    for (const std::string& line : lines) {
        if (!line.empty()) {
            const auto access = accessOf(line);
            const int perPoint = access == Access::Bit ? 1 : access == Access::Word ? 2 : 0;
            sum = takingPoint(line, [&] { return toByte(sum + perPoint * toInteger(pointValue(line))); });
        }
    }
    return sum;
}

} // namespace varda::core
