#include "core/protocol/pasted_words.h"

#include "core/base/blanks.h"
#include "core/protocol/hex_text.h"

#include <charconv>
#include <cstdint>

namespace varda::inline core {
namespace {

constexpr std::size_t mostHexDigits = 4;
constexpr std::size_t decimalDigits = 5;

bool isEither(char character, char lower, char upper) { return character == lower || character == upper; }

/// Drops what marks a hexadecimal number. @return whether there was a mark
bool dropHexMark(std::string_view& field) {
    const bool prefixed = field.size() > 2 && ((field[0] == '0' && isEither(field[1], 'x', 'X')) ||
                                               (field[0] == '&' && isEither(field[1], 'h', 'H')));
    if (prefixed) {
        field.remove_prefix(2);
        return true;
    }
    const bool suffixed = field.size() > 1 && isEither(field.back(), 'h', 'H');
    field.remove_suffix(suffixed ? 1 : 0);
    return suffixed;
}

std::optional<int> wordOf(std::string_view digits, int base) {
    std::uint16_t value = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value, base);
    return error == std::errc{} && stop == end ? std::optional<int>(value) : std::nullopt;
}

std::string upperCase(std::string_view digits) {
    std::string text(digits);
    for (char& digit : text) {
        digit = digit >= 'a' && digit <= 'f' ? static_cast<char>(digit - ('a' - 'A')) : digit;
    }
    return text;
}

/// As it was written, while that is no longer than a cell is wide.
std::string shownDigits(std::string_view digits, int value, bool hexadecimal) {
    if (hexadecimal) {
        return digits.size() <= mostHexDigits ? upperCase(digits) : hex(value);
    }
    return digits.size() <= decimalDigits ? std::string(digits) : std::to_string(value);
}

PastedWord wordIn(std::string_view field) {
    field = withoutBlanksAround(field);
    std::string_view digits = field;
    const bool hexadecimal = dropHexMark(digits);
    const std::optional<int> value = wordOf(digits, hexadecimal ? 16 : 10);
    return {value ? shownDigits(digits, *value, hexadecimal) : std::string(field), value, hexadecimal};
}

std::string_view withoutEnd(std::string_view text, char end) {
    text.remove_suffix(text.ends_with(end) ? 1 : 0);
    return text;
}

} // namespace

std::optional<int> readWord(std::string_view text) { return wordIn(text).value; }

std::vector<PastedWord> pastedWords(std::string_view text) {
    text = withoutEnd(text, '\n');
    std::vector<PastedWord> words;
    bool more = !withoutEnd(text, '\r').empty();
    while (more) {
        const std::size_t end = text.find_first_of("\t\n");
        words.push_back(wordIn(withoutEnd(text.substr(0, end), '\r')));
        more = end != std::string_view::npos;
        text.remove_prefix(more ? end + 1 : text.size());
    }
    return words;
}

WordsThatFit fitWords(const std::vector<PastedWord>& words, std::size_t room) {
    WordsThatFit fit;
    for (std::size_t place = 0; place < words.size(); ++place) {
        const PastedWord& word = words[place];
        fit.offered += word.isEmpty() ? 0 : 1;
        if (!word.value) {
            fit.notAWord = fit.notAWord.empty() ? word.text : fit.notAWord;
        } else if (place < room) {
            fit.words.push_back({place, word});
        } else {
            ++fit.withoutRoom;
        }
    }
    return fit;
}

std::string fitInWords(const WordsThatFit& fit) {
    constexpr std::size_t shownCharacters = 20;
    std::string text =
        "Of " + std::to_string(fit.offered) + " pasted words, " + std::to_string(fit.words.size()) + " fit.";
    if (!fit.notAWord.empty()) {
        text += " \"" + fit.notAWord.substr(0, shownCharacters) + "\" is no word of 0 to 65535.";
    }
    if (fit.withoutRoom > 0) {
        text += " The request has no place for " + std::to_string(fit.withoutRoom) + '.';
    }
    return text;
}

} // namespace varda::core
