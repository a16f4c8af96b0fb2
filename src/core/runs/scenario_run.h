#pragma once

#include "core/link/serial_link.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace varda::inline core {

class PeriodTimer;

/// The lines of a scenario, and which of them is next. Where a list on the screen is the only store of both,
/// it is asked through this.
class ScenarioLines {
public:
    ScenarioLines() = default;
    ScenarioLines(const ScenarioLines&) = delete;
    ScenarioLines& operator=(const ScenarioLines&) = delete;
    virtual ~ScenarioLines() = default;

    virtual int count() const = 0;
    virtual std::string line(int row) const = 0;
    /// The row that is sent next, -1 where none is chosen.
    virtual int current() const = 0;
    virtual void choose(int row) = 0;
};

/// The lines of a scenario that nobody shows.
class ScenarioList : public ScenarioLines {
public:
    ScenarioList() = default;
    explicit ScenarioList(std::vector<std::string> lines) : lines_(std::move(lines)) {}

    /// Other lines; the row stays.
    void set(std::vector<std::string> lines) { lines_ = std::move(lines); }
    int count() const override { return static_cast<int>(lines_.size()); }
    std::string line(int row) const override { return lines_.at(static_cast<std::size_t>(row)); }
    int current() const override { return current_; }
    void choose(int row) override { current_ = row; }

private:
    std::vector<std::string> lines_;
    int current_ = -1;
};

/// Time between two lines of a scenario.
/// @param text as typed @return milliseconds, 0 .. 65535
/// @throws RuntimeError 13 or 6 where the text is no number, 380 where it is out of range
int scenarioPeriod(std::string_view text);

/// Sends the lines of a scenario, one a period, round and round, until it is stopped.
class ScenarioRun {
public:
    /// @param tmrScenario ticks once a period; its tick calls next() and send()
    ScenarioRun(SerialLink& link, PeriodTimer& tmrScenario, ScenarioLines& lines)
        : link_(link), tmrScenario_(tmrScenario), lines_(lines) {}

    /// Begins with the first line. @throws RuntimeError of scenarioPeriod; the caller stops the run then
    void start(std::string_view period);
    /// @param next what the link does from now on, where the run was what it did
    void stop(Mode next);
    /// The timer keeps the period beyond the run. @throws RuntimeError of scenarioPeriod
    void setPeriod(std::string_view period);

    /// What is known of the answers to the lines.
    /// @param isExpected whether none is expected to the line of that row
    void expectSilence(std::function<bool(int row)> isExpected) {
        isSilenceExpected_ = std::move(isExpected);
    }
    /// Whether the line that was sent last is one of those: that no answer comes is no reason to stop then.
    bool isSilenceExpected() const { return sent_ && isSilenceExpected_(*sent_); }

    bool isRunning() const { return link_.state().CommMode == Mode::Scenario; }
    /// Whether lines are due; a run may have been left without being stopped.
    bool isTicking() const;

    /// Goes on to the next line. @return the line that is due, nothing where none was chosen
    std::optional<std::string> next();
    /// @throws RuntimeError 13 where the line is no frame, 9 where it is too short for one, and the port's
    void send(const std::string& line);

private:
    SerialLink& link_;
    PeriodTimer& tmrScenario_;
    ScenarioLines& lines_;
    std::function<bool(int row)> isSilenceExpected_ = [](int /*row*/) { return false; };
    std::optional<int> due_;
    std::optional<int> sent_; ///< last in this run
};

} // namespace varda::core
