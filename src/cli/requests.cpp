#include "cli/requests.h"

#include "cli/failure.h"
#include "core/insight/field_words.h"
#include "core/protocol/frame_image.h"
#include "core/protocol/hex_text.h"
#include "core/protocol/point_list.h"
#include "core/protocol/single_requests.h"

#include <string>
#include <vector>

namespace varda::cli {
namespace {

struct Register {
    std::string kind;
    std::string number; ///< as wide as the lists have it
    int word;           ///< address
    int bit;
};

Register registerOf(const Point& point) {
    const bool isBit = point.access == Access::Bit;
    const int word = isBit ? point.address / bitsOfWord : point.address;
    const RegisterKind* const kind = kindOfWord(word);
    if (kind == nullptr) {
        throw Failure(ExitCode::Usage, "There is no register behind " + wordName(word - 1) +
                                           " for the last values. Leave them away.");
    }
    return {std::string(kind->name), registerNumberText(kind->name, word - kind->base), word,
            isBit ? point.address % bitsOfWord : 0};
}

void setHeader(FrameImage& image, const StationTexts& stations, const Point& first) {
    const Register from = registerOf(first);
    setStation(image, offset::destination, stations.destination);
    setStation(image, offset::source, stations.source);
    image.setLowHigh(offset::address, first.access == Access::Bit ? bitAddressText(from.word, from.bit)
                                                                  : wordAddressText(from.word));
}

void refuseAbove(int limit, Access access, int count, const std::string& request) {
    if (count > limit) {
        throw Failure(ExitCode::Usage,
                      counted(static_cast<std::size_t>(count), access == Access::Bit ? "bit" : "word") +
                          " are too many for one " + request + ", which has room for " +
                          std::to_string(limit) + '.');
    }
}

void refuseValues(const Operand& operand) {
    if (!operand.values.empty()) {
        throw Failure(ExitCode::Usage,
                      nameOf(operand.first) + " is to be read: leave the value away, or write it.");
    }
}

void needValues(const Operand& operand) {
    if (operand.values.empty()) {
        throw Failure(ExitCode::Usage, "What is to be written to " + nameOf(operand.first) +
                                           "? Put it behind an \"=\", several values between commas.");
    }
}

std::string lineToRead(const Operand& operand) {
    const Register from = registerOf(operand.first);
    const std::string count = std::to_string(operand.count.value_or(1));
    return operand.first.access == Access::Bit
               ? bitPointLine(from.kind, from.number, std::to_string(from.bit), count)
               : wordPointLine(from.kind, from.number, count);
}

std::string lineToWrite(const Point& point, int value) {
    const Register at = registerOf(point);
    return point.access == Access::Bit
               ? bitPointLine(at.kind, at.number, std::to_string(at.bit), value != 0 ? "ON" : "OFF")
               : wordPointLine(at.kind, at.number, hex(value, 4));
}

/// The body of a mixed request ends in silence where it is full; what was asked for must all be in it.
void refuseIfCut(const FrameImage& image, std::size_t wanted) {
    if (image.byte(offset::length) != wanted) {
        throw Failure(ExitCode::Usage, "These points are too many for one request. Leave some of them away.");
    }
}

} // namespace

Request readRequest(const StationTexts& stations, const Operand& operand) {
    refuseValues(operand);
    const Access access = operand.first.access;
    const int count = operand.count.value_or(1);
    refuseAbove(access == Access::Bit ? bitReadLimit : wordReadLimit, access, count, "read");
    FrameImages images;
    setHeader(images.read, stations, operand.first);
    setReadCount(images, count);
    MakeReadFormat(images, access);
    return {access == Access::Bit ? Mode::BitRead : Mode::WordRead, readWire(images),
            readAnswerLength(access, images.read.byte(offset::count))};
}

Request writeRequest(const StationTexts& stations, const Operand& operand) {
    needValues(operand);
    const Access access = operand.first.access;
    const int count = static_cast<int>(operand.values.size());
    refuseAbove(writeLimit(access), access, count, "write");
    FrameImages images;
    setHeader(images.write, stations, operand.first);
    setWriteCount(images, access, count);
    for (std::size_t index = 0; index < operand.values.size(); ++index) {
        if (access == Access::Bit) {
            setWriteBit(images, index, operand.values[index] != 0);
        } else {
            setWriteWord(images, index, operand.values[index]);
        }
    }
    MakeWriteFormat(images, access, count);
    return {access == Access::Bit ? Mode::BitWrite : Mode::WordWrite, writeWire(images), writeAnswerLength};
}

Request mixedReadRequest(const StationTexts& stations, std::span<const Operand> operands) {
    std::vector<std::string> lines;
    std::size_t points = 0;
    for (const Operand& operand : operands) {
        refuseValues(operand);
        lines.push_back(lineToRead(operand));
        points += static_cast<std::size_t>(operand.count.value_or(1));
    }
    FrameImages images;
    MakeMRDataFormat(images, lines);
    refuseIfCut(images.mixedRead, points * frame_size::address);
    MakeMReadFormat(images, stations, lines);
    return {Mode::MixedRead, mixedWire(images, command::mixedRead),
            GetMRAnswerLength(lines) + static_cast<int>(frame_size::envelope)};
}

Request mixedWriteRequest(const StationTexts& stations, std::span<const Operand> operands) {
    std::vector<std::string> lines;
    std::size_t wanted = 0;
    for (const Operand& operand : operands) {
        needValues(operand);
        Point point = operand.first;
        for (const int value : operand.values) {
            lines.push_back(lineToWrite(point, value));
            wanted += frame_size::address + static_cast<std::size_t>(valueSize(point.access));
            ++point.address;
        }
    }
    FrameImages images;
    MakeMWDataFormat(images, lines);
    refuseIfCut(images.mixedWrite, wanted);
    MakeMWriteFormat(images, stations, lines);
    return {Mode::MixedWrite, mixedWire(images, command::mixedWrite), writeAnswerLength};
}

} // namespace varda::cli
