#include "core/insight/trace_recorder.h"

#include "core/insight/decoder.h"
#include "core/pairs/packet_table.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace varda::inline core {
namespace {

void appendBytes(TraceLine& line, std::span<const std::uint8_t> bytes) {
    const std::size_t room = Trace::mostLineBytes - std::min(line.bytes.size(), Trace::mostLineBytes);
    const auto kept = bytes.first(std::min(bytes.size(), room));
    line.bytes.insert(line.bytes.end(), kept.begin(), kept.end());
    line.size += bytes.size();
}

std::shared_ptr<const Bytes> shared(std::span<const std::uint8_t> bytes) {
    return std::make_shared<const Bytes>(bytes.begin(), bytes.end());
}

} // namespace

void TraceRecorder::open(std::chrono::system_clock::time_point timeOfDay) {
    isOpen_ = true;
    ++openings_;
    trace_.setTimeOfDay(clock_.now(), timeOfDay);
    forgetConnection();
    onPurpose_.clear();
    read_.clear();
    thrownAway_.clear();
}

void TraceRecorder::close() {
    isOpen_ = false;
    settle(takeOut(0), Verdict::Unseen);
    judgeRequest(Verdict::Unseen);
    forgetConnection();
}

/// What comes in from now on answers nothing that went over the line before.
void TraceRecorder::forgetConnection() {
    growing_.reset();
    request_.reset();
    asked_.reset();
    keptBack_.reset();
    heard_.forget();
    unread_.clear();
}

// The line

TraceRecorder::Number TraceRecorder::append(Direction direction, Verdict verdict, Octets bytes,
                                            Clock::Time time) {
    TraceLine line;
    line.direction = direction;
    line.verdict = verdict;
    line.first = time;
    line.last = time;
    appendBytes(line, bytes);
    growing_.reset();
    return trace_.append(std::move(line));
}

void TraceRecorder::appendEvent(Verdict verdict, const std::string& note) {
    settle({append(Direction::Event, verdict, {}, clock_.now())}, verdict, note);
}

void TraceRecorder::opened(const LineSettings& settings) {
    appendEvent(Verdict::Opened, settingsText(settings));
}

void TraceRecorder::closed() {
    lose("The port was closed.");
    appendEvent(Verdict::Closed);
}

void TraceRecorder::hungUp(const std::string& reason) {
    lose("The line went away.");
    appendEvent(Verdict::HungUp, reason);
}

void TraceRecorder::readingFailed(const std::string& reason) {
    settle(takeOut(0), Verdict::Lost, "Reading failed: " + reason + '.');
}

/// Nobody can read any more what has come in, and nothing answers any more what was sent.
void TraceRecorder::lose(const std::string& reason) {
    settle(takeOut(0), Verdict::Lost, reason);
    judgeRequest(Verdict::NotAnswered, reason);
    forgetConnection();
}

void TraceRecorder::settle(const Numbers& lines, Verdict verdict, const std::string& note) {
    const auto kept = note.empty() ? nullptr : std::make_shared<const std::string>(note);
    for (const Number number : lines) {
        trace_.change(number, [&](TraceLine& line) {
            line.verdict = verdict;
            line.note = kept;
        });
    }
}

bool TraceRecorder::goesOn(Clock::Time time) const {
    const TraceLine* const line = growing_ ? trace_.find(*growing_) : nullptr;
    return line != nullptr && time - line->last <= silence;
}

void TraceRecorder::cameIn(Octets bytes, Clock::Time time) {
    if (goesOn(time)) {
        trace_.change(*growing_, [&](TraceLine& line) {
            appendBytes(line, bytes);
            line.last = time;
        });
        unread_.back().size += bytes.size();
        return;
    }
    const Number number = append(Direction::Received, Verdict::Unread, bytes, time);
    trace_.change(number, [this](TraceLine& line) { line.request = asked_; });
    growing_ = number;
    unread_.push_back({number, bytes.size()});
}

/// What has come in was taken out of the port's buffer, all of it at once, whatever pauses it had.
/// @param counted further bytes, which nobody has seen
TraceRecorder::Numbers TraceRecorder::takeOut(std::size_t counted) {
    growing_.reset();
    std::vector<Piece> pieces = std::exchange(unread_, {});
    PartOfRead part = {.read = ++reads_, .parts = pieces.size(), .whole = wholeOf(pieces)};
    if (!pieces.empty()) {
        pieces.back().size += counted;
    }
    const std::size_t came =
        std::accumulate(pieces.begin(), pieces.end(), std::size_t{0},
                        [](std::size_t size, const Piece& piece) { return size + piece.size; });
    Numbers lines;
    for (const Piece& piece : pieces) {
        trace_.change(piece.line, [&](TraceLine& line) {
            line.size = piece.size;
            line.came = came;
            line.part = pieces.size() > 1 ? std::make_shared<const PartOfRead>(part) : nullptr;
        });
        part.place += piece.size;
        ++part.number;
        lines.push_back(piece.line);
    }
    return lines;
}

