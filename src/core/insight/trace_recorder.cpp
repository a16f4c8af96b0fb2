#include "core/insight/trace_recorder.h"

#include "core/insight/decoder.h"

#include <algorithm>
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
    trace_.setTimeOfDay(clock_.now(), timeOfDay);
    growing_.reset();
    request_.reset();
    stuckIn_.reset();
    asked_.reset();
    heard_.reset();
    unread_.clear();
    read_.clear();
}

void TraceRecorder::close() { isOpen_ = false; }

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

TraceRecorder::Number TraceRecorder::appendEvent(Verdict verdict, const std::string& note) {
    const Number number = append(Direction::Event, verdict, {}, clock_.now());
    if (!note.empty()) {
        trace_.change(number,
                      [&](TraceLine& line) { line.note = std::make_shared<const std::string>(note); });
    }
    return number;
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

void TraceRecorder::readingFailed(const std::string& reason) { lose("Reading failed: " + reason + '.'); }

/// Nobody can read any more what has come in.
void TraceRecorder::lose(const std::string& reason) {
    const auto note = std::make_shared<const std::string>(reason);
    for (const Number number : std::exchange(unread_, {})) {
        trace_.change(number, [&note](TraceLine& line) {
            line.verdict = Verdict::Lost;
            line.note = note;
        });
    }
    growing_.reset();
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
        return;
    }
    const Number number = append(Direction::Received, Verdict::Unread, bytes, time);
    trace_.change(number, [this](TraceLine& line) { line.request = asked_; });
    growing_ = number;
    unread_.push_back(number);
}

void TraceRecorder::count(const Numbers& lines, std::size_t counted) {
    if (!lines.empty() && counted > 0) {
        trace_.change(lines.back(), [counted](TraceLine& line) { line.size += counted; });
    }
}

void TraceRecorder::read(std::size_t counted) {
    count(unread_, counted);
    read_ = std::exchange(unread_, {});
    growing_.reset();
}

void TraceRecorder::thrownAway(std::size_t counted) {
    count(unread_, counted);
    for (const Number number : std::exchange(unread_, {})) {
        trace_.change(number, [](TraceLine& line) { line.verdict = Verdict::ThrownAway; });
    }
    growing_.reset();
}

void TraceRecorder::sent(Octets bytes, Clock::Time time) {
    request_ = append(Direction::Sent, Verdict::Unawaited, bytes, time);
    asked_ = kindOf(bytes).isRequest() ? shared(bytes) : nullptr;
}

void TraceRecorder::notSent(Octets bytes, Clock::Time time, const std::string& reason) {
    const Number number = append(Direction::Sent, Verdict::NotSent, bytes, time);
    trace_.change(number, [&](TraceLine& line) { line.note = std::make_shared<const std::string>(reason); });
    request_ = number;
    isRefusalTold_ = true;
}

// The link

void TraceRecorder::told(const Exchange& exchange) {
    if (!isOpen_) {
        return;
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
        return toldNothingToRead(exchange);
    case Outcome::Silent:
        judgeRequest(Verdict::NoAnswer);
        appendEvent(Verdict::Silence);
        return;
    case Outcome::Overtaken:
    case Outcome::HungUp:
        return judgeRequest(Verdict::Overtaken);
    case Outcome::Ignored:
        judgeRequest(Verdict::AnswerDropped);
        return judge(exchange, Verdict::Ignored);
    case Outcome::Heard:
        return toldHeard(exchange);
    case Outcome::AnsweredByPair:
        return toldPair(exchange);
    case Outcome::Unknown:
        return toldUnknown(exchange);
    case Outcome::ThrownAway: // the line tells of these, with their bytes
        return;
    }
}

bool TraceRecorder::isRequest(Verdict verdict) const {
    const TraceLine* const line = request_ ? trace_.find(*request_) : nullptr;
    return line != nullptr && line->verdict == verdict;
}

/// What becomes of the request whose answer is awaited.
void TraceRecorder::judgeRequest(Verdict verdict) {
    if (isRequest(Verdict::Awaiting)) {
        trace_.change(*request_, [verdict](TraceLine& line) { line.verdict = verdict; });
    }
}

