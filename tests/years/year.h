#pragma once

#include "core/virtual/controller.h"
#include "years/cable.h"
#include "years/far_controller.h"
#include "years/findings.h"
#include "years/hand_clock.h"
#include "years/program.h"
#include "years/sky.h"
#include "years/tape.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace varda::years {

/// Faults that a year can have planted, to see that it finds them.
enum class Plant : std::uint8_t {
    None,
    Altered,  ///< a byte of a frame is another one behind its check
    Invented, ///< an answer is told that nobody sent
    Withheld, ///< an outcome is not told
    LostWait, ///< a wait does not end
    Leak      ///< memory is not given back
};

/// The plant of a name, "altered" .. "leak"; nothing where it is none.
std::optional<Plant> plantOf(std::string_view name);

/// The other way round.
std::string_view nameOf(Plant plant);

/// A span of simulated time: two programs, an embedded controller at each side of the wall, and a cable, in
/// one weather. All that happens is drawn by the seed.
///
/// It goes on in scenes: who talks to whom, in which role, at which period. After some of them all faults are
/// healed; everything has to come to its end then, and the next request has to be answered.
class Year {
public:
    using Duration = std::chrono::milliseconds;

    Year(const Weather& weather, std::uint64_t seed, Plant plant = Plant::None);
    Year(const Year&) = delete;
    Year& operator=(const Year&) = delete;
    ~Year();

    /// Tells all that happens from then on.
    void tellFrom(Duration time) { diary_.tellFrom(time); }
    /// Goes on until so much time has passed, or something does not hold.
    void run(Duration time);

    /// What does not hold, and when it was found; nothing where all holds.
    std::optional<std::string> finding() const;
    /// Stands for all that went over the lines.
    std::uint64_t hash() const { return tape_.hash(); }
    Duration passed() const;
    std::uint64_t requests() const;
    /// What the line did to what went over it.
    const Faults& faults() const { return cable_.faults(); }
    std::uint64_t healings() const { return healings_; }
    /// Scenes in which each request had to be answered, and was.
    std::uint64_t answeredScenes() const { return answeredScenes_; }
    /// Counts, a line each, for who reads along.
    std::string report() const;

private:
    using Time = Clock::Time;

    /// Who works at the far end.
    enum class FarSide : std::uint8_t { Controller, Virtual, Simulator, Monitor };
    /// What the near program does.
    enum class Work : std::uint8_t { Single, Repeated, Scenario };

    struct Scene {
        FarSide farSide = FarSide::Controller;
        Work work = Work::Single;
        int period = 500;
        bool isFresh = false;   ///< nothing is left of the scene before
        bool isTouched = false; ///< by a clumsy user
        std::vector<DrawnRequest> book;
        Counts before;
    };

    Program& near() { return *programs_.at(near_); }
    Program& far() { return *programs_.at(1 - near_); }
    MSComm::LineFactory makeLines();
    void plantFault(Plant plant);

    void playScene();
    void drawScene();
    void drawBook();
    void leaveWrongPorts();
    void setUpFarSide();
    void setUpPairs();
    void setUpNearSide();
    void startWork();
    std::vector<std::string> scheduleOf(const std::vector<DrawnRequest>& book);
    void endScene();
    bool mustAllBeAnswered() const;

    void userActs();
    void lookAfter(Program& program, const char* port);
    const char* portOfNear() const;
    void actClumsily();

    void heal();
    void askOnce();
    void checkHealed();
    void checkMemory();

    void runFor(Duration time);
    bool hasFinding() const { return findings_.first().has_value(); }

    HandClock clock_;
    Diary diary_{clock_};
    Findings findings_;
    Tape tape_;
    Sky sky_;
    Cable cable_;
    Controller controller_;        ///< at the far end of the cable
    Controller virtualController_; ///< of the near program
    FarController farController_;
    Plants plants_;
    int untilPlant_ = 0;
    Plant plant_;
    std::string folder_;
    std::array<std::unique_ptr<Program>, 2> programs_;
    std::size_t near_ = 0;
    Scene scene_;
    std::uint64_t scenes_ = 0;
    std::uint64_t healings_ = 0;
    std::uint64_t answeredScenes_ = 0;
    std::uint64_t events_ = 0;
    std::size_t mostPending_ = 0;
    long long warmMemory_ = 0;
    long long mostMemory_ = 0;
    std::vector<std::unique_ptr<Bytes>> leaked_;
};

} // namespace varda::years
