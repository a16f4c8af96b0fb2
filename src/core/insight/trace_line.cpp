#include "core/insight/trace_line.h"

#include "core/insight/frame_remarks.h"

#include <algorithm>

namespace varda::inline core {
namespace {

bool isBad(Verdict verdict) {
    switch (verdict) {
    case Verdict::AnswerDropped:
    case Verdict::NoAnswer:
    case Verdict::NotAnswered:
    case Verdict::Overtaken:
    case Verdict::NotSent:
    case Verdict::TakenAgain:
    case Verdict::Dropped:
    case Verdict::UnknownPair:
    case Verdict::ThrownAway:
    case Verdict::Lost:
    case Verdict::HungUp:
    case Verdict::Silence:
    case Verdict::NothingToRead:
        return true;
    default:
        return false;
    }
}

bool isForAnswer(Verdict verdict) {
    return verdict == Verdict::Taken || verdict == Verdict::TakenAgain || verdict == Verdict::Dropped ||
           verdict == Verdict::ThrownAway;
}

bool hasWholeRead(const TraceLine& line) { return line.part && line.part->whole; }

std::span<const std::uint8_t> requestOf(const TraceLine& line) {
    return line.request ? std::span<const std::uint8_t>(*line.request) : std::span<const std::uint8_t>();
}

bool areSound(const std::vector<DecodedFrame>& frames) {
    return std::ranges::all_of(frames, &DecodedFrame::isSound);
}

/// Whether a part of a read is a frame by itself, and the whole read is none.
bool standsForItself(const TraceLine& line) {
    return hasWholeRead(line) && !areSound(decodeBurst(*line.part->whole, requestOf(line))) &&
           areSound(decodeBurst(line.bytes, requestOf(line)));
}

/// Whether a field of a frame says of itself alone which register it is about. A single read is about one
/// address, which all of its parts are about.
bool hasRegisterOfItsOwn(const DecodedFrame& frame, const Field& field) {
    const bool isMixedRequest = frame.kind.isRequest() && !frame.kind.command->access;
    return field.role == FieldRole::Value || (field.role == FieldRole::Address && isMixedRequest);
}

/// Those of the frames of a read that reach into a part of it.
std::vector<DecodedFrame> framesIn(std::vector<DecodedFrame> frames, std::size_t begin, std::size_t end) {
    const auto isElsewhere = [begin, end](std::size_t from, std::size_t to) {
        return to <= begin || from >= end;
    };
    std::erase_if(frames, [&](const DecodedFrame& frame) { return isElsewhere(frame.begin, frame.end); });
    for (DecodedFrame& frame : frames) {
        frame.isPart = frame.begin < begin || frame.end > end;
        std::erase_if(frame.fields, [&](const Field& field) {
            return hasRegisterOfItsOwn(frame, field) && isElsewhere(field.place, field.place + field.length);
        });
    }
    return frames;
}

} // namespace

bool isSameRead(const TraceLine& left, const TraceLine& right) {
    return left.part && right.part && left.part->read == right.part->read;
}

const Bytes& readBytes(const TraceLine& line) { return hasWholeRead(line) ? *line.part->whole : line.bytes; }

std::size_t readSize(const TraceLine& line) { return hasWholeRead(line) ? line.came : line.size; }

const Bytes& explainedBytes(const TraceLine& line) {
    return standsForItself(line) ? line.bytes : readBytes(line);
}

std::size_t explainedSize(const TraceLine& line) {
    return standsForItself(line) ? line.size : readSize(line);
}

std::vector<DecodedFrame> framesOf(const TraceLine& line) {
    const bool isAlone = !hasWholeRead(line) || standsForItself(line);
    auto frames = decodeBurst(isAlone ? line.bytes : readBytes(line), requestOf(line));
    return isAlone ? frames
                   : framesIn(std::move(frames), line.part->place, line.part->place + line.bytes.size());
}

/// Of what has not been read yet there may be more to come.
std::string remarksOn(const TraceLine& line) {
    if (line.direction != Direction::Received || line.verdict == Verdict::Unread || line.bytes.empty()) {
        return {};
    }
    return isForAnswer(line.verdict) && line.request ? remarksOnAnswer(explainedBytes(line), *line.request)
                                                     : remarksOnFrames(explainedBytes(line));
}

bool isWrong(const TraceLine& line) {
    if (line.verdict == Verdict::Unread) {
        return false;
    }
    return isBad(line.verdict) || !areSound(framesOf(line)) ||
           (line.verdict == Verdict::Taken && !remarksOn(line).empty());
}

} // namespace varda::core
