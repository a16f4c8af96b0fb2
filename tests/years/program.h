#pragma once

#include "core/base/clock_timer.h"
#include "core/insight/link_statistics.h"
#include "core/insight/register_watch.h"
#include "core/insight/trace_recorder.h"
#include "core/pairs/packet_table.h"
#include "core/runs/monitor_run.h"
#include "core/runs/responder.h"
#include "core/runs/scenario_run.h"
#include "years/request_book.h"
#include "years/watched_line.h"
#include "years/witness.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace varda::years {

/// Faults that are planted on purpose, to see that they are found.
struct Plants {
    Meddler meddler = [](Bytes&) {}; ///< alters what is written
    /// Alters a word of the link, or withholds it.
    std::function<bool(Exchange&)> ear = [](Exchange&) { return true; };
};

/// What a program finds around it.
struct Surroundings {
    HandClock& clock;
    const Diary& diary;
    Findings& findings;
    Tape& tape;
    MSComm::LineFactory makeLine;
    const Plants& plants;
    std::string logFile;
};

/// The lines that a monitor shows.
class MonitorList : public MonitorLines {
public:
    std::size_t count() const override { return lines_.size(); }
    void append(MonitorLine line) override { lines_.push_back(std::move(line)); }
    void clear() override { lines_.clear(); }

    const MonitorLine& latest() const { return lines_.back(); }

private:
    std::vector<MonitorLine> lines_;
};

/// All of a program but its window: link, timers, pages, runs, prepared pairs, trace, and what its user does
/// with them. A witness stands beside it.
class Program : private LinkObserver {
public:
    Program(const std::string& name, Surroundings surroundings);
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    ~Program() override = default;

    // What a user does. None of it throws; a report is counted.
    void openPort(const std::string& port, int baud, int period);
    void closePort();
    void showPage(Mode mode);
    /// @return the frame that it makes
    const MadeFrame& enter(const DrawnRequest& request);
    void send();
    void repeat(bool isTicked) { isRepeating_ = isTicked; }
    void setScenario(std::vector<std::string> lines) { schedule_.set(std::move(lines)); }
    void runScenario(int period);
    void stopRuns();
    void startMonitor(bool logs);
    void setPairs(std::vector<std::string> requests, std::vector<std::string> answers);
    void openInsight();
    void closeInsight();

    bool isOpen() const { return comm_.isOpen(); }
    /// Of the communication timer.
    int period() const { return tmrComm_.interval(); }
    const std::string& port() const { return comm_.commPort(); }
    Mode mode() const { return link_.state().CommMode; }
    std::uint64_t reports() const { return reports_; }
    const Witness& witness() const { return witness_; }

    /// What has to hold after every event.
    void check() { witness_.check(); }
    /// What has to hold once all is healed and quiet.
    void checkQuiet();

private:
    template <typename Action>
    void guarded(Action&& action);
    void told(const Exchange& exchange) override;
    void list(const Bytes& burst);
    void commEvent(CommEvent event);
    void sendPage();
    void sendLine();
    void endLog();
    void checkTrace();
    void checkStatistics();

    Surroundings around_;
    PacketTable pairs_;
    Responder responder_{pairs_};
    Trace trace_;
    TraceRecorder recorder_{trace_, around_.clock};
    LinkStatistics statistics_;
    RegisterWatch watch_;
    MSComm comm_;
    SerialLink link_{comm_, around_.clock};
    Witness witness_;
    ClockTimer tmrComm_;
    ClockTimer tmrScenario_;
    ScenarioList schedule_;
    ScenarioRun scenario_{link_, tmrScenario_, schedule_};
    MonitorList listed_;
    MonitorRun monitor_{link_, around_.clock, listed_};
    FrameMaker frames_;
    Mode page_ = Mode::WordRead; ///< shown, also while a scenario runs
    bool isRepeating_ = false;
    std::uint64_t reports_ = 0;
    std::string logged_;   ///< what the log has to hold
    Counts countsAtStart_; ///< of the statistics
};

/// The bytes of a text of groups of two digits, each with a space behind it.
Bytes bytesOfGroups(std::string_view text);

} // namespace varda::years
