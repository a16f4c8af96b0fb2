#pragma once

#include "core/link/mscomm.h"
#include "core/link/serial_link.h"
#include "core/pairs/packet_table.h"
#include "core/runs/living_controller.h"
#include "core/runs/pair_hits.h"
#include "core/runs/unknown_requests.h"
#include "core/virtual/controller.h"
#include "window/bench/bench_sources.h"
#include "window/bench/fault_switch.h"
#include "window/bench/recording_player.h"
#include "window/bench/scenario_expectations.h"

#include <QObject>

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

class QAbstractButton;

namespace varda::window {

class BenchWindow;

/// The engineer's tools beside the pages, and their window. With none of them switched on the pages do what
/// they do without it, byte for byte; what comes in is counted all the same.
class Bench : public QObject, public LinkObserver {
    Q_OBJECT
    Q_DISABLE_COPY(Bench)

public:
    struct Parts {
        QAbstractButton* button; ///< opens and closes the window, and shows whether it is open
        const PacketTable& pairs;
        std::function<void(const PairTexts& pair)> addPair; ///< as if it had been typed
        std::function<void(std::size_t row)> showPair;      ///< on their own page
        std::function<std::string(int row)> scenarioLine;
        /// The line that a run is sending just now; nothing where something else is sent.
        std::function<std::optional<std::size_t>()> lineBeingSent;
        RecordingPlayer::PortUse portUse;
        std::function<void()> showHelp;
        QString programFolder;
    };

    /// @param clock its continuations pass a guard
    /// @param controller whose memory answers; one of its own where there is none
    Bench(Clock& clock, Controller* controller);
    ~Bench() override;

    /// The same lines, with faults on purpose. Put round the traced ones, so that the trace has what went
    /// out.
    MSComm::LineFactory faulty(MSComm::LineFactory makeLine);
    /// @param told runs with the words of each fault, before the bytes go out
    void tellFaults(std::function<void(const std::string& what)> told);
    FaultSwitch& faults() { return faults_; }
    const FaultSwitch& faults() const { return faults_; }
    /// It is told of every change of the list of lines.
    ScenarioExpectations& expectations() { return expectations_; }

    /// Called once, when all pages stand.
    void attach(const Parts& parts);
    /// The answer to a request that came in.
    std::optional<PreparedAnswer> answerTo(std::span<const std::uint8_t> request);
    void followPairs(const PacketTableChange& change);
    void told(const Exchange& exchange) override;

    /// Stops what is played, as a port that goes away does.
    void stopRuns() { player_.stop(); }

    /// The window, or nullptr where it never was open.
    BenchWindow* window() const { return window_.get(); }
    void close();

private:
    void setOpen(bool isOpen);
    void makeWindow();
    void takeNewsSoon();

    Clock& clock_;
    Controller own_;
    Controller& controller_;
    FaultSwitch faults_;
    ScenarioExpectations expectations_;
    UnknownRequests unknown_;
    PairHits hits_;
    std::optional<LivingController> living_;
    RecordingPlayer player_;
    std::optional<Parts> parts_;
    std::unique_ptr<BenchWindow> window_;
};

} // namespace varda::window
