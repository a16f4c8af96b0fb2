#pragma once

#include "faults/failing_line.h"
#include "support/temporary_folder.h"
#include "years/cable.h"
#include "years/far_controller.h"
#include "years/program.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace varda::faults {

/// A program without its window at a cable without faults of its own, whose calls to the line fail as is
/// wanted; at the far end a controller, or somebody who writes what the test says.
class FaultyWorld {
public:
    explicit FaultyWorld(CallFault fault);
    FaultyWorld(const FaultyWorld&) = delete;
    FaultyWorld& operator=(const FaultyWorld&) = delete;
    ~FaultyWorld() = default;

    // What is done while calls fail. A port that has gone is opened again and again, as its user does.
    void ask(Mode page);
    void repeat(Mode page);
    void runScenario();
    void simulate();
    void monitor();

    /// No call fails any more. What was begun has to come to its end, and the next exchange has to be right.
    void heal();

    const CallFault& fault() const { return fault_; }
    /// Errors that the program's user was told of.
    std::uint64_t reports() const { return program_->reports(); }
    /// What did not hold; nothing where all held.
    const std::optional<std::string>& finding() const { return findings_.first(); }
    /// A mistake to be found: no end of a request is told from now on.
    void withholdEnds();

private:
    void begin(Mode page);
    void lookAfter();
    void runFor(int milliseconds);
    void goOn(int seconds);
    void answerOnce();
    void beAnswered();
    void beHeard();
    bool listens() const { return page_ == Mode::Simulation || page_ == Mode::Monitoring; }

    test::TemporaryFolder folder_;
    years::HandClock clock_;
    years::Diary diary_{clock_};
    years::Findings findings_;
    years::Tape tape_;
    years::Sky sky_{.weather = {}, .random = years::Random(1)};
    years::Cable cable_{clock_, sky_, tape_};
    Controller controller_;
    years::FarController farController_{clock_, sky_, cable_, controller_};
    std::unique_ptr<Line> peer_; ///< at the far end, where no controller is
    years::Plants plants_;
    CallFault fault_;
    std::unique_ptr<years::Program> program_;
    Mode page_ = Mode::WordRead;
    Bytes request_;
    Bytes answer_;
};

} // namespace varda::faults
