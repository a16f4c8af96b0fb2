#include "core/recordings/recording.h"

#include "core/insight/decoder.h"

#include <algorithm>

namespace varda::inline core {
namespace {

bool isOnTheLine(const TraceLine& line) {
    return line.direction != Direction::Event && line.verdict != Verdict::NotSent && !line.bytes.empty() &&
           line.size == line.bytes.size();
}

/// A burst may hold a request and, right behind it, its answer.
std::vector<Bytes> framesIn(const Bytes& burst, const Bytes& request) {
    const std::vector<DecodedFrame> decoded = decodeBurst(burst, request);
    std::vector<Bytes> frames;
    for (std::size_t index = 0; index < decoded.size(); ++index) { // what follows a frame is a part of it
        const std::size_t end = index + 1 < decoded.size() ? decoded[index + 1].begin : burst.size();
        frames.emplace_back(burst.begin() + static_cast<std::ptrdiff_t>(decoded[index].begin),
                            burst.begin() + static_cast<std::ptrdiff_t>(end));
    }
    return frames;
}

/// Whether who recorded this sent the requests.
bool asks(const Recording& recording) {
    return std::ranges::any_of(recording, [](const RecordedBurst& burst) {
        return burst.isSent && kindOf(burst.bytes).isRequest();
    });
}

} // namespace

Recording recordingOf(const Trace& trace, std::span<const Trace::Number> lines) {
    Recording recording;
    for (const Trace::Number number : lines) {
        const TraceLine* const line = trace.find(number);
        if (line != nullptr && isOnTheLine(*line)) {
            recording.push_back({line->timeOfDay, line->direction == Direction::Sent, line->bytes});
        }
    }
    return recording;
}

void ExchangeFinder::take(const RecordedBurst& burst) {
    const Bytes before = exchanges_.empty() ? Bytes() : exchanges_.back().request;
    for (Bytes& frame : framesIn(burst.bytes, before)) {
        const FrameKind kind = kindOf(frame);
        const bool isOdd = kind.command == nullptr && isAsking_ && burst.isSent;
        if (kind.isRequest() || isOdd) {
            exchanges_.push_back({burst.time, std::move(frame), std::nullopt});
        } else if (!exchanges_.empty() && !exchanges_.back().answer) {
            exchanges_.back().answer = std::move(frame);
        }
    }
}

std::vector<RecordedExchange> exchangesOf(const Recording& recording) {
    ExchangeFinder finder(asks(recording));
    for (const RecordedBurst& burst : recording) {
        finder.take(burst);
    }
    return finder.takeExchanges();
}

int answerLengthOf(std::span<const std::uint8_t> request) {
    const DecodedFrame frame = decode(request);
    if (!frame.kind.isRequest()) {
        return 0;
    }
    int length = frame_size::envelope;
    if (frame.kind.command->writes) {
        return length + static_cast<int>(frame_size::acknowledgementBody);
    }
    for (const PointRun& run : runsOf(frame)) {
        length += run.count * valueSize(run.first.access);
    }
    return length;
}

} // namespace varda::core
