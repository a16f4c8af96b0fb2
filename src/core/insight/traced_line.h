#pragma once

#include "core/base/clock.h"
#include "core/link/line_around.h"
#include "core/link/mscomm.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace varda::inline core {

/// Is told what goes over a line, while it happens, on the interface thread.
class LineTap {
public:
    using Octets = std::span<const std::uint8_t>;

    LineTap() = default;
    LineTap(const LineTap&) = delete;
    LineTap& operator=(const LineTap&) = delete;
    virtual ~LineTap() = default;

    /// Whether somebody wants to know; nothing else is called where not.
    virtual bool isOpen() const noexcept = 0;
    /// How many times somebody has begun to want to know: who does knows nothing of what was told before.
    virtual std::uint64_t openings() const noexcept = 0;
    virtual void opened(const LineSettings& settings) = 0;
    virtual void closed() = 0;
    virtual void hungUp(const std::string& reason) = 0;
    /// Bytes came in at that time. They wait to be read.
    virtual void cameIn(Octets bytes, Clock::Time time) = 0;
    /// All that had come in was read. @param counted bytes that were only counted, beside those told before
    virtual void read(std::size_t counted) = 0;
    /// Reading failed, and nothing that had come in is left.
    virtual void readingFailed(const std::string& reason) = 0;
    /// All that had come in was thrown away unread. @param counted as for read()
    virtual void thrownAway(std::size_t counted) = 0;
    virtual void sent(Octets bytes, Clock::Time time) = 0;
    /// The line did not take these bytes.
    virtual void notSent(Octets bytes, Clock::Time time, const std::string& reason) = 0;
    /// The program did something wrong on purpose to what it is about to send. Not told by a line.
    virtual void doneOnPurpose(const std::string& what) = 0;
};

/// A line that tells a tap of all that it does, and does what the line in it does.
///
/// It only looks at what comes in, so that who reads it finds the same bytes at the same time with and
/// without a tap; without one it costs a branch for each call. The tap sees bytes that are thrown away, too.
class TracedLine : public LineAround {
public:
    /// @param clock for lines that do not know when their bytes came
    TracedLine(std::unique_ptr<Line> line, LineTap& tap, const Clock& clock);

    void open(const LineSettings& settings) override;
    void close() noexcept override;
    Burst read() override;
    void discard() noexcept override;
    void write(const Bytes& bytes) override;

private:
    using Octets = LineTap::Octets;

    template <typename Telling>
    void tell(Telling&& telling) noexcept;
    void pass(CommEvent event, const std::string& reason) override;
    Burst takeBurst();
    void tellNews();
    void tellRead(const Burst& burst, void (LineTap::*what)(std::size_t counted));
    void tellPieces(const Burst& burst) const;

    LineTap& tap_;
    const Clock& clock_;
    std::uint64_t openings_ = 0; ///< of the tap, when it was told something last
    std::size_t seen_ = 0;       ///< bytes of those that wait which the tap was told of
};

/// The same lines, told to a tap.
MSComm::LineFactory traced(MSComm::LineFactory makeLine, LineTap& tap, const Clock& clock);

} // namespace varda::core
