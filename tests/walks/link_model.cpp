#include "walks/world.h"

namespace varda::window_model {
namespace {

constexpr int monitoring = 0x81;
constexpr int simulation = 0xFF;
constexpr int scenarioRuns = 0xC0;
constexpr int patience = 12;

const Lines& settingLists() {
    static const Lines lists = {"cbPort", "cbBaudRate", "cbDataBit", "cbStopBit", "cbParityBit"};
    return lists;
}

} // namespace

const std::vector<Page>& pages() {
    static const std::vector<Page> all = {
        {"read", 0x21, 0x23, "cmdRDSend", "chkRTimer", "txtReadTimerValue", "txtRStatus", "txtRStatus",
         "txtRStatus", "txtSendRData", "txtReceiveRData"},
        {"write", 0x22, 0x24, "cmdWDSend", "chkWTimer", "txtWriteTimerValue", "txtWStatus", "txtWStatus",
         "txtWStatus", "txtSendWData", "txtReceiveWData"},
        {"mixed read", 0x25, 0x25, "cmdMRDSend", "chkMRTimer", "txtMReadTimerValue", "txtMRStatus",
         "txtWStatus", "txtMRStatus", "txtSendMRData", "txtReceiveMRData"},
        {"mixed write", 0x26, 0x26, "cmdMWDSend", "chkMWTimer", "txtMWriteTimerValue", "txtMWStatus",
         "txtWStatus", "txtWStatus", "txtSendMWData", "txtReceiveMWData"},
    };
    return all;
}

const Page* pageOf(int mode) {
    for (const Page& page : pages()) {
        if (mode == page.bitMode || mode == page.wordMode) {
            return &page;
        }
    }
    return nullptr;
}

LinkModel::LinkModel(World& world) : timer(world.agenda, [this] { tick(); }), world_(world) {
    Desk& desk = world_.desk;
    const Lines starts = {"COM1", "9600", "8", "1", "NONE"};
    for (std::size_t list = 0; list < starts.size(); ++list) {
        desk.show(settingLists()[list], starts[list]);
        desk.enable(settingLists()[list], true);
    }
    desk.enable("cmdCommTest", true);
    desk.enable("cmdPortOpen", false);
    desk.show("cmdPortOpen", "Open Port");
    desk.show("txtWatchDog", "0");
    tellCounters();
}

std::string LinkModel::entry(const std::string& list, int index) {
    static const std::map<std::string, Lines> entries = {
        {"cbBaudRate", {"38400", "19200", "9600", "4800", "2400"}},
        {"cbDataBit", {"8", "7", "6"}},
        {"cbStopBit", {"1", "2"}},
        {"cbParityBit", {"NONE", "EVEN", "ODD"}}};
    return entries.at(list).at(static_cast<std::size_t>(index));
}

void LinkModel::tellCounters() {
    world_.desk.show("txtTotalData", std::to_string(rxExpected));
    world_.desk.show("txtCurrentData", std::to_string(rxCount));
}

void LinkModel::test() { world_.desk.enable("cmdPortOpen", true); }

std::string LinkModel::settings() {
    Desk& desk = world_.desk;
    const auto repaired = [&desk](const char* list, const char* start) {
        if (desk.text(list).empty()) {
            desk.show(list, start);
        }
        return desk.text(list);
    };
    const std::string baud = repaired("cbBaudRate", "9600");
    const std::string parity = repaired("cbParityBit", "NONE");
    const char letter = parity == "NONE" ? 'n' : parity == "EVEN" ? 'e' : 'o';
    return baud + "," + letter + "," + repaired("cbDataBit", "8") + "," + repaired("cbStopBit", "1");
}

void LinkModel::toggleOpen() {
    Desk& desk = world_.desk;
    isOpen = desk.text("cmdPortOpen") == "Open Port";
    desk.show("cmdPortOpen", isOpen ? "Close Port" : "Open Port");
    desk.set("line.settings", isOpen ? settings() : "");
    endWaits();
    input.clear();
    desk.enable("cmdCommTest", !isOpen);
    for (const std::string& list : settingLists()) {
        desk.enable(list, !isOpen);
    }
    if (const Page* const page = pageOf(commMode)) {
        desk.enable(page->period, !isOpen);
        desk.enable(isOpen && page->name == "mixed read" ? "cmdRDSend" : page->send, isOpen);
        if (isOpen) {
            timer.setInterval(std::stoi(desk.text(page->period)));
        }
    }
    if (isOpen) {
        timer.start();
    } else {
        desk.enable("cmdSimStart", false);
        timer.stop();
    }
}

void LinkModel::deliver(const Octets& octets) {
    if (isOpen) {
        input.insert(input.end(), octets.begin(), octets.end());
        received();
    }
}

void LinkModel::received() {
    if (waits_) {
        return; // belongs to the reception that is under way
    }
    inReceive_ = true;
    waitTicks = 0;
    world_.desk.show("txtWatchDog", "0");
    if (commMode == monitoring) {
        wait(100, [this] {
            if (!input.empty()) {
                world_.monitor.list(std::exchange(input, {}));
                commonEnd();
            }
        });
    } else if (commMode == simulation) {
        if (!input.empty()) {
            settle();
        }
    } else {
        wait(100, [this] { answerEnds(); });
    }
}

void LinkModel::wait(int milliseconds, const std::function<void()>& then) {
    waits_ = true;
    settles_ = milliseconds != 100;
    world_.agenda.after(milliseconds, [this, then, run = waitRun_] {
        if (run == waitRun_) {
            waits_ = false;
            then();
        }
    });
}

void LinkModel::endWaits() {
    waits_ = false;
    ++waitRun_;
}

void LinkModel::settle() {
    wait(150, [this, before = input.size()] {
        if (input.size() != before) {
            settle();
            return;
        }
        if (input.empty()) {
            return;
        }
        readAll();
        world_.desk.show("txtCurrentData", std::to_string(rxCount));
        if (world_.simulator.answerRequest()) {
            commonEnd();
        }
    });
}

void LinkModel::readAll() {
    buffer = std::exchange(input, {});
    rxCount = static_cast<int>(buffer.size());
}

void LinkModel::answerEnds() {
    if (input.empty()) {
        return; // the flag stays set
    }
    readAll();
    if (pageOf(commMode) != nullptr || commMode == scenarioRuns) {
        world_.desk.show("txtCurrentData", std::to_string(rxCount));
    }
    if (rxCount == rxExpected) {
        complete();
    }
    commonEnd();
}

void LinkModel::complete() {
    const std::string text = hexText(buffer, " ");
    if (const Page* const page = pageOf(commMode)) {
        world_.desk.show(page->doneStatus, "Data Receive OK !!");
        world_.desk.show(page->answer, text);
    } else if (commMode == scenarioRuns) {
        world_.desk.show("txtScnReceive", text);
    }
}

void LinkModel::commonEnd() {
    answerReceived = true;
    waitingAnswer = false;
    tellCounters();
    rxCount = 0;
    inReceive_ = false;
}

void LinkModel::tick() {
    if (inReceive_) {
        return;
    }
    tellCounters();
    if (waitingAnswer) {
        ++waitTicks;
        world_.desk.show("txtWatchDog", std::to_string(waitTicks));
    }
    if (pageOf(commMode) != nullptr) {
        masterTick();
    } else if (commMode == scenarioRuns && waitTicks > patience) {
        timeOut("txtWStatus");
        world_.scenario.stop();
    }
}

void LinkModel::timeOut(const std::string& statusField) {
    waitTicks = 0;
    world_.desk.show("txtWatchDog", "0");
    world_.desk.show(statusField, "No Answer From PLC");
    answerReceived = false;
    waitingAnswer = false;
    rxExpected = 0;
    rxCount = 0;
    tellCounters();
    input.clear();
}

void LinkModel::masterTick() {
    const Page& page = *pageOf(commMode);
    if (waitTicks > patience) {
        timeOut(page.lostStatus);
    }
    if (answerReceived) {
        answerReceived = false;
        rxExpected = 0;
        rxCount = 0;
        tellCounters();
        input.clear();
    }
    const bool waitsItsTurn = page.name == "write" || page.name == "mixed write";
    if (world_.desk.isTicked(page.again) && world_.master.isFilled(page) &&
        !(waitsItsTurn && waitingAnswer)) {
        world_.master.send(page);
    }
}

void LinkModel::write(const Octets& octets) {
    input.clear();
    world_.written += std::to_string(world_.agenda.now()) + " " + hexText(octets, "") + "\n";
}

void LinkModel::sendRequest(const Octets& octets, int expected) {
    write(octets);
    rxCount = 0;
    waitTicks = 0;
    rxExpected = expected;
    answerReceived = false;
    waitingAnswer = true;
}

void LinkModel::enterMode(int mode) {
    if (commMode == simulation && mode != simulation) {
        if (settles_ && waits_) {
            input.clear(); // the request that is not answered
        }
        if (settles_) {
            endWaits();
        }
        inReceive_ = waits_; // what began before the simulation goes on
    }
    commMode = mode;
}

Action LinkModel::draw(Draw& draw) const {
    static const std::vector<int> pauses = {1, 49, 50, 51, 99, 100, 101, 149, 150, 151, 250, 500, 501};
    switch (draw.below(9)) {
    case 0:
    case 1:
    case 2:
    case 3:
        return {"advance", "", std::to_string(draw.once(12) ? 1000 * draw.below(10) : draw.oneOf(pauses))};
    case 4:
    case 5:
    case 6: {
        const int wrong = draw.once(4) ? draw.below(5) : 0;
        int count = rxExpected + wrong;
        if (draw.once(3)) {
            count = draw.below(count + 1);
        }
        Octets octets = {0x2A};
        for (int index = 1; index < count; ++index) {
            octets.push_back(static_cast<std::uint8_t>(draw.below(256)));
        }
        return {"deliver", "", hexText(octets, "")};
    }
    default:
        if (draw.once(6) || !isOpen) {
            if (!isOpen && draw.once(2)) {
                static const Lines lists = {"cbBaudRate", "cbDataBit", "cbStopBit", "cbParityBit"};
                const std::string list = draw.oneOf(lists);
                return draw.once(4) ? Action{"type", list, ""}
                                    : Action{"choose", list, std::to_string(draw.below(2))};
            }
            return {"press", world_.desk.isEnabled("cmdPortOpen") ? "cmdPortOpen" : "cmdCommTest", ""};
        }
        return {"advance", "", "150"};
    }
}

} // namespace varda::window_model
