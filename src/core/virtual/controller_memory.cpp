#include "core/virtual/controller_memory.h"

#include "core/base/blanks.h"
#include "core/base/entry_lines.h"
#include "core/base/runtime_error.h"
#include "core/protocol/pasted_words.h"
#include "core/protocol/registers.h"

#include <algorithm>
#include <optional>

namespace varda::inline core {
namespace {

constexpr std::string_view heading =
    "# What a controller remembers: register,value; what is not named is 0\n";

std::size_t checked(int address, int end) {
    if (address < 0 || address >= end) {
        throw subscriptOutOfRange();
    }
    return static_cast<std::size_t>(address);
}

std::uint16_t maskOf(int bit) {
    return static_cast<std::uint16_t>(1U << static_cast<unsigned>(bit % bitsOfWord));
}

/// What of a bad line stands in a report.
std::string shown(std::string_view part) {
    constexpr std::size_t most = 40;
    return '"' + std::string(part.substr(0, most)) + '"';
}

/// Spreadsheets put quotes round what they think needs them.
std::string_view field(std::string_view text) {
    text = withoutBlanksAround(text);
    const bool isQuoted = text.size() > 1 && text.front() == '"' && text.back() == '"';
    return withoutBlanksAround(isQuoted ? text.substr(1, text.size() - 2) : text);
}

std::optional<int> bitOf(std::string_view text) {
    const std::optional<bool> bit = readBit(text);
    return bit ? std::optional<int>(*bit) : std::nullopt;
}

void readLine(std::string_view line, ControllerMemory& memory) {
    const auto comma = std::min(line.find_first_of(",;\t"), line.size());
    const std::string_view name = field(line.substr(0, comma));
    const std::string_view typed = field(line.substr(std::min(comma + 1, line.size())));
    const std::optional<Point> point = readPoint(name);
    if (!point) {
        throw RuntimeError(run_time_error::typeMismatch,
                           shown(name) +
                               " is no register. Write its kind and number, as W 0100, and a bit as "
                               "R 0012.3, then a comma and the value.");
    }
    const bool isBit = point->access == Access::Bit;
    const std::optional<int> value = isBit ? bitOf(typed) : readWord(typed);
    if (!value) {
        throw RuntimeError(run_time_error::typeMismatch,
                           shown(typed) + " is no value for " + nameOf(*point) +
                               (isBit ? ". Write ON or OFF." : ". Write 0 to 65535, or 0h to FFFFh."));
    }
    memory.setValue(*point, *value);
}

} // namespace

std::uint16_t ControllerMemory::word(int address) const { return words_[checked(address, wordCount)]; }

void ControllerMemory::setWord(int address, std::uint16_t value) {
    words_[checked(address, wordCount)] = value;
}

bool ControllerMemory::bit(int address) const {
    checked(address, bitCount);
    return (word(address / bitsOfWord) & maskOf(address)) != 0;
}

void ControllerMemory::setBit(int address, bool isOn) {
    checked(address, bitCount);
    const int others = word(address / bitsOfWord) & ~maskOf(address);
    setWord(address / bitsOfWord, static_cast<std::uint16_t>(isOn ? others | maskOf(address) : others));
}

int ControllerMemory::value(const Point& point) const {
    return point.access == Access::Bit ? static_cast<int>(bit(point.address)) : word(point.address);
}

void ControllerMemory::setValue(const Point& point, int value) {
    if (point.access == Access::Bit) {
        setBit(point.address, value != 0);
    } else {
        setWord(point.address, static_cast<std::uint16_t>(value));
    }
}

ControllerMemory readMemory(std::string_view text) {
    ControllerMemory memory;
    forEachEntry(text, [&memory](std::string_view line, std::size_t number) {
        try {
            readLine(line, memory);
        } catch (const RuntimeError& error) {
            throw RuntimeError(error.number(), "Line " + std::to_string(number) + ": " + error.what());
        }
    });
    return memory;
}

std::string memoryText(const ControllerMemory& memory) {
    std::string text(heading);
    for (int address = 0; address < ControllerMemory::wordCount; ++address) {
        if (const int value = memory.word(address); value != 0) {
            text += wordName(address) + ',' + std::to_string(value) + '\n';
        }
    }
    return text;
}

} // namespace varda::core
