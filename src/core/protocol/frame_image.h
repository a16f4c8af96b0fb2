#pragma once

#include "core/base/bytes.h"
#include "core/protocol/frame.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace varda::inline core {

/// A request while it is being edited: a row of hexadecimal texts beside the row of bytes that they stand
/// for. The two always agree, so nothing is ever read back from its text.
///
/// An empty text is a byte not set yet, 0 on the wire; completing the frame makes it "00". Every access past
/// the end of a row throws RuntimeError 9 and changes nothing.
class FrameImage {
public:
    /// All texts empty, all bytes 0.
    FrameImage(std::size_t texts, std::size_t bytes) : texts_(texts), bytes_(bytes) {}

    const std::string& text(std::size_t index) const;
    std::uint8_t byte(std::size_t index) const;

    /// Sets a byte and its text of two upper-case digits.
    void set(std::size_t index, std::uint8_t value);
    /// Sets a text and the byte that it stands for. @throws RuntimeError 13, 6 where it is no byte in
    /// hexadecimal
    void setText(std::size_t index, std::string_view hexText);
    /// Sets the bytes `first` .. `last` to 0 and their texts to "00".
    void reset(std::size_t first, std::size_t last);

    /// Splits four hexadecimal digits into the two bytes at `index`, low byte first: digits 3 and 4, then 1
    /// and 2.
    void setLowHigh(std::size_t index, std::string_view digits);

    /// Puts the frame check over the first `count` bytes behind them, low byte first, texts and bytes.
    void appendCrc(std::size_t count);

    /// Makes every empty text among 0 .. `last` "00".
    void complete(std::size_t last);

    /// The entries 0 .. `last` as they are shown: each text and one space; empty texts are made "00" first.
    std::string display(std::size_t last);

    /// Copy of the first `count` bytes, as they go on the wire.
    Bytes wire(std::size_t count) const;

private:
    void check(std::size_t index) const;

    std::vector<std::string> texts_;
    std::vector<std::uint8_t> bytes_;
};

/// The four images that the main window owns: one for the single reads, one for the single writes, one for
/// each mixed request.
struct FrameImages {
    FrameImage read{11, 9}; // kept: two texts more than the frame has bytes
    FrameImage write{1024, 1024};
    FrameImage mixedRead{513, 513};
    FrameImage mixedWrite{513, 513};

    /// The image that a request code belongs to. @throws RuntimeError 9 for any other code
    FrameImage& of(std::uint8_t code);
};

/// Appends the frame check to the image of a request code.
/// @param count number of bytes that the check covers; for the mixed codes LEN, to which the routine adds the
/// four bytes
///        of the header itself
void AppendCRC16(FrameImages& images, std::uint8_t code, std::size_t count);

/// Writes a station number typed by a person: digits or "&H" digits, 0 .. 255; anything else is station 0.
/// @param index offset::destination or offset::source
void setStation(FrameImage& image, std::size_t index, std::string_view text);

} // namespace varda::core
