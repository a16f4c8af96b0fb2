#include "core/protocol/single_requests.h"

namespace varda::inline core {
namespace {

constexpr std::size_t readBytes = frame_size::envelope + frame_size::readBody;

std::size_t bodyLength(const FrameImage& image) { return image.byte(offset::length); }

std::uint8_t writeCode(Access access) {
    return access == Access::Bit ? command::bitWrite : command::wordWrite;
}

} // namespace

void MakeReadFormat(FrameImages& images, std::optional<Access> access) {
    FrameImage& image = images.read;
    const std::uint8_t code = access == Access::Bit ? command::bitRead : command::wordRead;
    if (access) {
        image.set(offset::command, code);
    }
    image.set(offset::length, frame_size::readBody);
    if (access) {
        AppendCRC16(images, code, frame_size::header + frame_size::readBody);
    }
    image.complete(readBytes - 1);
}

std::string DisplayRString(FrameImages& images) { return images.read.display(readBytes - 1); }

void setReadCount(FrameImages& images, int count) {
    if (count >= 0 && count <= bitReadLimit) {
        images.read.set(offset::count, static_cast<std::uint8_t>(count % bitReadLimit));
    }
}

Bytes readWire(const FrameImages& images) { return images.read.wire(readBytes); }

int readAnswerLength(Access access, std::uint8_t countByte) {
    return readAnswerSize(access, countOfByte(countByte));
}

int writeBodyLength(Access access, int count) {
    return static_cast<int>(frame_size::address) + valueSize(access) * count;
}

bool isWriteCount(Access access, int count) {
    return count == 256 || (count >= 0 && count <= writeLimit(access));
}

int framedWriteCount(const FrameImages& images, Access access) {
    const int dataBytes = static_cast<int>(bodyLength(images.write)) - static_cast<int>(frame_size::address);
    return dataBytes / valueSize(access);
}

void setWriteCount(FrameImages& images, Access access, int count) {
    FrameImage& image = images.write;
    if (!isWriteCount(access, count)) {
        return;
    }
    const bool isEmpty = count == 0 || count == 256;
    image.set(offset::length,
              isEmpty ? std::uint8_t{0} : static_cast<std::uint8_t>(writeBodyLength(access, count)));
    const auto data = static_cast<std::size_t>(writeBodyLength(access, count)) - frame_size::address;
    image.reset(offset::data, offset::data + data);
}

void MakeWriteFormat(FrameImages& images, Access access, int count) {
    FrameImage& image = images.write;
    const std::uint8_t code = writeCode(access);
    image.set(offset::command, code);
    if (isWriteCount(access, count)) {
        // of the length of a count of 256 two digits remain: a frame without data
        image.set(offset::length, static_cast<std::uint8_t>(writeBodyLength(access, count) & 0xFF));
    }
    const std::size_t covered = offset::body + bodyLength(image);
    AppendCRC16(images, code, covered);
    image.complete(covered + frame_size::check - 1);
}

std::string DisplayWString(FrameImages& images) {
    return images.write.display(offset::body + bodyLength(images.write) + frame_size::check - 1);
}

Bytes writeWire(const FrameImages& images) {
    return images.write.wire(offset::body + bodyLength(images.write) + frame_size::check);
}

void setWriteBit(FrameImages& images, std::size_t index, bool on) {
    images.write.set(offset::data + index, on ? 0xFF : 0x00);
}

void setWriteWord(FrameImages& images, std::size_t index, int value) {
    const std::size_t low = offset::data + 2 * index;
    images.write.set(low + 1,
                     static_cast<std::uint8_t>((value >> 8) & 0xFF)); // the end of the row is met first
    images.write.set(low, static_cast<std::uint8_t>(value & 0xFF));
}

int writeWord(const FrameImages& images, std::size_t index) {
    const std::size_t low = offset::data + 2 * index;
    return images.write.byte(low) + 256 * images.write.byte(low + 1);
}

bool isWriteBitOn(const FrameImages& images, std::size_t index) {
    return images.write.byte(offset::data + index) == 0xFF;
}

void clearWriteRequest(FrameImages& images) {
    constexpr std::size_t lastEntry = 1023;
    images.write.reset(offset::length, lastEntry);
}

void fillRandomWords(FrameImages& images, const std::function<double()>& random) {
    // kept: LEN - 2 is the count of data bytes, so a word write draws twice its words and fills on behind its
    // frame
    for (std::size_t word = 0; word + frame_size::address < bodyLength(images.write); ++word) {
        setWriteWord(images, word, static_cast<int>(random() * 65535 + 1));
    }
}

} // namespace varda::core
