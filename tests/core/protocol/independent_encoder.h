#pragma once

#include "core/protocol/independent_check.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// A second encoder of the six requests, to hold the program's own against. It computes addresses as numbers
/// and the frame check bit by bit, and shares no code with what it checks.
namespace varda::test {

/// `value` in upper-case digits by printf's format, "%X" or "%02X".
inline std::string printed(const char* format, unsigned value) {
    std::array<char, 16> text = {};
    std::snprintf(text.data(), text.size(), format, value);
    return text.data();
}

/// First word of a kind's block; word-only kinds and unknown ones begin at 0 in bit access.
inline int firstWord(std::string_view kind, bool word) {
    if (kind == "L") {
        return 8 * 16;
    }
    if (kind == "M") {
        return 12 * 16;
    }
    if (kind == "K") {
        return 20 * 16;
    }
    if (kind == "F") {
        return 28 * 16;
    }
    if (kind == "TC") {
        return 29 * 16;
    }
    if (word && kind == "W") {
        return 32 * 16;
    }
    if (word && kind == "SV") {
        return 10 * 256;
    }
    if (word && kind == "PV") {
        return 11 * 256;
    }
    if (word && kind == "SR") {
        return 12 * 256;
    }
    return 0;
}

/// The address field of a bit. A bit above 15 takes two or three digits, of which only the first stays within
/// the field.
inline unsigned bitField(int word, int bit) {
    while (bit > 15) {
        bit /= 16;
    }
    return static_cast<unsigned>(word) % 4096 * 16 + static_cast<unsigned>(bit);
}

/// A station as typed, the byte it stands for and how the request shows it.
struct Station {
    std::string typed;
    unsigned value;
    std::string shown;
};

/// A request as it goes on the wire and as it is shown; `error` is the run-time error that stops it, 0 if
/// none.
struct Encoded {
    int error = 0;
    Octets wire;
    std::string shown;
};

/// Appends the frame check to header and body and shows all of it.
inline Encoded finished(const Octets& covered, const Station& destination, const Station& source) {
    Octets frame = checked(covered);
    Encoded encoded;
    encoded.shown = destination.shown + " " + source.shown + " ";
    for (std::size_t i = 2; i < frame.size(); ++i) {
        encoded.shown += printed("%02X ", frame[i]);
    }
    encoded.wire = std::move(frame);
    return encoded;
}

inline Octets header(const Station& destination, const Station& source, unsigned code, std::size_t length) {
    return {low(destination.value), low(source.value), low(code), low(static_cast<unsigned>(length))};
}

/// A single request: the address field, then the count of a read or the data of a write.
inline Encoded singleRequest(const Station& destination, const Station& source, unsigned code,
                             unsigned address, const Octets& rest) {
    Octets frame = header(destination, source, code, rest.size() + 2);
    frame.push_back(low(address));
    frame.push_back(high(address));
    frame.insert(frame.end(), rest.begin(), rest.end());
    return finished(frame, destination, source);
}

/// One point as drawn, before it becomes a line of text.
struct DrawnPoint {
    bool word = false;
    std::string kind;
    int number = 0;
    int bit = 0;        ///< bits only
    unsigned value = 0; ///< count of a read; word or not-zero-for-ON of a write

    /// The kind is cut off as one letter, which leaves a letter in front of the number of the others.
    bool hasReadableNumber() const { return kind.size() == 1; }
    int firstAddress() const { return firstWord(kind, word) + number; }
};

/// The mixed requests of one kind, sent one after another from one image that nobody clears between them.
class MixedEncoder {
public:
    explicit MixedEncoder(bool writes) : writes_(writes), image_(513, 0) {}

    Encoded encode(const std::vector<DrawnPoint>& points, const Station& destination, const Station& source) {
        length_ = 0;
        for (const DrawnPoint& point : points) {
            if (const int error = writes_ ? addWrite(point) : addRead(point)) {
                return {error, {}, {}};
            }
        }
        const std::size_t wanted = bytesWanted(points);
        if (wanted > 255) {
            return {6, {}, {}};
        }
        return frame(wanted == length_ ? length_ : 0, destination, source);
    }

private:
    int addRead(const DrawnPoint& point) {
        if (!point.hasReadableNumber()) {
            return 13;
        }
        for (int step = 0; step < static_cast<int>(point.value); ++step) {
            const int word = point.firstAddress() + (point.word ? step : 0);
            if (word > 32767) {
                return 6;
            }
            put(length_, point.word ? marked(word) : bitField(word, point.bit + step));
            length_ += 2;
            if (length_ > 255) {
                return 6;
            }
        }
        return 0;
    }

    int addWrite(const DrawnPoint& point) {
        if (!point.hasReadableNumber()) {
            return 13;
        }
        if (point.firstAddress() > 32767) {
            return 6;
        }
        if (point.word && length_ < 248) {
            put(length_, marked(point.firstAddress()));
            put(length_ + 2, point.value);
            length_ += 4;
        } else if (!point.word && length_ < 250) {
            put(length_, bitField(point.firstAddress(), point.bit));
            image_[length_ + 6] = point.value == 0 ? 0 : 255;
            length_ += 3;
        }
        return 0;
    }

    std::size_t bytesWanted(const std::vector<DrawnPoint>& points) const {
        std::size_t wanted = 0;
        for (const DrawnPoint& point : points) {
            wanted += writes_ ? (point.word ? 4U : 3U) : 2U * point.value;
        }
        return wanted;
    }

    /// Bit 6 of the high byte tells a word from a bit.
    static unsigned marked(int word) { return static_cast<unsigned>(word) | 1U << 14; }

    void put(std::size_t bodyIndex, unsigned value) {
        image_[bodyIndex + 4] = low(value);
        image_[bodyIndex + 5] = high(value);
    }

    /// The frame, written over what the image held, and the one byte of the image behind it.
    Encoded frame(std::size_t length, const Station& destination, const Station& source) {
        Octets whole = header(destination, source, writes_ ? 0x26 : 0x25, length);
        for (std::size_t i = 0; i < length; ++i) {
            whole.push_back(image_[i + 4]);
        }
        Encoded encoded = finished(whole, destination, source);
        for (std::size_t i = 0; i < encoded.wire.size(); ++i) {
            image_[i] = encoded.wire[i];
        }
        encoded.wire.push_back(image_[encoded.wire.size()]);
        return encoded;
    }

    bool writes_;
    Octets image_;
    std::size_t length_ = 0;
};

} // namespace varda::test
