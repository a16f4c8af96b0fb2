#include "core/insight/decoder.h"

namespace varda::inline core {
namespace {

using Octets = std::span<const std::uint8_t>;

constexpr std::size_t mostFramesOfBurst = 32;

/// Makes the places of a frame those in the burst that it stands in.
void moveBy(DecodedFrame& frame, std::size_t begin) {
    frame.begin += begin;
    frame.end += begin;
    for (Field& field : frame.fields) {
        field.place += begin;
    }
}

bool isWholeFrame(const DecodedFrame& frame) {
    return !frame.has(Fault::Cut) && !frame.has(Fault::WrongCheck) && !frame.has(Fault::UnknownCommand);
}

/// The bytes before `begin` belong to this frame, and are no longer what follows it.
void endAt(DecodedFrame& frame, std::size_t begin) {
    std::erase(frame.faults, Fault::MoreBytes);
    Field& behind = frame.fields.back();
    behind.length = behind.whole = begin - behind.place;
    if (behind.length == 0) {
        frame.fields.pop_back();
    }
}

/// A whole frame that follows another one, which may have a byte behind it.
std::optional<DecodedFrame> nextFrame(Octets bytes, const DecodedFrame& before, Octets request) {
    const bool mayBeFollowed = before.kind.isRequest() && !before.kind.command->access;
    for (std::size_t begin = before.end; begin <= before.end + (mayBeFollowed ? 1 : 0); ++begin) {
        if (begin >= bytes.size()) {
            break;
        }
        DecodedFrame next = decode(bytes.subspan(begin), request);
        if (isWholeFrame(next)) {
            moveBy(next, begin);
            return next;
        }
    }
    return std::nullopt;
}

} // namespace

std::vector<DecodedFrame> decodeBurst(std::span<const std::uint8_t> bytes,
                                      std::span<const std::uint8_t> request) {
    std::vector<DecodedFrame> frames;
    std::optional<DecodedFrame> frame = bytes.empty() ? std::nullopt : std::optional(decode(bytes, request));
    while (frame) {
        frames.push_back(std::move(*frame));
        DecodedFrame& last = frames.back();
        frame.reset();
        if (last.kind.isRequest()) {
            request = bytes.subspan(last.begin, last.end - last.begin);
        }
        if (isWholeFrame(last) && frames.size() < mostFramesOfBurst) {
            frame = nextFrame(bytes, last, request);
        }
        if (frame) {
            endAt(last, frame->begin);
        }
    }
    return frames;
}

} // namespace varda::core
