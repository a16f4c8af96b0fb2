#include "core/insight/link_statistics.h"

#include "core/insight/csv_field.h"
#include "core/insight/decoder.h"
#include "core/insight/field_words.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace varda::inline core {
namespace {

using Milliseconds = std::chrono::duration<double, std::milli>;

template <typename Item>
void addBounded(std::deque<Item>& items, const Item& item, std::size_t most) {
    items.push_back(item);
    if (items.size() > most) {
        items.pop_front();
    }
}

/// Whether an exchange is one of a master's.
bool isMasters(Mode mode) { return findRoute(mode) != nullptr || mode == Mode::Scenario; }

/// Whether the link stopped waiting for something else's sake.
bool isGivenUp(Outcome outcome) {
    return outcome == Outcome::Overtaken || outcome == Outcome::HungUp || outcome == Outcome::Ignored;
}

std::string number(std::optional<double> value) {
    if (!value) {
        return {};
    }
    std::array<char, 32> text = {};
    std::snprintf(text.data(), text.size(), "%.3f", *value);
    return text.data();
}

std::string spreadFields(const std::optional<Spread>& spread) {
    const auto part = [&spread](double Spread::*which) {
        return ',' + number(spread ? std::optional((*spread).*which) : std::nullopt);
    };
    return part(&Spread::least) + part(&Spread::median) + part(&Spread::percentile99) + part(&Spread::most);
}

std::string rowFields(const LinkStatistics::Row& row) {
    std::string text = csvField(row.kind);
    for (const std::size_t count :
         {row.sent, row.answered, row.wrongCheck, row.wrongLength, row.silent, row.overtaken, row.notSent}) {
        text += ',' + std::to_string(count);
    }
    return text + spreadFields(row.response) + spreadFields(row.onWire) + spreadFields(row.period) + ',' +
           (row.wantedPeriod ? std::to_string(*row.wantedPeriod) : "");
}

} // namespace

std::optional<Spread> spreadOf(std::vector<double> values) {
    if (values.empty()) {
        return std::nullopt;
    }
    std::ranges::sort(values);
    const auto rank = [&values](double part) {
        const auto place = static_cast<std::size_t>(std::ceil(part * static_cast<double>(values.size())));
        return values[std::max<std::size_t>(place, 1) - 1];
    };
    return Spread{values.front(), rank(0.5), rank(0.99), values.back()};
}

double millisecondsOnWire(std::size_t bytes, const LineSettings& settings) {
    const int parity = settings.parity == 'n' ? 0 : 1;
    const int bits = 1 + settings.dataBits + parity + settings.stopBits;
    return static_cast<double>(bytes) * bits * 1000 / settings.baudRate;
}

void LinkStatistics::close() {
    isOpen_ = false;
    settled_ = Outcome::Overtaken;
    forgetLastSent(); // a period that nobody saw is none
}

/// The time without a connection is part of no period.
void LinkStatistics::connected() { forgetLastSent(); }

void LinkStatistics::forgetLastSent() {
    for (Kind& kind : kinds_) {
        kind.lastSent.reset();
    }
}

void LinkStatistics::reset() {
    kinds_ = {};
    samples_.clear();
    settled_ = Outcome::Overtaken; // an outcome without its request would not add up
    ++changes_;
}

LinkStatistics::Kind& LinkStatistics::kindOfRequest(const Bytes& request) {
    const FrameKind kind = kindOf(request);
    return kinds_.at(kind.isRequest() ? static_cast<std::size_t>(kind.command - commands().data())
                                      : kindCount - 1);
}

/// What becomes of a master's request may be told when the link has another mode.
void LinkStatistics::told(const Exchange& exchange) {
    if (!isOpen_ || exchange.request.empty() || !(isMasters(exchange.mode) || isGivenUp(exchange.outcome))) {
        return;
    }
    Row& counts = kindOfRequest(exchange.request).counts;
    switch (exchange.outcome) {
    case Outcome::Sent:
        return addSent(exchange);
    case Outcome::Answered:
        return addAnswer(exchange);
    case Outcome::WrongLength:
        return settle(exchange, counts.wrongLength);
    case Outcome::Silent:
        return settle(exchange, counts.silent);
    case Outcome::Overtaken:
    case Outcome::HungUp:
    case Outcome::Ignored:
        return settle(exchange, counts.overtaken);
    case Outcome::NotSent:
        settled_.reset(); // it is another request than the last one that was sent
        return settle(exchange, counts.notSent);
    default:
        return;
    }
}

