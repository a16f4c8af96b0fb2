#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace varda::inline core {

/// One field of a pasted text that is to be a word.
struct PastedWord {
    std::string text;         ///< its digits, as a cell shows them; of a field that is no word all of it
    std::optional<int> value; ///< 0 .. 65535; nothing where the field is no word
    bool hexadecimal = false;

    /// An empty field leaves its place as it is.
    bool isEmpty() const { return text.empty(); }
};

/// The fields of a text, between tabs and line ends, as tables are copied. A field is decimal, or hexadecimal
/// with "0x" or "&H" before it or "h" behind it; blanks around it are dropped. A line end at the end of the
/// text ends its last line and begins none.
std::vector<PastedWord> pastedWords(std::string_view text);

/// One such field alone. @return 0 .. 65535; nothing where it is no word
std::optional<int> readWord(std::string_view text);

/// What of a pasted text can be entered.
struct WordsThatFit {
    struct Placed {
        std::size_t place; ///< from the first one on
        PastedWord word;
    };
    std::vector<Placed> words;
    std::size_t offered = 0;     ///< fields that are not empty
    std::size_t withoutRoom = 0; ///< words behind the last place
    std::string notAWord;        ///< the first field that is none

    bool isAll() const { return words.size() == offered; }
};

/// @param room places from the first one on
WordsThatFit fitWords(const std::vector<PastedWord>& words, std::size_t room);

/// How many fit, and why the others do not.
std::string fitInWords(const WordsThatFit& fit);

} // namespace varda::core
