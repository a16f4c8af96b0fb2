#pragma once

#include "core/base/clock.h"
#include "core/link/exchange.h"
#include "core/link/line.h"
#include "core/protocol/frame.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace varda::inline core {

/// Milliseconds of many: the shortest, the one in the middle, the one that 99 of a hundred do not exceed, the
/// longest.
struct Spread {
    double least = 0;
    double median = 0;
    double percentile99 = 0;
    double most = 0;
};

/// Nothing where there are none.
std::optional<Spread> spreadOf(std::vector<double> values);

/// Time that so many bytes take on a line, with start, parity and stop bits.
double millisecondsOnWire(std::size_t bytes, const LineSettings& settings);

/// Counts what becomes of requests, of each one thing, while it is open; one row for each kind of request,
/// one for what is none.
class LinkStatistics : public LinkObserver {
public:
    /// The last times that are kept of each kind; counts know no limit.
    static constexpr std::size_t mostTimes = 20'000;
    static constexpr std::chrono::minutes plotted{10};
    static constexpr std::size_t mostSamples = 60'000;

    /// Requests of one kind.
    struct Row {
        std::string kind;
        std::size_t sent = 0;
        std::size_t answered = 0;
        std::size_t wrongCheck = 0; ///< among the answered
        std::size_t wrongLength = 0;
        std::size_t silent = 0;
        std::size_t overtaken = 0; ///< also where the line went away, or the link went on to another mode
        std::size_t notSent = 0;
        std::optional<Spread> response; ///< from handing the request over to the answer's last byte, ms
        std::optional<Spread> onWire; ///< what of it the bytes took on the line, at the settings of then, ms
        std::optional<Spread> period; ///< from one request of the kind to its next one, ms
        std::optional<int> wantedPeriod; ///< when the last of them was sent, ms
    };

    /// A point of the plot.
    struct Sample {
        Clock::Time time;
        Outcome outcome;         ///< Answered, WrongLength or Silent
        double milliseconds = 0; ///< of an answer
    };

    /// What holds while something happens, asked for then.
    struct Conditions {
        std::function<LineSettings()> settings = [] { return LineSettings(); }; ///< of the port
        /// At which requests are repeated, in ms.
        std::function<std::optional<int>()> wantedPeriod = [] { return std::nullopt; };
    };
    void setConditions(Conditions conditions) { conditions_ = std::move(conditions); }

    void open() { isOpen_ = true; }
    void close();
    void reset();

    void told(const Exchange& exchange) override;
    void connected() override;

    /// Only kinds of which something is known, in the order of the codes.
    std::vector<Row> rows() const;
    /// The same rows as a CSV file.
    std::string csv() const;

    /// The last ten minutes, in the order in which they were told.
    std::vector<Sample> samples(Clock::Time now) const;
    /// Rises with every change.
    std::uint64_t changes() const { return changes_; }

private:
    struct Response {
        double milliseconds;
        double onWire; ///< of it, for the bytes of request and answer
    };
    struct Kind {
        Row counts;
        std::deque<Response> responses;
        std::deque<double> periods;
        std::optional<Clock::Time> lastSent;
    };

    static constexpr std::size_t kindCount = 7;
    Kind& kindOfRequest(const Bytes& request);

    void forgetLastSent();
    void addSent(const Exchange& exchange);
    void addAnswer(const Exchange& exchange);
    void settle(const Exchange& exchange, std::size_t& count);
    void addSample(const Exchange& exchange, double milliseconds);

    bool isOpen_ = false;
    Conditions conditions_;
    std::array<Kind, kindCount> kinds_;
    std::deque<Sample> samples_;
    /// Of a request that was not seen nothing counts.
    std::optional<Outcome> settled_ =
        Outcome::Overtaken; ///< what became of the request that was sent last, once that is known
    std::uint64_t changes_ = 0;
};

} // namespace varda::core
