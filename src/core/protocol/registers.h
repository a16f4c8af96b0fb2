#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace varda::inline core {

/// How the memory is addressed: one bit of a word, or whole words.
enum class Access { Bit, Word };

inline constexpr int bitsOfWord = 16;

/// One register kind: its block in the controller's word memory and how pages offer it.
struct RegisterKind {
    std::string_view name;
    bool bitAccess;            ///< offered in bit mode too
    int base;                  ///< first word address of the block
    int last;                  ///< last word address of the block
    int highestListed;         ///< highest number that the pages' lists offer
    int highestSimulated;      ///< highest number that the simulator steps to
    std::size_t listWidth;     ///< digits of a number in the lists
    std::string_view next;     ///< the following kind
    std::string_view previous; ///< the preceding kind
};

/// The ten kinds in the order in which every list shows them.
std::span<const RegisterKind> registerKinds();

/// The kind of that exact name, or nullptr.
const RegisterKind* findRegisterKind(std::string_view kind);

/// The kind whose block holds a word, or nullptr.
const RegisterKind* kindOfWord(int word);

/// Base word address of a kind.
/// @param access "B" gives the base of the kinds with bit access, "W" that of all ten
/// @return the base, 0 for every other combination
int GetRegisterBase(std::string_view access, std::string_view kind);

struct SplitAddress {
    std::string kind;
    int number;
};

/// The kind whose block holds a word address, and the number within it.
/// @return the empty kind and 0 for an address below 0
SplitAddress SplitRegisterAddress(int address);

/// Last word address of a kind, 0 for an unknown one.
int GetRegisterLastAddress(std::string_view kind);

/// Highest number that the simulator accepts for a kind, 0 for an unknown one.
int GetRegisterMaxNumber(std::string_view kind);

/// The following kind in list order; "ERR" after the last, empty for an unknown one.
std::string NextRegisterKind(std::string_view kind);

/// The preceding kind in list order; "ERR" before the first, empty for an unknown one.
std::string PrevRegisterKind(std::string_view kind);

/// Texts of a page's kind list: seven in bit mode, eleven in word mode, the last one empty.
std::vector<std::string> kindListTexts(Access access);

/// Texts of a page's register number list for a kind; none for an unknown one.
std::vector<std::string> numberListTexts(std::string_view kind);

/// A register's number as lists and headings show it, zero-filled to the width of its kind; as it is for an
/// unknown one.
std::string registerNumberText(std::string_view kind, int number);

/// Texts of a page's bit number list, "0" .. "15".
std::vector<std::string> bitListTexts();

/// Texts of a page's count list, "1" .. limit.
std::vector<std::string> countListTexts(int limit);

constexpr int bitReadLimit = 256;
constexpr int wordReadLimit = 128;
constexpr int bitWriteLimit = 253;  ///< LEN = n + 2 stays within one byte
constexpr int wordWriteLimit = 126; ///< LEN = 2n + 2 stays within one byte

/// Word address of a register. @throws RuntimeError 6 above 32767
int registerAddress(Access access, std::string_view kind, int number);
/// The same of a number as it was typed. @throws RuntimeError 13, 6 where it is none, or too large
int registerAddress(Access access, std::string_view kind, std::string_view number);

/// The four hexadecimal digits of a word address; only the last four are kept.
std::string wordAddressText(int word);

/// The digits of a bit address: the last three of the word, then the bit without leading zeros, so that bits
/// above 15 lengthen the text.
std::string bitAddressText(int word, int bit);

} // namespace varda::core
