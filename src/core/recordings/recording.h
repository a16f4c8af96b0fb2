#pragma once

#include "core/base/bytes.h"
#include "core/insight/trace.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace varda::inline core {

/// Bytes that went over a line together.
struct RecordedBurst {
    std::chrono::system_clock::time_point time; ///< of the first byte
    bool isSent = false;                        ///< else received, or only listened to
    Bytes bytes;

    bool operator==(const RecordedBurst&) const = default;
};

/// What went over a line, in the order of its times.
using Recording = std::vector<RecordedBurst>;

/// The lines of a trace that went over the line and were kept whole. Those that are gone are left out.
Recording recordingOf(const Trace& trace, std::span<const Trace::Number> lines);

/// A request that was recorded, and the first answer that came for it before the next one.
struct RecordedExchange {
    std::chrono::system_clock::time_point time; ///< of the burst that the request is in
    Bytes request;
    std::optional<Bytes> answer;

    bool operator==(const RecordedExchange&) const = default;
};

/// Finds the requests and their answers, burst by burst.
class ExchangeFinder {
public:
    /// @param isAsking who recorded the bursts sent the requests
    explicit ExchangeFinder(bool isAsking) : isAsking_(isAsking) {}

    void take(const RecordedBurst& burst);
    std::vector<RecordedExchange> takeExchanges() { return std::exchange(exchanges_, {}); }

private:
    bool isAsking_;
    std::vector<RecordedExchange> exchanges_;
};

/// The requests of a recording with their answers: by their codes, whoever recorded them. A frame of no
/// command is a request where it was sent by who sent the requests.
std::vector<RecordedExchange> exchangesOf(const Recording& recording);

/// Bytes of the answer to a request, mixed ones too; 0 where it is none.
int answerLengthOf(std::span<const std::uint8_t> request);

} // namespace varda::core
