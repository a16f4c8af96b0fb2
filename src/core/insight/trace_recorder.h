#pragma once

#include "core/insight/heard_request.h"
#include "core/insight/trace.h"
#include "core/insight/traced_line.h"
#include "core/link/exchange.h"

#include <chrono>
#include <functional>
#include <optional>
#include <vector>

namespace varda::inline core {

class PacketTable;

/// Writes down what goes over a line and what the link makes of it, while it is open.
///
/// It listens to the line (traced()), and observes the link on it: before any observer that sends when it is
/// told, or the trace would take that for what came first. Of what comes in, bytes with no pause
/// between them are one line.
class TraceRecorder : public LineTap, public LinkObserver {
public:
    /// A burst ends when nothing has come for so long.
    static constexpr std::chrono::milliseconds silence{20};

    TraceRecorder(Trace& trace, const Clock& clock) : trace_(trace), clock_(clock) {}

    /// The prepared pairs, of which the nearest to an unknown request is looked up.
    void setPairs(const PacketTable& pairs) { pairs_ = &pairs; }

    /// Begins to write down. @param timeOfDay what the time of day is now
    void open(std::chrono::system_clock::time_point timeOfDay = std::chrono::system_clock::now());
    /// Writes nothing more down; the trace stays.
    void close();

    bool isOpen() const noexcept override { return isOpen_; }
    std::uint64_t openings() const noexcept override { return openings_; }
    void opened(const LineSettings& settings) override;
    void closed() override;
    void hungUp(const std::string& reason) override;
    void cameIn(Octets bytes, Clock::Time time) override;
    void read(std::size_t counted) override;
    void readingFailed(const std::string& reason) override;
    void thrownAway(std::size_t counted) override;
    void sent(Octets bytes, Clock::Time time) override;
    void notSent(Octets bytes, Clock::Time time, const std::string& reason) override;
    void doneOnPurpose(const std::string& what) override;

    void told(const Exchange& exchange) override;

private:
    using Number = Trace::Number;
    using Numbers = std::vector<Number>;

    /// A line of what came in and waits.
    struct Piece {
        Number line;
        std::size_t size;
    };

    bool goesOn(Clock::Time time) const;
    Number append(Direction direction, Verdict verdict, Octets bytes, Clock::Time time);
    void appendEvent(Verdict verdict, const std::string& note = {});
    void forgetConnection();

    Numbers takeOut(std::size_t counted);
    std::shared_ptr<const Bytes> wholeOf(const std::vector<Piece>& pieces) const;
    void lose(const std::string& reason);
    void settle(const Numbers& lines, Verdict verdict, const std::string& note = {});
    Numbers judge(
        const Exchange& exchange, Verdict verdict,
        const std::function<void(TraceLine& line)>& also = [](TraceLine& /*line*/) {});
    void judgeRequest(Verdict verdict, const std::string& note = {});
    bool isRequest(Verdict verdict) const;

    void write(const Exchange& exchange);
    void toldSent(const Exchange& exchange);
    void await(const Exchange& exchange);
    void toldNotSent(const Exchange& exchange);
    void toldAnswer(const Exchange& exchange);
    void toldHeard(const Exchange& exchange);
    void toldAnswering(const Exchange& exchange, Verdict known, Verdict answer);
    void toldUnknown(const Exchange& exchange);

    Trace& trace_;
    const Clock& clock_;
    const PacketTable* pairs_ = nullptr;
    bool isOpen_ = false;
    std::uint64_t openings_ = 0;
    std::optional<Number> growing_;      ///< the burst that the next bytes may belong to
    std::vector<Piece> unread_;          ///< came in and wait
    Numbers read_;                       ///< were read, and the link has not told what it makes of them
    Numbers thrownAway_;                 ///< and the link has not told why
    std::uint64_t reads_ = 0;            ///< that there were
    std::optional<Number> request_;      ///< what was sent last
    std::shared_ptr<const Bytes> asked_; ///< its bytes, where it is a request
    HeardRequest heard_;
    bool isRefusalTold_ = false; ///< by the line, before the link does
    std::string onPurpose_;      ///< done to what is sent, before the link tells of it
    std::optional<Exchange>
        keptBack_;               ///< is awaited, and no byte of its request has gone out yet, on purpose
    bool isUnknownLast_ = false; ///< of what leaves the link stuck, a request that no pair answers came last
};

} // namespace varda::core
