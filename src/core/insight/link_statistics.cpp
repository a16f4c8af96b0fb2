#include "core/insight/link_statistics.h"

#include "core/insight/decoder.h"
#include "core/insight/field_words.h"
#include "core/insight/trace_export.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

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
    return text + spreadFields(row.response) + spreadFields(row.onWire) + spreadFields(row.period);
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
    isAwaited_ = false;
    for (Kind& kind : kinds_) {
        kind.lastSent.reset(); // a period that nobody saw is none
    }
}

void LinkStatistics::reset() {
    kinds_ = {};
    isAwaited_ = false; // an outcome without its request would not add up
    samples_.clear();
    ++changes_;
}

std::size_t LinkStatistics::indexOf(const Bytes& request) {
    const FrameKind kind = kindOf(request);
    return kind.isRequest() ? static_cast<std::size_t>(kind.command - commands().data()) : kindCount - 1;
}

/// A request has one outcome, the first, however many bursts follow it.
bool LinkStatistics::isCounted(Outcome outcome) {
    switch (outcome) {
    case Outcome::Sent:
        isAwaited_ = true;
        return true;
    case Outcome::Answered:
    case Outcome::WrongLength:
    case Outcome::Silent:
    case Outcome::Overtaken:
        return std::exchange(isAwaited_, false);
    default:
        return outcome == Outcome::NotSent;
    }
}

void LinkStatistics::told(const Exchange& exchange) {
    if (!isOpen_ || !isMasters(exchange.mode) || exchange.request.empty() || !isCounted(exchange.outcome)) {
        return;
    }
    Kind& kind = kinds_.at(indexOf(exchange.request));
    switch (exchange.outcome) {
    case Outcome::Sent:
        addSent(kind, exchange);
        break;
    case Outcome::Answered:
        addAnswer(kind, exchange);
        break;
    case Outcome::WrongLength:
        ++kind.counts.wrongLength;
        addSample(exchange, 0);
        break;
    case Outcome::Silent:
        ++kind.counts.silent;
        addSample(exchange, 0);
        break;
    case Outcome::Overtaken:
        ++kind.counts.overtaken;
        break;
    case Outcome::NotSent:
        ++kind.counts.notSent;
        break;
    default:
        break;
    }
    ++changes_;
}

void LinkStatistics::addSent(Kind& kind, const Exchange& exchange) {
    ++kind.counts.sent;
    const Clock::Time now = exchange.sent.first;
    if (kind.lastSent) {
        addBounded(kind.periods, Milliseconds(now - *kind.lastSent).count(), mostTimes);
    }
    kind.lastSent = now;
}

void LinkStatistics::addAnswer(Kind& kind, const Exchange& exchange) {
    ++kind.counts.answered;
    kind.counts.wrongCheck += decode(exchange.answer, exchange.request).has(Fault::WrongCheck) ? 1 : 0;
    const double time = Milliseconds(exchange.received.last - exchange.sent.first).count();
    addBounded(kind.responses, {time, exchange.request.size() + exchange.answer.size()}, mostTimes);
    addSample(exchange, time);
}

void LinkStatistics::addSample(const Exchange& exchange, double milliseconds) {
    const bool isSilence = exchange.outcome == Outcome::Silent;
    const Clock::Time time = isSilence ? exchange.sent.first : exchange.received.last;
    addBounded(samples_, {time, exchange.outcome, milliseconds, indexOf(exchange.request)}, mostSamples);
    while (time - samples_.front().time > plotted) {
        samples_.pop_front();
    }
}

std::vector<LinkStatistics::Row> LinkStatistics::rows(const LineSettings& settings) const {
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
            onWire.push_back(millisecondsOnWire(response.bytes, settings));
        }
        row.response = spreadOf(std::move(responses));
        row.onWire = spreadOf(std::move(onWire));
        row.period = spreadOf({kind.periods.begin(), kind.periods.end()});
        rows.push_back(std::move(row));
    }
    return rows;
}

std::string LinkStatistics::csv(const LineSettings& settings, std::optional<int> wantedPeriod) const {
    std::string text = "Kind,Sent,Answered,Wrong check,Wrong length,Silent,Overtaken,Not sent";
    for (const char* const what : {"Response", "On the wire", "Period"}) {
        for (const char* const which : {" min ms", " median ms", " 99 % ms", " max ms"}) {
            text += std::string(",") + what + which;
        }
    }
    text += ",Wanted period ms\r\n";
    for (const Row& row : rows(settings)) {
        text += rowFields(row) + ',' + (wantedPeriod ? std::to_string(*wantedPeriod) : "") + "\r\n";
    }
    return text;
}

} // namespace varda::core