/// The bytes of more than one piece; nullptr where the trace does not have all of them.
std::shared_ptr<const Bytes> TraceRecorder::wholeOf(const std::vector<Piece>& pieces) const {
    Bytes whole;
    for (const Piece& piece : pieces) {
        const TraceLine* const line = trace_.find(piece.line);
        if (pieces.size() < 2 || line == nullptr || line->bytes.size() < piece.size ||
            whole.size() + piece.size > Trace::mostLineBytes) {
            return nullptr;
        }
        whole.insert(whole.end(), line->bytes.begin(), line->bytes.end());
    }
    return std::make_shared<const Bytes>(std::move(whole));
}

void TraceRecorder::read(std::size_t counted) { read_ = takeOut(counted); }

void TraceRecorder::thrownAway(std::size_t counted) {
    thrownAway_ = takeOut(counted);
    settle(thrownAway_, Verdict::ThrownAway);
}

/// A fault on purpose may send a request in pieces, or twice, or later than the link knows.
void TraceRecorder::sent(Octets bytes, Clock::Time time) {
    const Number number = append(Direction::Sent, Verdict::Unawaited, bytes, time);
    if (isRequest(Verdict::Awaiting)) {
        settle({number}, Verdict::Unawaited, "Sent while the answer to the request before it is awaited.");
        return;
    }
    request_ = number;
    asked_ = kindOf(bytes).isRequest() ? shared(bytes) : nullptr;
    if (const auto exchange = std::exchange(keptBack_, std::nullopt)) {
        await(*exchange);
    }
}

void TraceRecorder::notSent(Octets bytes, Clock::Time time, const std::string& reason) {
    const Number number = append(Direction::Sent, Verdict::NotSent, bytes, time);
    trace_.change(number, [&](TraceLine& line) { line.note = std::make_shared<const std::string>(reason); });
    request_ = number;
    isRefusalTold_ = true;
}

/// Before anything of it goes out: what is sent next has nothing to do with what was sent before.
void TraceRecorder::doneOnPurpose(const std::string& what) {
    if (isOpen_) {
        appendEvent(Verdict::OnPurpose, what);
        onPurpose_ = what;
        request_.reset();
    }
}

// The link

/// What the link is stuck after may have been before the trace was opened.
void TraceRecorder::told(const Exchange& exchange) {
    if (isOpen_) {
        write(exchange);
    }
    if (exchange.outcome == Outcome::Unknown || exchange.outcome == Outcome::NothingToRead) {
        isUnknownLast_ = exchange.outcome == Outcome::Unknown;
    }
}

void TraceRecorder::write(const Exchange& exchange) {
    if (isEnd(exchange.outcome) || exchange.outcome == Outcome::Ignored) {
        keptBack_.reset();
    }
    switch (exchange.outcome) {
    case Outcome::Sent:
        return toldSent(exchange);
    case Outcome::NotSent:
        return toldNotSent(exchange);
    case Outcome::Answered:
    case Outcome::WrongLength:
        return toldAnswer(exchange);
    case Outcome::NothingToRead:
        return appendEvent(Verdict::NothingToRead);
    case Outcome::Silent:
        judgeRequest(Verdict::NoAnswer);
        appendEvent(Verdict::Silence);
        return;
    case Outcome::Overtaken:
    case Outcome::HungUp:
        return judgeRequest(Verdict::Overtaken);
    case Outcome::Ignored:
        judgeRequest(Verdict::AnswerDropped);
        judge(exchange, Verdict::Ignored);
        return;
    case Outcome::Heard:
        return toldHeard(exchange);
    case Outcome::AnsweredByPair:
        return toldAnswering(exchange, Verdict::KnownPair, Verdict::SentByPair);
    case Outcome::AnsweredFromMemory:
        return toldAnswering(exchange, Verdict::KnownMemory, Verdict::SentByMemory);
    case Outcome::Unknown:
        return toldUnknown(exchange);
    case Outcome::ThrownAway: // the line has told of these, with their bytes
        return settle(std::exchange(thrownAway_, {}), Verdict::ThrownAway,
                      std::string(inWords(exchange.discarding)));
    }
}

bool TraceRecorder::isRequest(Verdict verdict) const {
    const TraceLine* const line = request_ ? trace_.find(*request_) : nullptr;
    return line != nullptr && line->verdict == verdict;
}

/// What becomes of the request whose answer is awaited.
void TraceRecorder::judgeRequest(Verdict verdict, const std::string& note) {
    if (isRequest(Verdict::Awaiting)) {
        settle({*request_}, verdict, note);
    }
}

