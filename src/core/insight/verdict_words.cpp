#include "core/insight/verdict_words.h"

#include "core/insight/field_words.h"
#include "core/insight/frame_remarks.h"
#include "core/link/serial_link.h"

#include <cstdlib>

namespace varda::inline core {
namespace {

using namespace std::chrono_literals;
using Number = Trace::Number;

std::string noteOf(const TraceLine& line) { return line.note ? *line.note : std::string(); }

/// Rows are counted from 1, as a person does.
std::string pairInWords(std::size_t row) { return "prepared pair " + std::to_string(row + 1); }

const TraceLine* partnerOf(const Trace& trace, const TraceLine& line) {
    return line.partner ? trace.find(*line.partner) : nullptr;
}

std::string answered(const Trace& trace, const TraceLine& line) {
    const TraceLine* const answer = partnerOf(trace, line);
    return answer != nullptr ? "Answered " + inMilliseconds(answer->last - line.first) + " later."
                             : "Answered.";
}

/// The next burst that came before anything else was sent.
const TraceLine* nextReceived(const Trace& trace, Number number) {
    for (Number next = number + 1; next < trace.end(); ++next) {
        const TraceLine* const line = trace.find(next);
        if (line->direction == Direction::Sent) {
            return nullptr;
        }
        if (line->direction == Direction::Received) {
            return line;
        }
    }
    return nullptr;
}

/// Whether a burst is what lacked in one that was dropped before it.
bool isRest(const Trace& trace, Number number, const TraceLine& line) {
    for (Number before = number; before-- > trace.begin();) {
        const TraceLine* const earlier = trace.find(before);
        if (earlier->direction == Direction::Sent) {
            return false;
        }
        if (earlier->direction == Direction::Received) {
            return earlier->verdict == Verdict::Dropped &&
                   earlier->came + line.came == static_cast<std::size_t>(line.expected);
        }
    }
    return false;
}

std::string whatCameLater(const Trace& trace, Number number, const TraceLine& line) {
    const TraceLine* const next = nextReceived(trace, number);
    if (next == nullptr || next->verdict == Verdict::ThrownAway) {
        return next == nullptr ? "" : " More came, and was thrown away.";
    }
    const bool isAll = line.came + next->size == static_cast<std::size_t>(line.expected);
    return (isAll ? std::string(" The rest") : ' ' + counted(next->size, "byte") + " more") + " came " +
           inMilliseconds(next->first - line.last) + " later.";
}

std::string lateAnswer(const Trace& trace, const TraceLine& line) {
    const TraceLine* const request = partnerOf(trace, line);
    if (request == nullptr || request->verdict != Verdict::NoAnswer) {
        return "Dropped: no answer was awaited.";
    }
    return "Dropped: it came " + inMilliseconds(line.first - request->first) +
           " after the request, when the wait for the answer had ended.";
}

std::string dropped(const Trace& trace, Number number, const TraceLine& line) {
    const auto expected = static_cast<std::size_t>(line.expected);
    if (expected == 0) {
        return lateAnswer(trace, line);
    }
    if (isRest(trace, number, line)) {
        return "Dropped: the last " + std::to_string(line.came) + " of " + counted(expected, "byte") +
               "; those before them had been dropped already, for pieces are not put together.";
    }
    if (line.came < expected) {
        return "Dropped: " + std::to_string(line.came) + " of " + counted(expected, "byte") +
               " had come when it was read." + whatCameLater(trace, number, line);
    }
    return "Dropped: " + counted(line.came, "byte") + ", " + std::to_string(line.came - expected) +
           " more than were awaited.";
}

/// Whether something was sent right after this line, in the same step of the program.
bool isBeforeSend(const Trace& trace, Number number, const TraceLine& line) {
    const Number next = number + 1;
    const TraceLine* const later = trace.find(next);
    return later != nullptr && later->direction == Direction::Sent && later->first >= line.last;
}

std::string known(const TraceLine& line) {
    const std::string pair = line.pair                              ? pairInWords(*line.pair)
                             : line.verdict == Verdict::KnownMemory ? "the controller's memory"
                                                                    : "a prepared pair";
    if (line.note) {
        return "Known, by " + pair + ", whose answer a fault on purpose kept back: " + *line.note + ".";
    }
    return line.partner ? "Answered by " + pair + "."
                        : "Known, by " + pair +
                              ", but nothing was sent: the port is closed or did not "
                              "take the answer, or the answer is no frame.";
}

std::string withSmallBeginning(std::string name) {
    const bool isWord = name.size() > 1 && name[1] >= 'a' && name[1] <= 'z';
    if (isWord && name[0] >= 'A' && name[0] <= 'Z') {
        name[0] = static_cast<char>(name[0] - 'A' + 'a');
    }
    return name;
}

std::string nearestInWords(const TraceLine& line) {
    const NearestPair& nearest = *line.nearest;
    const std::string which = " The nearest is " + pairInWords(nearest.row);
    const std::size_t place = nearest.place;
    const DecodedFrame prepared = decode(nearest.request);
    const Field* const field = prepared.fieldAt(place);
    if (field == nullptr || place >= line.bytes.size()) {
        return which + ", which has " + counted(nearest.request.size(), "byte") + ", not " +
               std::to_string(line.size) + ".";
    }
    return which + ", which differs in byte " + std::to_string(place) + " (" +
           withSmallBeginning(fieldName(*field)) + ": " + hexNumber(line.bytes[place], 2) + " came, " +
           hexNumber(nearest.request[place], 2) + " is prepared).";
}

std::string unknownPair(const TraceLine& line) {
    return "No prepared request matches." +
           (line.nearest ? nearestInWords(line) : std::string(" None is prepared."));
}

std::string sentence(const Trace& trace, Number number, const TraceLine& line) {
    switch (line.verdict) {
    case Verdict::Unawaited:
        return "Sent; no answer is awaited.";
    case Verdict::Awaiting:
        return "Sent; an answer of " + std::to_string(line.expected) + " bytes is awaited.";
    case Verdict::Answered:
        return answered(trace, line);
    case Verdict::AnswerDropped:
        return "What came for it was dropped, and the wait ended with that.";
    case Verdict::NoAnswer:
        return "No answer within " + std::to_string(SerialLink::ticksOfSilence) + " ticks of silence.";
    case Verdict::Overtaken:
        return "The next request went out, or the port was closed, before an answer came.";
    case Verdict::NotSent:
        return "Not sent. " + noteOf(line);
    case Verdict::SentByPair:
        return "The answer of " + pairInWords(line.pair.value_or(0)) + ".";
    case Verdict::Unread:
        return "Waits to be read.";
    case Verdict::Taken:
        return "Taken: it has the " + counted(line.came, "byte") + " that were awaited.";
    case Verdict::TakenAgain:
        return "Taken once more: the request had its answer already, and this has its length, too.";
    case Verdict::Dropped:
        return dropped(trace, number, line);
    case Verdict::Ignored:
        return "Dropped: what is shown has no use for bytes that come in.";
    case Verdict::Heard:
        return "Listed by the monitor.";
    case Verdict::SentByMemory:
        return "The answer of the controller's memory.";
    case Verdict::KnownPair:
    case Verdict::KnownMemory:
        return known(line);
    case Verdict::UnknownPair:
        return unknownPair(line);
    case Verdict::ThrownAway:
        return isBeforeSend(trace, number, line) ? "Thrown away unread, before the next send."
                                                 : "Thrown away unread, when the link began anew.";
    case Verdict::Lost:
        return "Lost before it was read. " + noteOf(line);
    case Verdict::Opened:
        return "The port was opened with " + noteOf(line) + ".";
    case Verdict::Closed:
        return "The port was closed.";
    case Verdict::HungUp:
        return noteOf(line);
    case Verdict::OnPurpose:
        return "Our own doing: " + noteOf(line) + ".";
    case Verdict::Silence:
        return "The wait for the answer was given up after " + std::to_string(SerialLink::ticksOfSilence) +
               " ticks of silence.";
    default:
        return "The port told of bytes, and none were there. The link's timer stands still until something "
               "comes in.";
    }
}

bool isForAnswer(Verdict verdict) {
    return verdict == Verdict::Taken || verdict == Verdict::TakenAgain || verdict == Verdict::Dropped ||
           verdict == Verdict::ThrownAway;
}

std::string remarks(const TraceLine& line) {
    if (line.bytes.empty() || line.direction != Direction::Received) {
        return {};
    }
    return isForAnswer(line.verdict) && line.request ? remarksOnAnswer(line.bytes, *line.request)
                                                     : remarksOnFrames(line.bytes);
}

std::string together(const TraceLine& line) {
    return line.came > line.size ? " It was read together with the burst beside it." : "";
}

std::string stuck(const TraceLine& line) {
    return line.whileStuck
               ? " It came while the link was stuck after an event that led to nothing: its timer had "
                 "stood still."
               : "";
}

} // namespace

std::string inMilliseconds(Clock::Time::duration time) {
    const auto tenths = std::chrono::duration_cast<std::chrono::microseconds>(time).count() / 100;
    if (tenths >= 100 || tenths % 10 == 0) {
        return std::to_string(tenths / 10) + " ms";
    }
    return std::to_string(tenths / 10) + '.' + std::to_string(std::abs(tenths % 10)) + " ms";
}

std::string verdictInWords(const Trace& trace, Trace::Number number) {
    const TraceLine* const line = trace.find(number);
    if (line == nullptr) {
        return {};
    }
    std::string text = sentence(trace, number, *line);
    const bool isPiece = line->verdict == Verdict::Dropped && isRest(trace, number, *line);
    const std::string odd = isPiece ? std::string() : remarks(*line);
    const bool isTakenAnyway = line->verdict == Verdict::Taken && !odd.empty();
    text += isTakenAnyway ? " Nothing else is looked at." : "";
    return text + odd + together(*line) + stuck(*line);
}

} // namespace varda::core