/// What becomes of what was read last.
void TraceRecorder::judge(const Exchange& exchange, Verdict verdict) {
    const Numbers lines = std::exchange(read_, {});
    std::size_t came = 0;
    for (const Number number : lines) {
        const TraceLine* const line = trace_.find(number);
        came += line != nullptr ? line->size : 0;
    }
    const bool whileStuck = stuckIn_ == exchange.mode;
    for (const Number number : lines) {
        trace_.change(number, [&](TraceLine& line) {
            line.verdict = verdict;
            line.mode = exchange.mode;
            line.expected = exchange.expected;
            line.came = came;
            line.whileStuck = whileStuck;
        });
    }
    stuckIn_.reset();
}

void TraceRecorder::toldSent(const Exchange& exchange) {
    isRefusalTold_ = false;
    if (isRequest(Verdict::Unawaited) && exchange.expected > 0) {
        trace_.change(*request_, [&](TraceLine& line) {
            line.verdict = Verdict::Awaiting;
            line.expected = exchange.expected;
            line.mode = exchange.mode;
        });
    }
}

/// The line has told of what it refused itself; a closed port has no line.
void TraceRecorder::toldNotSent(const Exchange& exchange) {
    if (!read_.empty()) {
        judge(exchange, Verdict::KnownPair);
    } else if (!isRefusalTold_) {
        notSent(exchange.request, clock_.now(), "The port is closed.");
    }
    isRefusalTold_ = false;
}

void TraceRecorder::toldAnswer(const Exchange& exchange) {
    const bool isTaken = exchange.outcome == Outcome::Answered;
    const Numbers lines = read_;
    const bool isAgain = isRequest(Verdict::Answered);
    judge(exchange, !isTaken ? Verdict::Dropped : isAgain ? Verdict::TakenAgain : Verdict::Taken);
    for (const Number number : lines) {
        trace_.change(number, [this](TraceLine& line) { line.partner = request_; });
    }
    if (isRequest(Verdict::Awaiting) && !lines.empty()) {
        trace_.change(*request_, [&](TraceLine& line) { line.partner = lines.back(); });
    }
    judgeRequest(isTaken ? Verdict::Answered : Verdict::AnswerDropped);
}

/// On a line that is only listened to, a burst may be the answer to the request before it.
void TraceRecorder::toldHeard(const Exchange& exchange) {
    const Numbers lines = read_;
    judge(exchange, Verdict::Heard);
    for (const Number number : lines) {
        trace_.change(number, [this](TraceLine& line) {
            line.request = std::exchange(heard_, nullptr);
            heard_ = kindOf(line.bytes).isRequest() ? shared(line.bytes) : nullptr;
        });
    }
}

void TraceRecorder::toldPair(const Exchange& exchange) {
    const Numbers lines = read_;
    judge(exchange, Verdict::KnownPair);
    const bool isSent = !exchange.answer.empty() && isRequest(Verdict::Unawaited);
    for (const Number number : lines) {
        trace_.change(number, [&](TraceLine& line) {
            line.pair = exchange.pair;
            line.partner = isSent ? request_ : std::nullopt;
        });
    }
    if (isSent) {
        trace_.change(*request_, [&](TraceLine& line) {
            line.verdict = Verdict::SentByPair;
            line.pair = exchange.pair;
            line.mode = exchange.mode;
            line.request = shared(exchange.request);
            line.partner = lines.empty() ? std::nullopt : std::optional(lines.front());
        });
    }
}

void TraceRecorder::toldUnknown(const Exchange& exchange) {
    const Numbers lines = read_;
    judge(exchange, Verdict::UnknownPair);
    stuckIn_ = exchange.mode;
    if (auto nearest = pairs_ != nullptr ? nearestPair(*pairs_, exchange.request) : std::nullopt) {
        const auto kept = std::make_shared<const NearestPair>(std::move(*nearest));
        for (const Number number : lines) {
            trace_.change(number, [&](TraceLine& line) { line.nearest = kept; });
        }
    }
}

void TraceRecorder::toldNothingToRead(const Exchange& exchange) {
    appendEvent(Verdict::NothingToRead);
    stuckIn_ = exchange.mode;
}

} // namespace varda::core
