#pragma once

#include "core/base/clock.h"
#include "core/faults/fault_injector.h"
#include "core/link/mscomm.h"

#include <memory>
#include <string>
#include <vector>

namespace varda::inline core {

/// A line that does on purpose to what is sent what an injector decides, and else what the line in it does.
///
/// Put round a traced line, so that the trace has what really went out, and when. With no fault on it costs a
/// branch for each write. Pieces that are still to go out when the line is closed do not.
class FaultyLine : public Line {
public:
    /// @param injector, clock outlive the line
    FaultyLine(std::unique_ptr<Line> line, FaultInjector& injector, Clock& clock);

    void open(const LineSettings& settings) override;
    void close() noexcept override;
    std::size_t inBufferCount() const noexcept override { return line_->inBufferCount(); }
    Burst read() override { return line_->read(); }
    void discard() noexcept override { line_->discard(); }
    void write(const Bytes& bytes) override;
    void keepFirst(std::size_t most) noexcept override { line_->keepFirst(most); }
    std::size_t unsentWrites() const noexcept override { return line_->unsentWrites(); }
    Burst look(std::size_t from) const override { return line_->look(from); }
    std::string notice() const override { return line_->notice(); }

private:
    void pass(CommEvent event, const std::string& reason);
    void sendLater(FaultyFrame::Piece piece);
    void hangUpSoon();

    std::unique_ptr<Line> line_;
    FaultInjector& injector_;
    Clock& clock_;
    std::vector<Wait> later_; ///< pieces on their way
    Wait hangUp_;
    bool isGone_ = false; ///< hung up on purpose, and not told yet
};

/// The same lines, with faults on purpose.
MSComm::LineFactory faulty(MSComm::LineFactory makeLine, FaultInjector& injector, Clock& clock);

} // namespace varda::core
