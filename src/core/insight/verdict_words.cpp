#include "core/insight/verdict_words.h"

#include "core/insight/dropped_pieces.h"
#include "core/insight/field_words.h"
#include "core/link/serial_link.h"

#include <cstdlib>

namespace varda::inline core {
namespace {

using namespace std::chrono_literals;
using Number = Trace::Number;

std::string noteOf(const TraceLine& line) { return line.note ? *line.note : std::string(); }

/// Rows are counted from 1, as a person does.
std::string pairInWords(std::size_t row) { return "prepared pair " + std::to_string(row + 1); }

std::string ticksOfSilence() { return std::to_string(SerialLink::ticksOfSilence) + " ticks of silence"; }

const TraceLine* partnerOf(const Trace& trace, const TraceLine& line) {
    return line.partner ? trace.find(*line.partner) : nullptr;
}

std::string answered(const Trace& trace, const TraceLine& line) {
    const TraceLine* const answer = partnerOf(trace, line);
    return answer != nullptr ? "Answered " + inMilliseconds(answer->last - line.first) + " later."
                             : "Answered.";
}

std::string whatCameLater(const Trace& trace, Number number) {
    const auto next = nextRead(trace, number);
    if (!next) {
        return {};
    }
    const TraceLine& line = *trace.find(next->number);
    if (line.verdict == Verdict::ThrownAway) {
        return " More came, and was thrown away.";
    }
    const std::size_t came = line.came > 0 ? line.came : line.size;
    return (isRest(trace, next->number) ? std::string(" The rest") : ' ' + counted(came, "byte") + " more") +
           " came " + inMilliseconds(next->after) + " later.";
}

/// Whether a line that was dropped ended the wait for an answer to this request.
bool endedTheWait(const Trace& trace, const TraceLine& line, const TraceLine& request) {
    const TraceLine* const first =
        request.verdict == Verdict::AnswerDropped ? partnerOf(trace, request) : nullptr;
    return first != nullptr && (first == &line || isSameRead(*first, line));
}

std::string lateAnswer(const Trace& trace, const TraceLine& line) {
    const TraceLine* const request = partnerOf(trace, line);
    if (request != nullptr && endedTheWait(trace, line, *request)) {
        return "Dropped: an answer was awaited, but its length was not known, so whatever came was dropped.";
    }
    if (request == nullptr || request->verdict != Verdict::NoAnswer) {
        return "Dropped: no answer was awaited.";
    }
    return "Dropped: it came " + inMilliseconds(line.first - request->first) +
           " after the request, when the wait for the answer had ended.";
}

std::string dropped(const Trace& trace, Number number, const TraceLine& line) {
    if (isRest(trace, number)) {
        return "Dropped: the last " + std::to_string(line.came) + " of " +
               counted(droppedBefore(trace, number).expected, "byte") +
               "; those before them had been dropped already, for pieces are not put together.";
    }
    const auto expected = static_cast<std::size_t>(line.expected);
    if (expected == 0) {
        return lateAnswer(trace, line);
    }
    if (line.came < expected) {
        return "Dropped: " + std::to_string(line.came) + " of " + counted(expected, "byte") +
               " had come when it was read." + whatCameLater(trace, number);
    }
    return "Dropped: " + counted(line.came, "byte") + ", " + std::to_string(line.came - expected) +
           " more than were awaited.";
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

std::string nearestInWords(const NearestPair& nearest) {
    const std::string which = " The nearest is " + pairInWords(nearest.row);
    if (!nearest.received && nearest.size > nearest.looked) {
        return which + ", which begins like it, but of the " + counted(nearest.size, "byte") +
               " that came no more than " + std::to_string(nearest.looked) + " are looked at.";
    }
    if (!nearest.received && nearest.size == nearest.request.size()) {
        return which + ", which is the same, but written in small letters.";
    }
    const DecodedFrame prepared = decode(nearest.request);
    const Field* const field = prepared.fieldAt(nearest.place);
    if (field == nullptr || !nearest.received) {
        return which + ", which has " + counted(nearest.request.size(), "byte") + ", not " +
               std::to_string(nearest.size) + ".";
    }
    return which + ", which differs in byte " + std::to_string(nearest.place) + " (" +
           withSmallBeginning(fieldName(*field)) + ": " + hexNumber(*nearest.received, 2) + " came, " +
           hexNumber(nearest.request[nearest.place], 2) + " is prepared).";
}

std::string unknownPair(const TraceLine& line) {
    const std::string note = noteOf(line);
    return "No prepared request matches." + (line.nearest   ? nearestInWords(*line.nearest)
                                             : note.empty() ? note
                                                            : ' ' + note);
}

std::string ofSent(const Trace& trace, const TraceLine& line) {
    switch (line.verdict) {
    case Verdict::Unawaited:
        return line.note ? *line.note : "Sent; no answer is awaited.";
    case Verdict::Awaiting:
        if (line.expected == 0) {
            return "Sent; an answer is awaited, but its length is not known, so whatever comes is dropped.";
        }
        return "Sent; an answer of " + counted(static_cast<std::size_t>(line.expected), "byte") +
               " is awaited.";
    case Verdict::Answered:
        return answered(trace, line);
    case Verdict::AnswerDropped:
        return "What came for it was dropped, and the wait ended with that.";
    case Verdict::NoAnswer:
        return "No answer within " + ticksOfSilence() + '.';
    case Verdict::NotAnswered:
        return "No answer came. " + noteOf(line);
    case Verdict::Overtaken:
        return "The next request went out, or the link went on to something else, before an answer came.";
    case Verdict::NotSent:
        return "Not sent. " + noteOf(line);
    case Verdict::SentByMemory:
        return "The answer of the controller's memory.";
    default:
        return "The answer of " + pairInWords(line.pair.value_or(0)) + ".";
    }
}

std::string ofReceived(const Trace& trace, Number number, const TraceLine& line) {
    switch (line.verdict) {
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
    case Verdict::KnownPair:
    case Verdict::KnownMemory:
        return known(line);
    case Verdict::UnknownPair:
        return unknownPair(line);
    case Verdict::ThrownAway:
        return "Thrown away unread" + (line.note ? ", " + *line.note : "") + '.';
    default:
        return "Lost before it was read. " + noteOf(line);
    }
}

std::string ofEvent(const TraceLine& line) {
    switch (line.verdict) {
    case Verdict::Opened:
        return "The port was opened with " + noteOf(line) + ".";
    case Verdict::Closed:
        return "The port was closed.";
    case Verdict::HungUp:
        return noteOf(line);
    case Verdict::OnPurpose:
        return "Our own doing: " + noteOf(line) + ".";
    case Verdict::Silence:
        return "The wait for the answer was given up after " + ticksOfSilence() + '.';
    default:
        return "The port told of bytes, and none were there. The link's timer stands still until something "
               "comes in.";
    }
}

std::string sentence(const Trace& trace, Number number, const TraceLine& line) {
    if (line.verdict == Verdict::Unseen) {
        return "The trace was closed before anything became of it.";
    }
    switch (line.direction) {
    case Direction::Sent:
        return ofSent(trace, line);
    case Direction::Received:
        return ofReceived(trace, number, line);
    default:
        return ofEvent(line);
    }
}

/// Which part of a read a line has, where it has not all of it.
std::string part(const TraceLine& line) {
    if (!line.part) {
        return {};
    }
    const PartOfRead& part = *line.part;
    const std::string from = std::to_string(part.place);
    const std::string bytes = line.size == 1
                                  ? "byte " + from
                                  : "bytes " + from + " to " + std::to_string(part.place + line.size - 1);
    return " Part " + std::to_string(part.number) + " of " + std::to_string(part.parts) + ": " + bytes +
           " of the " + std::to_string(line.came) + " that " +
           (line.verdict == Verdict::ThrownAway || line.verdict == Verdict::Lost ? "waited" : "were read") +
           " together.";
}

std::string stuck(const TraceLine& line) {
    const std::string after =
        line.afterUnknown ? "a request that no pair answers" : "an event that led to nothing";
    return line.whileStuck
               ? " It came while the link was stuck after " + after + ": its timer had stood still."
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
    const bool isPiece = isRest(trace, number);
    const std::string odd = isPiece ? std::string() : remarksOn(*line);
    const bool isTakenAnyway = line->verdict == Verdict::Taken && !odd.empty();
    text += isTakenAnyway ? " Nothing else is looked at." : "";
    return text + odd + part(*line) + stuck(*line);
}

} // namespace varda::core
