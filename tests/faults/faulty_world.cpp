#include "faults/faulty_world.h"

#include "core/protocol/hex_text.h"

#include <utility>

namespace varda::faults {
namespace {

constexpr int baud = 9600;
constexpr int period = 500;
constexpr int second = 1000;
constexpr int silence = 14 * period; // no wait of a master lasts longer

} // namespace

FaultyWorld::FaultyWorld(CallFault fault) : fault_(fault) {
    const auto makeLine = [this](const std::string& /*name*/) -> std::unique_ptr<Line> {
        return std::make_unique<FailingLine>(cable_.makeLine(0), fault_, clock_);
    };
    program_ = std::make_unique<years::Program>("program", years::Surroundings{clock_, diary_, findings_,
                                                                               tape_, makeLine, plants_,
                                                                               folder_.file("monitor.log")});
}

void FaultyWorld::withholdEnds() {
    plants_.ear = [](const Exchange& exchange) { return !isEnd(exchange.outcome); };
}

// While calls fail

void FaultyWorld::begin(Mode page) {
    page_ = page;
    program_->openInsight();
    if (listens()) {
        peer_ = cable_.makeLine(1);
        peer_->open({});
    } else {
        farController_.attach();
    }
    lookAfter();
    program_->showPage(page == Mode::Monitoring ? Mode::MonitorIdle : page);
    const Mode asked = listens() ? Mode::WordRead : page;
    request_ = program_->enter(years::drawRequest(sky_.random, asked, true)).bytes;
}

void FaultyWorld::ask(Mode page) {
    begin(page);
    for (int left = 3; left > 0; --left) {
        program_->send();
        goOn(2);
    }
}

void FaultyWorld::repeat(Mode page) {
    begin(page);
    program_->repeat(true);
    goOn(6);
    program_->repeat(false);
}

void FaultyWorld::runScenario() {
    begin(Mode::WordRead);
    std::vector<std::string> lines;
    for (const Mode mode : {Mode::WordRead, Mode::BitWrite, Mode::WordWrite}) {
        lines.push_back(program_->enter(years::drawRequest(sky_.random, mode, true)).text);
    }
    program_->setScenario(std::move(lines));
    for (int round = 0; round < 3; ++round) {
        program_->runScenario(period);
        goOn(2);
    }
    program_->stopRuns();
}

void FaultyWorld::simulate() {
    begin(Mode::Simulation);
    answer_ = {0xFF, 0xFF, 0xA3, 0x02, 0x34, 0x12, 0x55, 0xAA};
    program_->setPairs({hexRun(request_)}, {hexRun(answer_)});
    for (int left = 3; left > 0; --left) {
        peer_->write(request_);
        goOn(1);
        peer_->discard();
    }
}

void FaultyWorld::monitor() {
    begin(Mode::Monitoring);
    for (int left = 4; left > 0; --left) {
        if (program_->mode() != Mode::Monitoring) {
            program_->startMonitor(true); // at first, and where a hang-up ended it
        }
        peer_->write(request_);
        goOn(1);
    }
}

void FaultyWorld::lookAfter() {
    if (!program_->isOpen()) {
        program_->openPort("LINE", baud, period);
    }
}

void FaultyWorld::goOn(int seconds) {
    for (; seconds > 0; --seconds) {
        runFor(second);
        lookAfter();
    }
}

void FaultyWorld::runFor(int milliseconds) {
    const Clock::Time end = clock_.now() + std::chrono::milliseconds(milliseconds);
    while (clock_.runNext(end)) {
        program_->check();
    }
}

// Afterwards

void FaultyWorld::heal() {
    fault_.heal();
    lookAfter();
    runFor(silence);
    if (page_ == Mode::Simulation) {
        beAnswered();
    } else if (page_ == Mode::Monitoring) {
        beHeard();
    } else {
        answerOnce();
    }
    program_->stopRuns(); // the log is compared here
    program_->checkQuiet();
    program_->closePort();
    cable_.account(findings_);
    findings_.require(cable_.isQuiet(), "bytes are left on the line");
}

void FaultyWorld::answerOnce() {
    program_->showPage(page_);
    program_->enter(years::drawRequest(sky_.random, page_, true));
    const std::uint64_t answered = program_->witness().counts().of(Outcome::Answered);
    program_->send();
    runFor(silence);
    findings_.require(program_->witness().counts().of(Outcome::Answered) == answered + 1,
                      "once healed, a request is not answered");
}

void FaultyWorld::beAnswered() {
    peer_->discard();
    peer_->write(request_);
    runFor(second);
    findings_.require(peer_->read().bytes == answer_, "once healed, a request that comes in is not answered");
}

void FaultyWorld::beHeard() {
    if (program_->mode() != Mode::Monitoring) {
        program_->startMonitor(true);
    }
    const std::uint64_t heard = program_->witness().counts().of(Outcome::Heard);
    peer_->write(request_);
    runFor(second);
    findings_.require(program_->witness().counts().of(Outcome::Heard) == heard + 1,
                      "once healed, a burst is not heard");
}

} // namespace varda::faults
