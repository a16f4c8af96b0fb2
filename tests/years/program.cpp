#include "years/program.h"

#include "core/link/line.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

namespace varda::years {
namespace {

constexpr TimeOfDay teaTime = {16, 5, 7};

int digitOf(char digit) { return digit <= '9' ? digit - '0' : digit - 'A' + 10; }

/// What a scenario expects of the answer to a line; nothing where it leaves that as it was.
std::optional<int> scenarioExpects(const Bytes& frame) {
    switch (frame.at(2)) {
    case 0x21:
        return 6 + frame.at(6);
    case 0x23:
        return 6 + 2 * frame.at(6);
    case 0x22:
    case 0x24:
        return 7;
    default:
        return std::nullopt;
    }
}

} // namespace

Bytes bytesOfGroups(std::string_view text) {
    Bytes bytes;
    for (std::size_t place = 0; place + 1 < text.size(); place += 3) {
        bytes.push_back(static_cast<std::uint8_t>(16 * digitOf(text[place]) + digitOf(text[place + 1])));
    }
    return bytes;
}

Program::Program(const std::string& name, Surroundings surroundings)
    : around_(std::move(surroundings)),
      comm_([this](const std::string& port) {
          return watched(traced(around_.makeLine, recorder_, around_.clock), witness_,
                         around_.plants.meddler)(port);
      }),
      witness_(name, around_.clock, link_, pairs_, around_.findings, around_.tape, around_.diary),
      tmrComm_(around_.clock,
               [this] {
                   witness_.ticks();
                   guarded([this] { link_.tmrComm_Timer(); });
               }),
      tmrScenario_(around_.clock, [this] { guarded([this] { sendLine(); }); }),
      frames_(around_.findings) {
    link_.setRoles({.repeat =
                        [this](Mode mode) {
                            if (isRepeating_ && mode == page_) {
                                sendPage();
                            }
                        },
                    .answerTo = [this](auto request) { return responder_.answerTo(request); }});
    recorder_.setPairs(pairs_);
    for (LinkObserver* const observer :
         {static_cast<LinkObserver*>(&recorder_), static_cast<LinkObserver*>(&statistics_),
          static_cast<LinkObserver*>(&watch_), static_cast<LinkObserver*>(this)}) {
        link_.observe(*observer);
    }
    comm_.setEventHandler([this](CommEvent event, const std::string& /*reason*/) {
        guarded([this, event] { commEvent(event); });
    });
    tmrComm_.setInterval(500);
}

/// As every handler of the window is.
template <typename Action>
void Program::guarded(Action&& action) {
    try {
        std::forward<Action>(action)();
    } catch (const RuntimeError&) {
        ++reports_;
    }
}

// The port

void Program::openPort(const std::string& port, int baud, int period) {
    guarded([&] {
        comm_.setCommPort(port);
        comm_.setSettings(settingsText({.baudRate = baud}));
        comm_.open();
        witness_.opened();
        link_.connectionOpened();
        tmrComm_.setInterval(period);
        tmrComm_.start();
    });
}

void Program::closePort() {
    witness_.closed();
    comm_.close();
    link_.connectionClosed();
    tmrComm_.stop();
}

void Program::commEvent(CommEvent event) {
    if (event == CommEvent::Received) {
        link_.commPLC_OnComm(event);
    } else if (event == CommEvent::HungUp) {
        link_.commPLC_OnComm(event);
        stopRuns();
        closePort();
    }
}

// Pages

void Program::showPage(Mode mode) {
    stopRuns();
    page_ = mode;
    around_.diary.tell([mode] { return "page " + std::to_string(static_cast<int>(mode)); });
    link_.enterMode(mode);
}

const MadeFrame& Program::enter(const DrawnRequest& request) {
    frames_.enter(request);
    return frames_.make();
}

void Program::send() {
    guarded([this] { sendPage(); });
}

void Program::sendPage() {
    const MadeFrame& frame = frames_.make();
    witness_.shows(frames_.expected());
    if (link_.startRequest()) {
        link_.SendRequest(frame.bytes, frame.answerLength);
    }
}

void Program::setPairs(std::vector<std::string> requests, std::vector<std::string> answers) {
    pairs_.replace(std::move(requests), std::move(answers));
}

// Runs

void Program::runScenario(int period) {
    isRepeating_ = false;
    guarded([this, period] { scenario_.start(std::to_string(period)); });
}

void Program::sendLine() {
    const auto line = scenario_.next();
    if (!line) {
        return;
    }
    const Bytes frame = bytesOfGroups(*line);
    witness_.shows({frame, scenarioExpects(frame).value_or(link_.state().RxExpected)});
    try {
        scenario_.send(*line);
    } catch (const RuntimeError&) {
        scenario_.stop(page_);
        throw;
    }
}

void Program::startMonitor(bool logs) {
    page_ = Mode::MonitorIdle;
    monitor_.start();
    if (logs) {
        guarded([this] { monitor_.openLog(around_.logFile); });
    }
}

void Program::stopRuns() {
    if (monitor_.isRunning()) {
        monitor_.stop();
        endLog();
    }
    scenario_.stop(page_);
}

void Program::list(const Bytes& burst) {
    const bool logs = monitor_.isLogging();
    const bool isStamped = burst.size() % 2 == 0;
    const bool asCharacters = burst.size() % 3 == 0;
    const bool isLogged =
        monitor_.list(burst, isStamped ? std::optional(teaTime) : std::nullopt, asCharacters);
    around_.findings.require(isLogged, "the log could not be written");
    around_.findings.require(listed_.count() <= monitorLineLimit + 1 && listed_.latest().burst == burst,
                             "the monitor lists something else");
    if (logs) {
        logged_ += listed_.latest().text() + '\n';
    }
}

/// The log holds what was listed, to the byte.
void Program::endLog() {
    if (logged_.empty()) {
        return;
    }
    std::ifstream stream(around_.logFile, std::ios::binary);
    const std::string found{std::istreambuf_iterator<char>(stream), {}};
    around_.findings.require(found == logged_, "the log is not what the monitor listed");
    std::filesystem::remove(around_.logFile);
    logged_.clear();
}

void Program::told(const Exchange& exchange) {
    Exchange heard = exchange;
    if (around_.plants.ear(heard)) {
        witness_.told(heard);
    }
    if (exchange.outcome == Outcome::Heard) {
        list(exchange.answer);
    } else if (exchange.outcome == Outcome::Silent && exchange.mode == Mode::Scenario) {
        scenario_.stop(page_);
    }
}

// What looks at it

void Program::openInsight() {
    trace_.clear();
    statistics_.reset();
    watch_.clear();
    countsAtStart_ = witness_.counts();
    recorder_.open({});
    statistics_.open();
    watch_.open();
}

void Program::closeInsight() {
    recorder_.close();
    statistics_.close();
    watch_.close();
    trace_.clear();
    statistics_.reset();
    watch_.clear();
}

void Program::checkQuiet() {
    witness_.checkQuiet();
    // elsewhere, and while a reception stands open, no silence ends a wait
    const bool isTimed = isOpen() && findRoute(mode()) != nullptr && !link_.state().InReceive;
    around_.findings.require(!isTimed || !link_.state().WaitingAnswer, "a link still waits for an answer");
    if (recorder_.isOpen()) {
        checkTrace();
        checkStatistics();
    }
}

/// Every line of the trace has its verdict.
void Program::checkTrace() {
    for (Trace::Number number = trace_.begin(); number < trace_.end(); ++number) {
        const TraceLine& line = *trace_.find(number);
        around_.findings.require(
            line.verdict != Verdict::Awaiting && line.verdict != Verdict::Unread, [&line] {
                const auto time =
                    std::chrono::duration_cast<std::chrono::milliseconds>(line.first.time_since_epoch());
                return std::string(line.verdict == Verdict::Unread ? "the trace has bytes that nobody read"
                                                                   : "the trace still awaits an answer") +
                       ", of " + std::to_string(time.count()) + " ms";
            });
    }
}

/// What the statistics count is what the link told, and each request has one outcome.
void Program::checkStatistics() {
    const Counts& now = witness_.counts();
    const std::uint64_t asked = now.asked - countsAtStart_.asked;
    std::uint64_t sent = 0;
    std::uint64_t ended = 0;
    for (const LinkStatistics::Row& row : statistics_.rows()) {
        sent += row.sent;
        ended += row.answered + row.wrongLength + row.silent + row.overtaken;
    }
    around_.findings.require(sent == asked, [=] {
        return "the statistics count " + std::to_string(sent) + " requests of " + std::to_string(asked);
    });
    const std::uint64_t underWay = 1; // the last one
    around_.findings.require(ended <= sent && sent - ended <= underWay, [=] {
        return "the statistics count " + std::to_string(ended) + " outcomes of " + std::to_string(sent) +
               " requests";
    });
}

} // namespace varda::years