void LinkStatistics::addSent(const Exchange& exchange) {
    Kind& kind = kindOfRequest(exchange.request);
    const Clock::Time now = exchange.sent.first;
    if (kind.lastSent) {
        addBounded(kind.periods, Milliseconds(now - *kind.lastSent).count(), mostTimes);
    }
    kind.lastSent = now;
    kind.counts.wantedPeriod = conditions_.wantedPeriod();
    settled_.reset();
    ++kind.counts.sent;
    ++changes_;
}

/// Something becomes of a request; what becomes of it later does not count.
void LinkStatistics::settle(const Exchange& exchange, std::size_t& count) {
    if (settled_) {
        return;
    }
    settled_ = exchange.outcome;
    ++count;
    if (exchange.outcome == Outcome::WrongLength || exchange.outcome == Outcome::Silent) {
        addSample(exchange, 0);
    }
    ++changes_;
}

/// An answer that is taken counts also where something was dropped before it, and then in its place.
void LinkStatistics::addAnswer(const Exchange& exchange) {
    Kind& kind = kindOfRequest(exchange.request);
    if (settled_ == Outcome::WrongLength) {
        --kind.counts.wrongLength;
        samples_.pop_back();
        settled_.reset();
    }
    if (settled_) {
        return;
    }
    const double time = Milliseconds(exchange.received.last - exchange.sent.first).count();
    settle(exchange, kind.counts.answered);
    kind.counts.wrongCheck += decode(exchange.answer, exchange.request).has(Fault::WrongCheck) ? 1 : 0;
    const std::size_t bytes = exchange.request.size() + exchange.answer.size();
    addBounded(kind.responses, {time, millisecondsOnWire(bytes, conditions_.settings())}, mostTimes);
    addSample(exchange, time);
}

void LinkStatistics::addSample(const Exchange& exchange, double milliseconds) {
    const bool isSilence = exchange.outcome == Outcome::Silent;
    const Clock::Time time = isSilence ? exchange.sent.first : exchange.received.last;
    addBounded(samples_, {time, exchange.outcome, milliseconds}, mostSamples);
    while (time - samples_.front().time > plotted) {
        samples_.pop_front();
    }
}

std::vector<LinkStatistics::Sample> LinkStatistics::samples(Clock::Time now) const {
    const auto isOld = [now](const Sample& sample) { return now - sample.time > plotted; };
    return {std::ranges::find_if_not(samples_, isOld), samples_.end()};
}

std::vector<LinkStatistics::Row> LinkStatistics::rows() const {
    std::vector<Row> rows;
    for (std::size_t index = 0; index < kindCount; ++index) {
        const Kind& kind = kinds_.at(index);
        Row row = kind.counts;
        if (row.sent + row.answered + row.wrongLength + row.silent + row.overtaken + row.notSent == 0) {
            continue;
        }
        row.kind = index + 1 < kindCount ? kindInWords({&commands()[index], false}) : "unknown";
        std::vector<double> responses;
        std::vector<double> onWire;
        for (const Response& response : kind.responses) {
            responses.push_back(response.milliseconds);
            onWire.push_back(response.onWire);
        }
        row.response = spreadOf(std::move(responses));
        row.onWire = spreadOf(std::move(onWire));
        row.period = spreadOf({kind.periods.begin(), kind.periods.end()});
        rows.push_back(std::move(row));
    }
    return rows;
}

std::string LinkStatistics::csv() const {
    std::string text = "Kind,Sent,Answered,Wrong check,Wrong length,Silent,Overtaken,Not sent";
    for (const char* const what : {"Response", "On the wire", "Period"}) {
        for (const char* const which : {" min ms", " median ms", " 99 % ms", " max ms"}) {
            text += std::string(",") + what + which;
        }
    }
    text += ",Wanted period ms\r\n";
    for (const Row& row : rows()) {
        text += rowFields(row) + "\r\n";
    }
    return text;
}

} // namespace varda::core
