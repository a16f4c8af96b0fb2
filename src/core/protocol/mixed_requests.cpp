#include "core/protocol/mixed_requests.h"

#include "core/base/conversion.h"
#include "core/protocol/hex_text.h"
#include "core/protocol/point_list.h"

namespace varda::inline core {
namespace {

constexpr std::size_t pointBytes = 2;
constexpr std::size_t bitItemBytes = 3;
constexpr std::size_t wordItemBytes = 4;

/// The body of a mixed image while it grows; LEN is its byte count.
class Body {
public:
    explicit Body(FrameImage& image) : image_(image) { image_.set(offset::length, 0); }

    std::size_t length() const { return image_.byte(offset::length); }

    void appendBitAddress(const PointLine& point, int carried) {
        const int word = registerAddress(Access::Bit, point.kind, point.number);
        // kept: bits above 15 are not carried into the word, they lengthen the text that the bytes are cut
        // from
        image_.setLowHigh(end(), bitAddressText(word, toInteger16(point.bit + carried)));
    }

    void appendWordAddress(const PointLine& point, int carried) {
        const int word = toInteger16(registerAddress(Access::Word, point.kind, point.number) + carried);
        image_.setLowHigh(end(), wordAddressText(word));
        const std::uint8_t high = image_.byte(end() + 1);
        image_.set(end() + 1, static_cast<std::uint8_t>(high | wordMark));
    }

    FrameImage& image() { return image_; }
    std::size_t end() const { return offset::body + length(); }
    void grow(std::size_t bytes) {
        image_.set(offset::length, toByte(static_cast<std::int64_t>(length() + bytes)));
    }

private:
    FrameImage& image_;
};

void appendReadPoints(Body& body, const PointLine& point) {
    const int count = toInteger(point.value);
    for (int carried = 0; carried < count && body.length() < 255; ++carried) {
        if (point.access == Access::Bit) {
            body.appendBitAddress(point, carried);
        } else {
            body.appendWordAddress(point, carried);
        }
        body.grow(pointBytes);
    }
}

void appendBitItem(Body& body, const PointLine& point) {
    if (body.length() + bitItemBytes <= 252) {
        body.appendBitAddress(point, 0);
        body.image().set(body.end() + 2, point.value == "ON" ? 0xFF : 0x00);
        body.grow(bitItemBytes);
    }
}

std::string wordDigits(std::string_view typed) {
    constexpr std::size_t digits = 4;
    if (typed.size() > digits) { // kept: of a longer value, typed in decimal, the last four digits remain
        typed.remove_prefix(typed.size() - digits);
    }
    return hex(fromHex(typed), digits);
}

void appendWordItem(Body& body, const PointLine& point) {
    const std::string value = wordDigits(point.value);
    if (body.length() + wordItemBytes <= 251) {
        body.appendWordAddress(point, 0);
        body.image().setLowHigh(body.end() + 2, value);
        body.grow(wordItemBytes);
    }
}

template <typename Append>
void forEachPoint(std::span<const std::string> lines, const LineVisitor& visit, Append append) {
    for (std::size_t line = 0; line < lines.size(); ++line) {
        if (visit) {
            visit(line);
        }
        if (!lines[line].empty()) {
            takingPoint(lines[line], [&] { append(parsePointLine(lines[line])); });
        }
    }
}

void completeFrame(FrameImages& images, std::uint8_t code, const StationTexts& stations,
                   std::uint8_t length) {
    FrameImage& image = images.of(code);
    setStation(image, offset::destination, stations.destination);
    setStation(image, offset::source, stations.source);
    image.set(offset::command, code);
    image.set(offset::length, length);
    AppendCRC16(images, code, length);
    image.complete(offset::body + length + frame_size::check - 1);
}

std::string displayFrame(FrameImage& image) {
    return image.display(offset::body + image.byte(offset::length) + frame_size::check - 1);
}

std::uint8_t whereAgreed(std::uint8_t sum, const FrameImage& image) {
    return sum == image.byte(offset::length) ? sum : std::uint8_t{0};
}

} // namespace

void MakeMRDataFormat(FrameImages& images, std::span<const std::string> lines, const LineVisitor& visit) {
    Body body(images.mixedRead);
    forEachPoint(lines, visit, [&body](const PointLine& point) { appendReadPoints(body, point); });
}

std::uint8_t CheckMRLength(const FrameImages& images, std::span<const std::string> lines) {
    std::uint8_t sum = 0;
    for (const std::string& line : lines) {
        if (!line.empty()) {
            sum = takingPoint(line, [&] {
                return toByte(sum + static_cast<int>(pointBytes) * toInteger(pointValue(line)));
            });
        }
    }
    return whereAgreed(sum, images.mixedRead);
}

void MakeMReadFormat(FrameImages& images, const StationTexts& stations, std::span<const std::string> lines) {
    completeFrame(images, command::mixedRead, stations, CheckMRLength(images, lines));
}

std::string DisplayMRString(FrameImages& images) { return displayFrame(images.mixedRead); }

void MakeMWDataFormat(FrameImages& images, std::span<const std::string> lines, const LineVisitor& visit) {
    Body body(images.mixedWrite);
    forEachPoint(lines, visit, [&body](const PointLine& point) {
        point.access == Access::Bit ? appendBitItem(body, point) : appendWordItem(body, point);
    });
}

std::uint8_t CheckMWLength(const FrameImages& images, std::span<const std::string> lines) {
    return whereAgreed(GetListDataLength(lines, bitItemBytes, wordItemBytes), images.mixedWrite);
}

void MakeMWriteFormat(FrameImages& images, const StationTexts& stations, std::span<const std::string> lines) {
    completeFrame(images, command::mixedWrite, stations, CheckMWLength(images, lines));
}

std::string DisplayMWString(FrameImages& images) { return displayFrame(images.mixedWrite); }

Bytes mixedWire(FrameImages& images, std::uint8_t code) {
    const FrameImage& image = images.of(code);
    // kept: the byte behind the frame check goes along, whatever an earlier, longer frame left there
    return image.wire(offset::body + image.byte(offset::length) + frame_size::check + 1);
}

} // namespace varda::core
