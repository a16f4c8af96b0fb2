#include "walks/world.h"

namespace varda::window_model {
namespace {

constexpr int monitoring = 0x81;
constexpr int idle = 0x80;
constexpr std::size_t mostLines = 2000;

/// The character of that code, as UTF-8.
std::string letter(std::uint8_t code) {
    if (code < 0x80) {
        return {static_cast<char>(code)};
    }
    return {static_cast<char>(0xC0 | (code >> 6)), static_cast<char>(0x80 | (code & 0x3F))};
}

} // namespace

MonitorModel::MonitorModel(World& world) : world_(world) {
    Desk& desk = world_.desk;
    desk.changeLines("lstMonitor");
    desk.show("txtMonLogFile", "");
    desk.enable("cmdMonStart", true);
    desk.enable("cmdMonStop", true);
    desk.enable("cmdClear", false);
    for (const char* const box : {"chkTimeStamp", "chkASCIIDisplay", "chkMonLog"}) {
        desk.tick(box, false);
    }
}

void MonitorModel::press(const std::string& button) {
    if (button == "cmdMonStart") {
        start();
    } else if (button == "cmdMonStop") {
        stop();
    } else if (button == "cmdClear") {
        world_.desk.changeLines("lstMonitor").clear();
        world_.desk.enable("cmdClear", false);
    }
}

/// What a button would do nothing for, it is off for.
void MonitorModel::switchButtons() {
    const bool isRunning = world_.link.commMode == monitoring;
    world_.desk.enable("cmdMonStart", !(isRunning && world_.link.isOpen));
    world_.desk.enable("cmdMonStop", isRunning || !world_.desk.isEnabled("txtMonLogFile"));
}

void MonitorModel::start() {
    Desk& desk = world_.desk;
    if (!world_.link.isOpen) {
        world_.showBox({"Warning", "Please Port Open !!", {}, {}});
        return;
    }
    if (desk.isTicked("chkRTimer") || desk.isTicked("chkWTimer")) {
        world_.showBox({"Warning",
                        "Currently, Program is communicating with PLC. Please turn off Check Box !!",
                        {},
                        {}});
        return;
    }
    if (desk.isTicked("chkMonLog") && desk.text("txtMonLogFile").empty()) {
        toggleLog();
    }
    world_.link.enterMode(monitoring);
    desk.enable("txtMonLogFile", false);
    desk.enable("chkMonLog", false);
    switchButtons();
    logFile_ = desk.isTicked("chkMonLog") ? desk.text("txtMonLogFile") : "";
    if (!logFile_.empty() && !desk.knows("log." + logFile_)) {
        desk.set("log." + logFile_, "");
    }
}

void MonitorModel::stop() {
    world_.link.enterMode(idle);
    logFile_.clear();
    world_.desk.enable("txtMonLogFile", true);
    world_.desk.enable("chkMonLog", true);
    switchButtons();
}

void MonitorModel::leave() {
    if (world_.link.commMode == monitoring) {
        stop();
    }
}

void MonitorModel::enterMode() {
    Desk& desk = world_.desk;
    desk.enable("txtMonLogFile", desk.isTicked("chkMonLog"));
    desk.enable("cmdMonLogFile", desk.isTicked("chkMonLog"));
    switchButtons();
}

void MonitorModel::toggleLog() {
    Desk& desk = world_.desk;
    const bool on = !desk.isTicked("chkMonLog");
    desk.tick("chkMonLog", on);
    desk.enable("txtMonLogFile", on);
    desk.enable("cmdMonLogFile", on);
    switchButtons();
}

void MonitorModel::chooseLog(const std::string& file) { world_.desk.show("txtMonLogFile", file); }

void MonitorModel::list(const Octets& burst) {
    Desk& desk = world_.desk;
    Lines& lines = desk.changeLines("lstMonitor");
    if (lines.size() > mostLines) {
        lines.clear();
    }
    desk.show("txtLine", std::to_string(lines.size()));
    std::string shown = desk.isTicked("chkTimeStamp") ? "9:5:7 - " : "";
    std::string logged = shown; // a byte a character
    for (const std::uint8_t octet : burst) {
        const bool asCharacter = desk.isTicked("chkASCIIDisplay");
        shown += (asCharacter ? letter(octet) : padHex(octet, 2)) + " ";
        logged += (asCharacter ? std::string(1, static_cast<char>(octet)) : padHex(octet, 2)) + " ";
    }
    lines.push_back(shown);
    desk.enable("cmdClear", true);
    if (!logFile_.empty()) {
        desk.set("log." + logFile_, desk.expected()["log." + logFile_] + logged + "\n");
    }
}

Action MonitorModel::draw(Draw& draw) const {
    if (world_.link.commMode == monitoring && draw.once(60)) {
        return {"flood", "", "1100"};
    }
    switch (draw.below(8)) {
    case 0:
        return {"toggle", draw.oneOf<std::string>({"chkTimeStamp", "chkASCIIDisplay", "chkMonLog"}), ""};
    case 1:
        return {"press", "cmdMonStart", ""};
    case 2:
        return {"press", draw.once(3) ? "cmdMonStop" : "cmdMonStart", ""};
    case 3:
        return {"log", "", "Log/walk" + std::to_string(draw.below(3)) + ".log"};
    case 4:
        return {"press", draw.once(3) ? "cmdClear" : "cmdMonStart", ""};
    default: {
        Octets octets;
        for (int count = 1 + draw.below(6); count > 0; --count) {
            octets.push_back(static_cast<std::uint8_t>(0x20 + draw.below(0x5F)));
        }
        return {"deliver", "", hexText(octets, "")};
    }
    }
}

} // namespace varda::window_model
