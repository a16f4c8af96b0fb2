#pragma once

#include "core/base/clock.h"
#include "core/faults/fault_injector.h"
#include "core/link/line_around.h"
#include "core/link/mscomm.h"

#include <memory>
#include <string>
#include <vector>

namespace varda::inline core {

/// A line that does on purpose to what is sent what an injector decides, and else what the line in it does.
///
/// Put round a traced line, so that the trace has what really went out, and when. With no fault on it costs a
/// branch for each write. Pieces that are still to go out when the line is closed do not.
class FaultyLine : public LineAround {
public:
    /// @param injector, clock outlive the line
    FaultyLine(std::unique_ptr<Line> line, FaultInjector& injector, Clock& clock);

    void open(const LineSettings& settings) override;
    void close() noexcept override;
    void write(const Bytes& bytes) override;

private:
    void pass(CommEvent event, const std::string& reason) override;
    void sendLater(FaultyFrame::Piece piece);
    void hangUpSoon();

    FaultInjector& injector_;
    Clock& clock_;
    std::vector<Wait> later_; ///< pieces on their way
    Wait hangUp_;
    bool isGone_ = false; ///< hung up on purpose, and not told yet
};

/// The same lines, with faults on purpose.
MSComm::LineFactory faulty(MSComm::LineFactory makeLine, FaultInjector& injector, Clock& clock);

} // namespace varda::core
