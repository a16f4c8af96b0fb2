#include "core/protocol/frame_image.h"

#include "core/base/conversion.h"
#include "core/base/runtime_error.h"
#include "core/protocol/crc16.h"
#include "core/protocol/hex_text.h"

#include <limits>
#include <span>

namespace varda::inline core {

void FrameImage::check(std::size_t index) const {
    if (index >= bytes_.size() || index >= texts_.size()) {
        throw subscriptOutOfRange();
    }
}

const std::string& FrameImage::text(std::size_t index) const {
    if (index >= texts_.size()) {
        throw subscriptOutOfRange();
    }
    return texts_[index];
}

std::uint8_t FrameImage::byte(std::size_t index) const {
    check(index);
    return bytes_[index];
}

void FrameImage::set(std::size_t index, std::uint8_t value) {
    check(index);
    texts_[index] = twoDigits(value);
    bytes_[index] = value;
}

void FrameImage::setText(std::size_t index, std::string_view hexText) {
    check(index);
    bytes_[index] = byteFromHex(hexText);
    texts_[index] = hexText;
}

void FrameImage::reset(std::size_t first, std::size_t last) {
    check(last);
    for (std::size_t index = first; index <= last; ++index) {
        set(index, 0);
    }
}

void FrameImage::setLowHigh(std::size_t index, std::string_view digits) {
    check(index + 1);
    if (digits.size() < 4) {
        throw subscriptOutOfRange();
    }
    setText(index, digits.substr(2, 2));
    setText(index + 1, digits.substr(0, 2));
}

void FrameImage::appendCrc(std::size_t count) {
    check(count + 1);
    const std::uint16_t check = crc16(std::span(bytes_).first(count));
    set(count, static_cast<std::uint8_t>(check & 0xFFU));
    set(count + 1, static_cast<std::uint8_t>(check >> 8U));
}

void FrameImage::complete(std::size_t last) {
    check(last);
    for (std::size_t index = 0; index <= last; ++index) {
        if (texts_[index].empty()) {
            set(index, 0);
        }
    }
}

std::string FrameImage::display(std::size_t last) {
    complete(last);
    constexpr std::size_t usualGroup = 3;
    std::string shown;
    shown.reserve((last + 1) * usualGroup);
    for (std::size_t index = 0; index <= last; ++index) {
        shown.append(texts_[index]).append(1, ' ');
    }
    return shown;
}

Bytes FrameImage::wire(std::size_t count) const {
    if (count > bytes_.size()) {
        throw subscriptOutOfRange();
    }
    return {bytes_.begin(), bytes_.begin() + static_cast<std::ptrdiff_t>(count)};
}

FrameImage& FrameImages::of(std::uint8_t code) {
    switch (code) {
    case command::bitRead:
    case command::wordRead:
        return read;
    case command::bitWrite:
    case command::wordWrite:
        return write;
    case command::mixedRead:
        return mixedRead;
    case command::mixedWrite:
        return mixedWrite;
    default:
        throw subscriptOutOfRange();
    }
}

void AppendCRC16(FrameImages& images, std::uint8_t code, std::size_t count) {
    const bool mixed = code == command::mixedRead || code == command::mixedWrite;
    images.of(code).appendCrc(mixed ? count + offset::body : count);
}

void setStation(FrameImage& image, std::size_t index, std::string_view text) {
    const auto station = readInteger(text);
    if (station && *station >= 0 && *station <= std::numeric_limits<std::uint8_t>::max()) {
        image.setText(index,
                      hex(*station)); // kept: no leading zero, so a station below 16 shows as one digit
    } else {
        image.set(index, 0);
    }
}

} // namespace varda::core
