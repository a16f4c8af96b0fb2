#include "core/insight/dropped_pieces.h"

#include <algorithm>

namespace varda::inline core {
namespace {

using Number = Trace::Number;

constexpr int mostReads = 8; // an answer comes in no more pieces
/// Lines that are looked at for the other pieces: what is asked for whenever a line is drawn must not walk
/// through ten thousand events.
constexpr Number mostLines = 500;

/// Whether what came before a line has nothing to do with what came behind it.
bool isBetweenExchanges(const TraceLine& line) {
    return line.direction == Direction::Sent || line.verdict == Verdict::Opened ||
           line.verdict == Verdict::Closed || line.verdict == Verdict::HungUp;
}

bool isOfAnotherRead(const TraceLine& line, const TraceLine& than) {
    return line.direction == Direction::Received && !isSameRead(line, than);
}

} // namespace

DroppedPieces droppedBefore(const Trace& trace, Number number) {
    DroppedPieces dropped;
    const TraceLine* later = trace.find(number);
    const Number end = std::max(trace.begin(), number - std::min(number, mostLines));
    for (int reads = 0; later != nullptr && number > end && reads < mostReads; --number) {
        const TraceLine& line = *trace.find(number - 1);
        const bool isOther = isOfAnotherRead(line, *later);
        if (isBetweenExchanges(line) || (isOther && line.verdict != Verdict::Dropped)) {
            break;
        }
        if (isOther) {
            dropped.came += line.came;
            dropped.expected = line.expected > 0 ? static_cast<std::size_t>(line.expected) : dropped.expected;
            later = &line;
            ++reads;
        }
    }
    return dropped;
}

bool isRest(const Trace& trace, Number number) {
    const TraceLine* const line = trace.find(number);
    if (line == nullptr || line->verdict != Verdict::Dropped) {
        return false;
    }
    const DroppedPieces dropped = droppedBefore(trace, number);
    return dropped.came > 0 && dropped.came + line->came == dropped.expected;
}

std::optional<NextRead> nextRead(const Trace& trace, Number number) {
    const TraceLine& read = *trace.find(number);
    Clock::Time end = read.last;
    for (Number next = number + 1; next < std::min(trace.end(), number + mostLines); ++next) {
        const TraceLine& line = *trace.find(next);
        if (isBetweenExchanges(line)) {
            return std::nullopt;
        }
        if (isOfAnotherRead(line, read)) {
            return NextRead{next, line.first - end};
        }
        end = isSameRead(line, read) ? line.last : end;
    }
    return std::nullopt;
}

} // namespace varda::core
