#pragma once

#include "core/protocol/register_words.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace varda::inline core {

/// Everything that a controller remembers, as a value. The words of a kind are those of its block, base ..
/// last (registerKinds()).
class ControllerMemory {
public:
    /// Words, addresses 0 .. 3583. Bit b of word w has the bit address w * 16 + b.
    static constexpr int wordCount = 3584;
    static constexpr int bitCount = wordCount * 16;

    /// @throws RuntimeError 9 outside the memory, as all of these do
    std::uint16_t word(int address) const;
    void setWord(int address, std::uint16_t value);
    bool bit(int address) const;
    void setBit(int address, bool isOn);
    /// A word, or a bit as 0 or 1.
    int value(const Point& point) const;
    void setValue(const Point& point, int value);

    std::span<const std::uint16_t> words() const { return words_; }
    std::span<std::uint16_t> words() { return words_; }

    bool operator==(const ControllerMemory&) const = default;

private:
    std::array<std::uint16_t, wordCount> words_{};
};

/// No file of a memory is larger, in bytes: every bit by itself takes a tenth of it.
constexpr std::size_t largestMemoryFile = std::size_t{16} << 20U;

/// Reads a memory as CSV: a register and its value a line, "W 0100,4660", "W 0100,1A2Bh", "R 0012.3,ON"; a
/// semicolon or a tab may stand for the comma, as spreadsheets write. Lines that begin with "#" are comments;
/// a later line counts where two name the same. What is not named is 0.
/// @throws RuntimeError 13 whose description names the line and the remedy
ControllerMemory readMemory(std::string_view text);

/// The same text of a memory: every word that is not 0, kind by kind.
std::string memoryText(const ControllerMemory& memory);

} // namespace varda::core
