#include "core/protocol/frame_reading.h"

#include "core/protocol/crc16.h"
#include "core/protocol/frame.h"
#include "core/protocol/hex_text.h"
#include "core/protocol/mixed_requests.h"
#include "core/protocol/registers.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace varda::inline core {
namespace {

using Octets = std::span<const std::uint8_t>;

constexpr int bitsOfWord = 16;
constexpr int wordMarkInAddress = wordMark << 8;
constexpr int valueOn = 0xFF;
constexpr std::size_t bitItem = frame_size::address + 1;
constexpr std::size_t wordItem = frame_size::address + 2;

/// A bit or a word that a frame speaks of.
struct Point {
    Access access;
    int address; ///< of the word, or of the bit
};

std::string hexNumber(int value, std::size_t digits) { return hex(value, digits) + 'h'; }

/// 0 where a frame was cut within the number.
int numberAt(Octets bytes, std::size_t at) { return at + 1 < bytes.size() ? lowHigh(bytes, at) : 0; }

std::string nameOf(const Point& point) {
    return point.access == Access::Bit ? bitName(point.address) : wordName(point.address);
}

std::string valueOf(const std::string& name, Access access, Octets bytes, std::size_t at) {
    if (access == Access::Bit) {
        return bitInWords(name, bytes[at]);
    }
    return at + 1 < bytes.size() ? wordInWords(name, numberAt(bytes, at)) : name + ", its first byte";
}

/// A point of a mixed request, which says in its address what it is.
Point mixedPoint(Octets frame, std::size_t at) {
    const int address = numberAt(frame, at);
    const bool isWord = (address & wordMarkInAddress) != 0;
    return isWord ? Point{Access::Word, address & ~wordMarkInAddress} : Point{Access::Bit, address};
}

/// One frame, and where its parts stand.
class Reader {
public:
    Reader(Octets frame, Octets request) : frame_(frame), request_(request) {}

    std::string describe(std::size_t index) const {
        switch (index) {
        case offset::destination:
            return "DA: station " + std::to_string(frame_[index]);
        case offset::source:
            return "SA: station " + std::to_string(frame_[index]);
        case offset::command:
            return "CMD " + hexNumber(frame_[index], 2) + ": " + commandName();
        case offset::length:
            return "LEN " + hexNumber(frame_[index], 2) + " = " + std::to_string(frame_[index]);
        default:
            return index >= checkAt() ? check() : body(index);
        }
    }

private:
    std::uint8_t code() const { return frame_.size() > offset::command ? frame_[offset::command] : 0; }
    const Command* command() const { return findCommand(code()); }
    const Command* answered() const {
        return (code() & answerMark) != 0 ? findCommand(code() & static_cast<std::uint8_t>(~answerMark))
                                          : nullptr;
    }

    /// A prepared frame may bear another LEN; its check stands at its end all the same.
    std::size_t checkAt() const { return std::max(frame_.size(), frame_size::envelope) - frame_size::check; }

    static std::string nameOf(const Command& command) {
        const std::string what = command.access == Access::Bit    ? "bit "
                                 : command.access == Access::Word ? "word "
                                                                  : "mixed ";
        return what + (command.writes ? "write" : "read");
    }

    std::string commandName() const {
        if (const Command* const asked = command()) {
            return nameOf(*asked);
        }
        const Command* const asked = answered();
        return asked != nullptr ? "answer to a " + nameOf(*asked) : "no command of this protocol";
    }

    std::string check() const {
        const int found = numberAt(frame_, checkAt());
        const int right = crc16(frame_.first(checkAt()));
        const std::string shown = "CRC " + hexNumber(found, 4);
        return found == right ? shown + ", right"
                              : shown + "; of the bytes before it, it is " + hexNumber(right, 4);
    }

    std::string body(std::size_t index) const {
        if (const Command* const asked = command()) {
            return asked->access ? singleBody(*asked, index) : mixedBody(*asked, index);
        }
        const Command* const asked = answered();
        if (asked == nullptr) {
            return plain(index);
        }
        return asked->writes ? acknowledgement(index) : answerBody(*asked, index);
    }

    std::string acknowledgement(std::size_t index) const {
        return frame_[index] == 0 ? "00h: written" : hexNumber(frame_[index], 2);
    }

    // Requests

    std::string singleBody(const Command& asked, std::size_t index) const {
        const Point first{*asked.access, numberAt(frame_, offset::address)};
        if (index < offset::count) {
            return "Address " + hexNumber(first.address, 4) + ": " + core::nameOf(first);
        }
        return asked.writes ? data(first, offset::data, index) : countInWords(index);
    }

    std::string countInWords(std::size_t index) const {
        const int count = frame_[index] == 0 ? 256 : frame_[index];
        const bool bits = command()->access == Access::Bit;
        return "Count " + hexNumber(frame_[index], 2) + ": " + std::to_string(count) +
               (bits ? " bit" : " word") + (count == 1 ? "" : "s");
    }

