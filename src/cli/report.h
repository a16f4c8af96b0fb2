#pragma once

#include "core/faults/fault_injector.h"
#include "core/insight/decoder.h"
#include "core/insight/pair_lint.h"
#include "core/link/exchange.h"
#include "core/recordings/player.h"
#include "core/recordings/recording_difference.h"
#include "core/runs/unknown_requests.h"
#include "device/port_doctor.h"
#include "device/port_names.h"

#include <iosfwd>
#include <span>
#include <string>
#include <string_view>

namespace varda::cli {

/// Sees to it that all that was written is where it belongs. @throws Failure File where the stream takes no
/// more
void flush(std::ostream& out);

/// Writes what the tool finds out, for people or for machines: then one JSON object a line, whose "type" says
/// which of these functions wrote it.
class Report {
public:
    Report(std::ostream& out, bool asJson) : out_(out), asJson_(asJson) {}

    void port(const device::PortName& port);
    void port(const device::PortFindings& findings);
    /// What became of a request that was sent, or that came in.
    void exchange(const Exchange& exchange);
    /// Whether the answer to a line of a scenario was what was wanted. @param round, line from 1
    /// @param why it was not; empty where it was
    void expectation(int round, int line, const std::string& why);
    /// A frame taken apart. @param bytes those that it was found in
    void frame(std::span<const std::uint8_t> bytes, const DecodedFrame& frame);
    /// A burst on a monitored line. @param line as the monitor lists it
    void heard(const Exchange& exchange, const std::string& line);
    /// What is wrong with a prepared pair. @param file that it stands in
    void finding(const std::string& file, const PairFinding& finding);
    /// How often a prepared pair has answered. @param row from 0
    void pairHits(std::size_t row, std::uint64_t answers);
    /// A request that no prepared pair answers.
    void unmatched(const UnknownRequest& request);
    /// How a recording was played.
    void played(const PlayerProgress& progress);
    /// What a recording was turned into: entries of a file. @param leftOut those that it has no place for
    /// @param changing those that were answered otherwise later
    void converted(const std::string& file, std::size_t entries, std::size_t leftOut = 0,
                   std::size_t changing = 0);
    void difference(const RecordingDifference& difference);
    /// What was done on purpose to something that is about to be sent.
    void fault(const FaultDone& fault);
    /// Rounds of a scenario, and how many of their lines were answered, or ended as it was expected.
    void scenario(int rounds, int right, int wrong);

private:
    /// @throws Failure File where the stream takes no more
    void write(std::string_view line);

    std::ostream& out_;
    bool asJson_;
};

} // namespace varda::cli