/// What becomes of what was read last. @param also done to each of its lines @return these
TraceRecorder::Numbers TraceRecorder::judge(const Exchange& exchange, Verdict verdict,
                                            const std::function<void(TraceLine& line)>& also) {
    Numbers lines = std::exchange(read_, {});
    for (const Number number : lines) {
        trace_.change(number, [&](TraceLine& line) {
            line.verdict = verdict;
            line.mode = exchange.mode;
            line.expected = exchange.expected;
            line.whileStuck = exchange.whileStuck;
            line.afterUnknown = exchange.whileStuck && isUnknownLast_;
            also(line);
        });
    }
    return lines;
}

/// The link waits for something after every frame of a scenario, also where it does not know its length.
void TraceRecorder::toldSent(const Exchange& exchange) {
    isRefusalTold_ = false;
    const bool isOnPurpose = !std::exchange(onPurpose_, {}).empty();
    const bool isAwaited = exchange.expected > 0 || exchange.mode == Mode::Scenario;
    if (isRequest(Verdict::Unawaited) && isAwaited) {
        await(exchange);
    } else if (isOnPurpose && isAwaited) {
        keptBack_ = exchange;
    }
}

/// What went out may be the first piece of the request: what comes answers the whole of it.
void TraceRecorder::await(const Exchange& exchange) {
    trace_.change(*request_, [&](TraceLine& line) {
        line.verdict = Verdict::Awaiting;
        line.expected = exchange.expected;
        line.mode = exchange.mode;
        if (line.bytes.size() < exchange.request.size() &&
            std::ranges::equal(line.bytes, std::span(exchange.request).first(line.bytes.size()))) {
            asked_ = kindOf(exchange.request).isRequest() ? shared(exchange.request) : nullptr;
        }
    });
}

/// The line has told of what it refused itself; a closed port has no line.
void TraceRecorder::toldNotSent(const Exchange& exchange) {
    if (!read_.empty()) {
        const Verdict known = exchange.pair ? Verdict::KnownPair : Verdict::KnownMemory;
        judge(exchange, known, [&exchange](TraceLine& line) { line.pair = exchange.pair; });
    } else if (!isRefusalTold_) {
        notSent(exchange.request, clock_.now(), "The port is closed.");
    }
    isRefusalTold_ = false;
    onPurpose_.clear(); // it was done to what did not go out
}

/// The answer that is taken counts, also where something else had come for the request before it.
void TraceRecorder::toldAnswer(const Exchange& exchange) {
    const bool isTaken = exchange.outcome == Outcome::Answered;
    const bool isAgain = isRequest(Verdict::Answered);
    const Verdict verdict = !isTaken ? Verdict::Dropped : isAgain ? Verdict::TakenAgain : Verdict::Taken;
    const Numbers lines = judge(exchange, verdict, [this](TraceLine& line) { line.partner = request_; });
    if (isRequest(Verdict::Awaiting) || (isTaken && isRequest(Verdict::AnswerDropped))) {
        trace_.change(*request_, [&](TraceLine& line) {
            line.verdict = isTaken ? Verdict::Answered : Verdict::AnswerDropped;
            line.partner = lines.empty() ? std::nullopt : std::optional(lines.back());
        });
    }
}

/// On a line that is only listened to, a burst may be the answer to the request before it.
void TraceRecorder::toldHeard(const Exchange& exchange) {
    const auto request = heard_.hear(exchange.answer);
    judge(exchange, Verdict::Heard, [&request](TraceLine& line) { line.request = request; });
}

void TraceRecorder::toldAnswering(const Exchange& exchange, Verdict known, Verdict answer) {
    isRefusalTold_ = false;
    const bool isSent = !exchange.answer.empty() && isRequest(Verdict::Unawaited);
    const std::string onPurpose = std::exchange(onPurpose_, {});
    const Numbers lines = judge(exchange, known, [&](TraceLine& line) {
        if (!isSent && !onPurpose.empty()) {
            line.note = std::make_shared<const std::string>(onPurpose);
        }
        line.pair = exchange.pair;
        line.partner = isSent ? request_ : std::nullopt;
    });
    if (isSent) {
        trace_.change(*request_, [&](TraceLine& line) {
            line.verdict = answer;
            line.pair = exchange.pair;
            line.mode = exchange.mode;
            line.request = shared(exchange.request);
            line.partner = lines.empty() ? std::nullopt : std::optional(lines.front());
        });
    }
}

void TraceRecorder::toldUnknown(const Exchange& exchange) {
    const Numbers lines = judge(exchange, Verdict::UnknownPair);
    if (pairs_ == nullptr) {
        return;
    }
    const TraceLine* const read = lines.empty() ? nullptr : trace_.find(lines.front());
    const std::size_t came = read != nullptr ? read->came : exchange.request.size();
    if (auto nearest = nearestPair(*pairs_, exchange.request, came)) {
        const auto kept = std::make_shared<const NearestPair>(std::move(*nearest));
        for (const Number number : lines) {
            trace_.change(number, [&kept](TraceLine& line) { line.nearest = kept; });
        }
    } else {
        settle(lines, Verdict::UnknownPair,
               pairs_->requests().empty() ? "None is prepared." : "None of those prepared is a frame.");
    }
}

} // namespace varda::core