    std::string data(const Point& first, std::size_t begin, std::size_t index) const {
        const auto size = static_cast<std::size_t>(valueSize(first.access));
        const std::size_t value = (index - begin) / size;
        const Point point{first.access, first.address + static_cast<int>(value)};
        return valueOf(core::nameOf(point), point.access, frame_.first(checkAt()), begin + value * size);
    }

    std::string mixedBody(const Command& asked, std::size_t index) const {
        std::size_t at = offset::body;
        while (at + itemSize(asked, at) <= index) {
            at += itemSize(asked, at);
        }
        const Point point = mixedPoint(frame_, at);
        const std::string name = core::nameOf(point);
        if (!asked.writes || index < at + frame_size::address) {
            return "Address " + hexNumber(numberAt(frame_, at), 4) + ": " + name;
        }
        return valueOf(name, point.access, frame_.first(checkAt()), at + frame_size::address);
    }

    std::size_t itemSize(const Command& asked, std::size_t at) const {
        return !asked.writes                                   ? frame_size::address
               : mixedPoint(frame_, at).access == Access::Word ? wordItem
                                                               : bitItem;
    }

    // Answers

    std::string answerBody(const Command& asked, std::size_t index) const {
        const bool isKnown = request_.size() > offset::count && request_[offset::command] == asked.code;
        if (!asked.access) {
            return isKnown ? mixedAnswer(index) : plain(index);
        }
        if (!isKnown) {
            return unnamed(*asked.access, index);
        }
        return data({*asked.access, numberAt(request_, offset::address)}, offset::body, index);
    }

    std::string plain(std::size_t index) const {
        return hexNumber(frame_[index], 2) + " = " + std::to_string(frame_[index]);
    }

    std::string unnamed(Access access, std::size_t index) const {
        const auto size = static_cast<std::size_t>(valueSize(access));
        const std::size_t value = (index - offset::body) / size;
        const std::string name = (access == Access::Bit ? "Bit +" : "Word +") + std::to_string(value);
        return valueOf(name, access, frame_.first(checkAt()), offset::body + value * size);
    }

    /// The values stand in the order of the request's points.
    std::string mixedAnswer(std::size_t index) const {
        std::size_t at = offset::body;
        const std::size_t points = request_.size() - frame_size::check;
        for (std::size_t asked = offset::body; asked + 1 < points; asked += frame_size::address) {
            const Point point = mixedPoint(request_, asked);
            const auto size = static_cast<std::size_t>(valueSize(point.access));
            if (index < at + size) {
                return valueOf(core::nameOf(point), point.access, frame_.first(checkAt()), at);
            }
            at += size;
        }
        return plain(index);
    }

    Octets frame_;
    Octets request_;
};

constexpr char separator = ' ';

bool isGrouped(std::string_view text) { return text.find(separator) != std::string_view::npos; }

/// The groups of a frame text, or its pairs of digits.
std::string_view takeGroup(std::string_view& text, bool grouped) {
    constexpr std::size_t digits = 2;
    const std::string_view group = text.substr(0, grouped ? text.find(separator) : digits);
    text.remove_prefix(std::min(text.size(), group.size() + (grouped ? 1 : 0)));
    return group;
}

/// One or two digits: a station's group may have one.
std::optional<std::uint8_t> octet(std::string_view group) {
    std::uint8_t value = 0;
    const char* const end = group.data() + group.size();
    const auto [stop, error] = std::from_chars(group.data(), end, value, 16);
    return error == std::errc{} && stop == end ? std::optional(value) : std::nullopt;
}

} // namespace

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

std::string wordInWords(std::string_view name, int value) {
    return std::string(name) + " = " + hexNumber(value, 4) + " = " + std::to_string(value);
}

std::string bitInWords(std::string_view name, int value) {
    const std::string shown = value == valueOn ? "ON" : value == 0 ? "OFF" : hexNumber(value, 2);
    return std::string(name) + " = " + shown;
}

std::string byteInWords(std::span<const std::uint8_t> frame, std::size_t index,
                        std::span<const std::uint8_t> request) {
    return index < frame.size() ? Reader(frame, request).describe(index) : std::string();
}

Bytes bytesOfText(std::string_view text) {
    const bool grouped = isGrouped(text);
    Bytes bytes;
    while (!text.empty()) {
        const std::optional<std::uint8_t> byte = octet(takeGroup(text, grouped));
        if (!byte) {
            break;
        }
        bytes.push_back(*byte);
    }
    return bytes;
}

std::size_t byteAt(std::string_view text, std::size_t place) {
    const std::string_view before = text.substr(0, place);
    return isGrouped(text) ? static_cast<std::size_t>(std::ranges::count(before, separator)) : place / 2;
}

} // namespace varda::core
