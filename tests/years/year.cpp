#include "years/year.h"

#include "core/protocol/hex_text.h"
#include "core/virtual/virtual_line.h"
#include "support/memory_use.h"
#include "support/sanitized.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <random>
#include <utility>

namespace varda::years {
namespace {

using namespace std::chrono_literals;

constexpr const char* nearPort = "NEAR";
constexpr const char* farPort = "FAR";
constexpr int scenesUntilWarm = 200;
constexpr long long mostGrowth = 24LL << 20U;
constexpr std::size_t mostPending = 20'000;
constexpr int healedPeriod = 500;
/// 13 ticks of silence, and what is still on its way both ways on the slowest line.
constexpr auto longestHealing = 13 * 500ms + 45s;

const std::vector<Mode>& masterModes() {
    static const std::vector<Mode> modes = {Mode::BitRead,   Mode::BitWrite,  Mode::WordRead,
                                            Mode::WordWrite, Mode::MixedRead, Mode::MixedWrite};
    return modes;
}

} // namespace

Year::Year(const Weather& weather, std::uint64_t seed, Plant plant)
    : sky_{.weather = weather, .random = Random(seed)},
      cable_(clock_, sky_, tape_),
      farController_(clock_, sky_, cable_, controller_),
      plant_(plant),
      folder_(std::filesystem::temp_directory_path() /
              ("varda-years-" + std::to_string(std::random_device()()))) {
    std::filesystem::create_directory(folder_);
    plantFault(plant);
    for (std::size_t index = 0; index < programs_.size(); ++index) {
        const std::string name = index == 0 ? "first program" : "second program";
        programs_.at(index) =
            std::make_unique<Program>(name, Surroundings{clock_, diary_, findings_, tape_, makeLines(),
                                                         plants_, folder_ + '/' + name + ".log"});
    }
}

Year::~Year() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

MSComm::LineFactory Year::makeLines() {
    return [this](const std::string& name) -> std::unique_ptr<Line> {
        if (name == virtualPortName) {
            return std::make_unique<VirtualLine>(virtualController_, clock_);
        }
        return cable_.makeLine(name == nearPort ? 0 : 1);
    };
}

// Time

void Year::run(Duration time) {
    const Time end = clock_.now() + time;
    while (clock_.now() < end && !hasFinding()) {
        playScene();
    }
}

Year::Duration Year::passed() const {
    return std::chrono::duration_cast<Duration>(clock_.now().time_since_epoch());
}

void Year::runFor(Duration time) {
    const Time end = clock_.now() + time;
    while (!hasFinding() && clock_.runNext(end)) {
        ++events_;
        near().check();
        far().check();
    }
    mostPending_ = std::max(mostPending_, clock_.pending());
}

// A scene

void Year::playScene() {
    drawScene();
    leaveWrongPorts();
    setUpFarSide();
    setUpNearSide();
    startWork();
    for (int left = sky_.random.between(1, sky_.weather.scene); left > 0 && !hasFinding(); --left) {
        runFor(Duration(scene_.period));
        userActs();
    }
    endScene();
    scene_.isFresh = sky_.random.oneIn(2);
    if (scene_.isFresh) {
        heal();
    }
    ++scenes_;
    checkMemory();
}

void Year::drawScene() {
    Random& random = sky_.random;
    near_ = static_cast<std::size_t>(random.below(2));
    scene_.farSide = static_cast<FarSide>(random.below(4));
    scene_.work = static_cast<Work>(random.below(3));
    scene_.period = random.octaves(sky_.weather.shortestPeriod,
                                   std::max(sky_.weather.shortestPeriod, sky_.weather.longestPeriod));
    scene_.isTouched = false;
    drawBook();
    const bool isLookedAt = random.perMillion(sky_.weather.insight);
    for (const auto& program : programs_) {
        isLookedAt ? program->openInsight() : program->closeInsight();
    }
}

void Year::drawBook() {
    Random& random = sky_.random;
    const Mode page = random.pick(masterModes());
    scene_.book.clear();
    for (int left = random.between(2, 6); left > 0; --left) {
        const Mode mode = scene_.work == Work::Scenario ? random.pick(masterModes()) : page;
        scene_.book.push_back(drawRequest(random, mode, random.oneIn(3)));
    }
}

/// Who goes on at the same end leaves its port open now and then.
void Year::leaveWrongPorts() {
    if (near().isOpen() && (near().port() != portOfNear() || sky_.random.oneIn(2))) {
        near().closePort();
    }
    scene_.period = near().isOpen() ? near().period() : scene_.period; // it stands fast while a port is open
    const bool hasController = scene_.farSide == FarSide::Controller;
    const bool isQuick = far().period() < scene_.period; // its ticks would take most of the time
    if (far().isOpen() && (far().port() != farPort || hasController || isQuick || sky_.random.oneIn(2))) {
        far().closePort();
    }
    if (farController_.isAttached() && !hasController) {
        farController_.detach();
    }
}

void Year::setUpFarSide() {
    far().repeat(false);
    far().stopRuns();
    if (scene_.farSide == FarSide::Controller) {
        if (!farController_.isAttached()) {
            farController_.attach();
        }
        return;
    }
    lookAfter(far(), farPort);
    setUpPairs();
    if (scene_.farSide == FarSide::Simulator) {
        far().showPage(Mode::Simulation);
    } else if (scene_.farSide == FarSide::Monitor) {
        far().showPage(Mode::MonitorIdle);
        far().startMonitor(sky_.random.oneIn(20));
    }
}

/// What the near program may ask for, but for strangers; the answers are of the length that it waits for.
void Year::setUpPairs() {
    std::vector<std::string> requests;
    std::vector<std::string> answers;
    // the first one last: what others leave behind its frame is in its image then, and goes out with it
    const std::vector lastFirst(scene_.book.rbegin(), scene_.book.rend());
    for (const auto& request : lastFirst) {
        const MadeFrame& frame = near().enter(request);
        const Bytes asked = scene_.work == Work::Scenario ? bytesOfGroups(frame.text) : frame.bytes;
        Bytes answer(static_cast<std::size_t>(frame.answerLength));
        std::ranges::generate(answer, [this] { return sky_.random.byte(); });
        if (!sky_.strikes(&Weather::strangers)) {
            requests.push_back(hexRun(asked));
            answers.push_back(hexRun(answer));
        }
    }
    far().setPairs(std::move(requests), std::move(answers));
}

void Year::setUpNearSide() {
    near().repeat(false);
    near().stopRuns();
    lookAfter(near(), portOfNear());
    near().showPage(scene_.book.front().mode);
    near().enter(scene_.book.front());
}

void Year::startWork() {
    scene_.before = near().witness().counts();
    near().repeat(scene_.work == Work::Repeated);
    if (scene_.work == Work::Scenario) {
        near().setScenario(scheduleOf(scene_.book));
        near().runScenario(scene_.period);
    }
}

std::vector<std::string> Year::scheduleOf(const std::vector<DrawnRequest>& book) {
    std::vector<std::string> lines;
    for (const DrawnRequest& request : book) {
        lines.push_back(near().enter(request).text);
    }
    return lines;
}

void Year::endScene() {
    near().repeat(false);
    if (mustAllBeAnswered()) {
        ++answeredScenes_;
        const Counts& now = near().witness().counts();
        findings_.require(now.ended - scene_.before.ended == now.answered - scene_.before.answered,
                          "a request was not answered on a line without faults");
    }
    near().stopRuns();
}

/// Whether nothing stood between each request and its answer.
bool Year::mustAllBeAnswered() const {
    constexpr auto longestRoundTrip = 5000ms;
    return scene_.isFresh && sky_.weather.isFaultless() && sky_.weather.latency <= 50 && !scene_.isTouched &&
           Duration(scene_.period) > longestRoundTrip && scene_.farSide != FarSide::Monitor &&
           scene_.work != Work::Scenario; // of mixed lines no scenario knows what to expect
}

// Users

const char* Year::portOfNear() const {
    return scene_.farSide == FarSide::Virtual ? virtualPortName : nearPort;
}

/// Opens a port that has gone, as a user does, or the program by itself.
void Year::lookAfter(Program& program, const char* port) {
    if (!program.isOpen()) {
        program.openPort(port, sky_.weather.baud, scene_.period);
    }
}

void Year::userActs() {
    if (hasFinding()) {
        return;
    }
    lookAfter(near(), portOfNear());
    if (scene_.farSide == FarSide::Simulator || scene_.farSide == FarSide::Monitor) {
        const bool wasOpen = far().isOpen();
        lookAfter(far(), farPort);
        if (!wasOpen && scene_.farSide == FarSide::Monitor) {
            far().startMonitor(false); // the hang-up ended its run
        }
    }
    if (sky_.strikes(&Weather::clumsiness)) {
        actClumsily();
    }
    if (scene_.work == Work::Single) {
        near().send();
    } else if (scene_.work == Work::Scenario && near().mode() != Mode::Scenario) {
        near().runScenario(scene_.period); // silence or a hang-up ended it
    }
}

/// In the middle of whatever goes on.
void Year::actClumsily() {
    Random& random = sky_.random;
    scene_.isTouched = true;
    const bool isFarOnesPort = random.oneIn(4) && scene_.farSide != FarSide::Controller;
    Program& program = isFarOnesPort ? far() : near();
    switch (random.below(7)) {
    case 0:
        program.closePort();
        break;
    case 1:
        program.closePort();
        lookAfter(program, &program == &near() ? portOfNear() : farPort);
        break;
    case 2:
        near().send();
        break;
    case 3: {
        const DrawnRequest& request = random.pick(scene_.book);
        near().showPage(request.mode);
        near().enter(request);
        break;
    }
    case 4:
        near().showPage(random.oneIn(2) ? Mode::Simulation : Mode::MonitorIdle);
        runFor(Duration(random.below(300)));
        near().showPage(scene_.book.front().mode);
        near().enter(scene_.book.front());
        break;
    case 5:
        far().stopRuns();
        far().showPage(random.oneIn(2) ? Mode::Simulation : Mode::WordRead);
        break;
    default:
        near().repeat(random.oneIn(2));
    }
}

// Healing

/// No faults any more: everything comes to its end, and the next request is answered.
void Year::heal() {
    if (hasFinding()) {
        return;
    }
    sky_.isHealed = true;
    ++healings_;
    for (const auto& program : programs_) {
        program->repeat(false);
        program->stopRuns();
    }
    scene_.farSide = scene_.farSide == FarSide::Monitor ? FarSide::Simulator : scene_.farSide;
    scene_.period = healedPeriod;
    scene_.work = Work::Single;
    const Mode page = sky_.random.pick(masterModes());
    scene_.book = {drawRequest(sky_.random, page, true)};
    runFor(longestHealing + Duration(sky_.weather.lateBy));
    near().closePort(); // at the period of before, silence could last thirteen minutes
    far().closePort();
    leaveWrongPorts();
    setUpFarSide();
    setUpNearSide();
    askOnce();
    sky_.isHealed = false;
}

void Year::askOnce() {
    const std::uint64_t answered = near().witness().counts().of(Outcome::Answered);
    near().send();
    runFor(longestHealing);
    findings_.require(near().witness().counts().of(Outcome::Answered) == answered + 1, [&] {
        return "after healing a request is not answered: " +
               std::string(inWords(near().witness().lastOutcome())) + ", page " +
               std::to_string(static_cast<int>(near().mode())) + ", far side " +
               std::to_string(static_cast<int>(scene_.farSide));
    });
    checkHealed();
}

void Year::checkHealed() {
    for (const auto& program : programs_) {
        program->checkQuiet();
    }
    cable_.account(findings_);
    findings_.require(cable_.isQuiet(), "bytes are left on the line");
    findings_.require(clock_.pending() < mostPending, "waits pile up");
}

void Year::checkMemory() {
    if (plant_ == Plant::Leak) {
        leaked_.push_back(std::make_unique<Bytes>(std::size_t{1} << 18U, std::uint8_t{1}));
    }
    if (isSanitized || scenes_ < scenesUntilWarm || scenes_ % 16 != 0) {
        return;
    }
    const long long memory = test::memoryUse();
    warmMemory_ = warmMemory_ == 0 ? memory : warmMemory_;
    mostMemory_ = std::max(mostMemory_, memory);
    findings_.require(mostMemory_ - warmMemory_ < mostGrowth, "memory grows");
}

} // namespace varda::years
