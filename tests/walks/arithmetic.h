#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// The models' own arithmetic. It shares nothing with the program, so that an error in one does not hide
/// itself in the other.
namespace varda::walks {

using Octets = std::vector<std::uint8_t>;

/// What became of a text that was to be a 16-bit number.
struct Number {
    int value = 0;
    int error = 0; ///< 0, 13 for no number at all, 6 for one that is too large
    explicit operator bool() const { return error == 0; }
};

Number number16(std::string_view text);
/// A number of any size that fits 32 bits.
Number number32(std::string_view text);
/// Hexadecimal digits as a number; 13 where another letter stands among them.
Number hexNumber(std::string_view digits);

/// Upper-case digits without zeros in front; a negative number shows its 16-bit pattern.
std::string hex(int value);
/// The last `width` digits of the number, filled with zeros on the left.
std::string hex(int value, std::size_t width);
std::string lastCharacters(const std::string& text, std::size_t count);

/// The reflected CRC-16 with polynomial 0xA001, bit by bit.
unsigned crc(const Octets& octets, std::size_t count);
/// Whether the check stands where LEN says; octets behind it may follow.
bool hasRightCrc(const Octets& frame);

struct Kind {
    const char* name;
    bool bits;
    int base;
    int highest; ///< number that lists offer
    int width;
};
const std::vector<Kind>& kinds();
/// The base of a kind for bit or word access; 0 where that access does not know it.
int baseOf(bool bits, std::string_view kind);

std::vector<std::string> kindEntries(bool bits);
std::vector<std::string> numberEntries(std::string_view kind);
std::vector<std::string> bitEntries();
std::vector<std::string> countEntries(int highest);

/// The address text of a bit, longer than four digits where its number is above 15.
std::string bitAddress(int word, int bit);
std::string wordAddress(int word);

} // namespace varda::walks
