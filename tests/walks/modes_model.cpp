#include "walks/world.h"

namespace varda::window_model {
namespace {

constexpr int simulation = 4;
constexpr int monitor = 5;

const Lines& readGroup() {
    static const Lines names = {"cbRegister",      "cbRegAddress",     "cbRegBit",          "cbRLength",
                                "txtRDDA",         "txtRDSA",          "txtReadTimerValue", "txtReceiveRData",
                                "txtReceiveWData", "txtReceiveMRData", "txtReceiveMWData",  "txtRStatus",
                                "optRead_0",       "optRead_1"};
    return names;
}

const Lines& writeGroup() {
    static const Lines names = {
        "cbWRegister", "cbWRegAddress", "cbWRegBit",          "cbWLength",  "txtWDDA",   "txtWDSA",
        "txtWStatus",  "txtWatchDog",   "txtWriteTimerValue", "optWrite_0", "optWrite_1"};
    return names;
}

const Lines& simulationGroup() {
    static const Lines names = {"cbSimMode",        "cbSimModeS",    "cbSimDA",
                                "cbSimSA",          "cbSimReg",      "cbSimAddress",
                                "cbSimBit",         "cbSimLength",   "txtSimData",
                                "txtSimSendData",   "txtSimReceive", "txtSimSend",
                                "txtSimRP",         "txtSimSP",      "txtSimStatus",
                                "chkSimHexDec",     "optSimOnOff_0", "optSimOnOff_1",
                                "optSimMixed_0",    "optSimMixed_1", "cmdSimAddListBox",
                                "cmdSimDelListBox", "cmdSimStart",   "cmdSimDelete",
                                "cmdSimClear",      "cmdSimInputOK", "cmdSimSendDataInputOK"};
    return names;
}

} // namespace

ModesModel::ModesModel(World& world) : world_(world) {
    Desk& desk = world_.desk;
    desk.enable("tabMode", true);
    for (const char* const frame : {"Frame2_0", "Frame2_1"}) {
        desk.enable(frame, true);
    }
}

void ModesModel::enableGroup(const std::vector<std::string>& names, bool on) const {
    for (const std::string& name : names) {
        world_.desk.enable(name, on);
    }
}

void ModesModel::enableRead(bool on) const { enableGroup(readGroup(), on); }
void ModesModel::enableWrite(bool on) const { enableGroup(writeGroup(), on); }

int ModesModel::shownMode() const {
    if (shown_ == simulation) {
        return 0xFF;
    }
    if (shown_ == monitor) {
        return 0x80;
    }
    const Page& page = pages().at(static_cast<std::size_t>(shown_));
    return world_.master.isWord(page) ? page.wordMode : page.bitMode;
}

void ModesModel::click(int index, bool onTab) {
    if (index != shown_ && (!onTab || world_.desk.isEnabled("tabMode"))) {
        enter(index);
    }
}

void ModesModel::enter(int index) {
    Desk& desk = world_.desk;
    world_.monitor.leave();
    shown_ = index;
    static const std::vector<int> commModes = {0x21, 0x22, 0x25, 0x26, 0xFF, 0x80};
    world_.link.enterMode(commModes.at(static_cast<std::size_t>(index)));
    desk.set("mode", std::to_string(index));
    enableRead(index == 0);
    enableWrite(index == 1);
    enableGroup(simulationGroup(), index == simulation);
    world_.scenario.enableEditing(index < simulation);
    world_.scenario.switchRunButtons();
    if (index <= 1) {
        desk.enable("Frame2_0", index == 0);
        desk.enable("Frame2_1", index == 1);
    }
    if (index < simulation) {
        world_.master.enterMode(index);
    } else if (index == simulation) {
        world_.simulator.enterMode();
    } else {
        world_.monitor.enterMode();
    }
    if (index == 2) {
        desk.enable("cmdMRAdd", true);
        desk.enable("cmdMRDel", true);
    }
    if (index != monitor) {
        world_.simulator.switchStartButton();
    }
}

Action ModesModel::draw(Draw& draw) const {
    return {draw.once(2) ? "mode" : "tab", "", std::to_string(draw.below(6))};
}

} // namespace varda::window_model
