#include "core/insight/frame_remarks.h"

#include "core/insight/field_words.h"

#include <algorithm>

namespace varda::inline core {
namespace {

using Octets = std::span<const std::uint8_t>;

constexpr std::uint8_t highestOf7Bits = 0x7F;

std::string faults(const DecodedFrame& frame) {
    std::string text;
    for (const Fault fault : frame.faults) {
        text += ' ' + faultInWords(frame, fault);
    }
    return text;
}

std::string station(const DecodedFrame& frame, FieldRole role) {
    const Field* const field = frame.find(role);
    return field != nullptr ? std::to_string(field->number) : std::string();
}

/// A mixed request is sent with one byte more, which an echo brings along.
bool isEcho(Octets bytes, Octets request) {
    return bytes.size() >= request.size() && std::ranges::equal(bytes.first(request.size()), request);
}

bool isOf7Bits(const DecodedFrame& frame, Octets bytes, const DecodedFrame& request) {
    return frame.kind.command == request.kind.command && frame.has(Fault::WrongCheck) &&
           std::ranges::all_of(bytes, [](std::uint8_t byte) { return byte <= highestOf7Bits; });
}

std::string remarkOnRequest(const DecodedFrame& frame, Octets bytes, const DecodedFrame& asked) {
    if (isOf7Bits(frame, bytes, asked)) {
        return " Every byte lacks its top bit: the line seems to carry 7 data bits.";
    }
    return " It is a " + kindInWords(frame.kind) + " for station " + station(frame, FieldRole::Destination) +
           ": another master asks on this line." + faults(frame);
}

std::string remarkOnUnknown(const DecodedFrame& frame) {
    const bool isChecked = !frame.has(Fault::Cut) && !frame.has(Fault::WrongCheck);
    const Field* const command = frame.find(FieldRole::Command);
    if (command == nullptr) {
        return " It is too short for a frame.";
    }
    if (!isChecked) {
        return " It is no frame of this protocol.";
    }
    return " Its check is right, but " + hexNumber(command->number, 2) +
           " is no command of this protocol: another kind of controller may be speaking.";
}

std::string remarkOnKind(const DecodedFrame& frame, const DecodedFrame& asked) {
    if (frame.kind.command == asked.kind.command) {
        return {};
    }
    return " It is an " + kindInWords(frame.kind) + ", and a " + kindInWords(asked.kind) + " was sent.";
}

std::string remarkOnStations(const DecodedFrame& frame, const DecodedFrame& asked) {
    const std::string from = station(frame, FieldRole::Source);
    const std::string to = station(frame, FieldRole::Destination);
    const std::string askedOne = station(asked, FieldRole::Destination);
    const std::string askedBy = station(asked, FieldRole::Source);
    if (from != askedOne) {
        return " It comes from station " + from + "; station " + askedOne + " was asked.";
    }
    return to != askedBy ? " It goes to station " + to + "; station " + askedBy + " asked." : "";
}

bool isSameFrame(const DecodedFrame& left, const DecodedFrame& right, Octets bytes) {
    return std::ranges::equal(bytes.subspan(left.begin, left.end - left.begin),
                              bytes.subspan(right.begin, right.end - right.begin));
}

std::string remarkOnMore(const std::vector<DecodedFrame>& frames, Octets bytes) {
    if (frames.size() < 2) {
        return {};
    }
    return isSameFrame(frames[0], frames[1], bytes) ? " It is the same frame twice."
                                                    : " It is more than one frame.";
}

} // namespace

std::string remarksOnAnswer(std::span<const std::uint8_t> bytes, std::span<const std::uint8_t> request) {
    const auto frames = decodeBurst(bytes, request);
    const DecodedFrame asked = decode(request);
    if (frames.empty() || !asked.kind.isRequest()) {
        return remarksOnFrames(bytes);
    }
    const DecodedFrame& frame = frames.front();
    if (isEcho(bytes, request)) {
        return " It begins with the request itself: the line brings back what is sent.";
    }
    if (frame.kind.isRequest()) {
        return remarkOnRequest(frame, bytes, asked);
    }
    if (frame.kind.command == nullptr) {
        return remarkOnUnknown(frame);
    }
    return remarkOnKind(frame, asked) + remarkOnStations(frame, asked) + faults(frame) +
           remarkOnMore(frames, bytes);
}

std::string remarksOnFrames(std::span<const std::uint8_t> bytes) {
    const auto frames = decodeBurst(bytes);
    if (frames.size() == 1 && frames.front().kind.command == nullptr) {
        return remarkOnUnknown(frames.front());
    }
    std::string text;
    for (const DecodedFrame& frame : frames) {
        text += faults(frame);
    }
    return text;
}

} // namespace varda::core
