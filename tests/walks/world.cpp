#include "walks/world.h"

#include <algorithm>
#include <sstream>

namespace varda::window_model {

World::World() { modes.start(); }

void World::showBox(const Box& box) {
    for (const Box& waiting : boxes) {
        if (waiting.title == box.title && waiting.text == box.text) {
            return;
        }
    }
    boxes.push_back(box);
}

void World::showRuntimeError(const std::string& number, const std::string& text) {
    showBox({"VR-Series PLC Test & Simulator", "Run-time error '" + number + "':\n\n" + text, {}, {}});
}

namespace {

constexpr int besideTheTabs = -1;

/// The index of the tab on which a control stands.
int tabOf(const std::string& control) {
    static const Lines beside = {"cbPort",         "cbBaudRate",         "cbDataBit",       "cbStopBit",
                                 "cbParityBit",    "cmdCommTest",        "cmdPortOpen",     "txtTotalData",
                                 "txtCurrentData", "txtWatchDog",        "cmdAddScenario",  "cmdDelScenario",
                                 "cmdRunScenario", "cmdStopScenario",    "cmdLoadScenario", "cmdSaveScenario",
                                 "txtScnPeriod",   "lstSchedule",        "txtScnSend",      "txtScnReceive",
                                 "tabMode",        "txtNumberOfScenario"};
    static const Lines monitor = {"cmdMonStart", "cmdMonStop",    "cmdClear",     "cmdMonLogFile",
                                  "chkMonLog",   "txtMonLogFile", "chkTimeStamp", "chkASCIIDisplay"};
    const auto stands = [&control](const Lines& names) {
        return std::find(names.begin(), names.end(), control) != names.end();
    };
    for (std::size_t index = 0; index < pages().size(); ++index) {
        const Page& page = pages()[index];
        if (control == page.name || stands({page.send, page.again, page.period})) {
            return static_cast<int>(index);
        }
    }
    constexpr int simulationTab = 4;
    constexpr int monitorTab = 5;
    return stands(beside) ? besideTheTabs : stands(monitor) ? monitorTab : simulationTab;
}

} // namespace

bool World::isEnabled(const std::string& control) const {
    const std::string frame = control.rfind("optRead_", 0) == 0    ? "Frame2_0"
                              : control.rfind("optWrite_", 0) == 0 ? "Frame2_1"
                                                                   : control;
    return desk.isEnabled(control) && desk.isEnabled(frame) &&
           (tabOf(control) == besideTheTabs || desk.isEnabled("tabMode"));
}

bool World::isUsable(const std::string& control) const {
    const int tab = tabOf(control);
    return isEnabled(control) && desk.isVisible(control) && (tab == besideTheTabs || tab == modes.shown());
}

void World::answer(const std::string& caption) {
    if (boxes.empty()) {
        return;
    }
    const Box box = boxes.front();
    boxes.pop_front();
    const std::function<void()>& then = caption == "Yes" ? box.yes : box.no;
    if (then) {
        then();
    }
}

void World::press(const std::string& button) {
    if (!isUsable(button)) {
        return;
    }
    if (button == "cmdCommTest") {
        link.test();
    } else if (button == "cmdPortOpen") {
        link.toggleOpen();
        monitor.switchButtons();
    } else if (button.rfind("cmdSim", 0) == 0) {
        simulator.press(button);
    } else if (button.find("Scenario") != std::string::npos) {
        scenario.press(button);
    } else if (button.rfind("cmdMon", 0) == 0 || button == "cmdClear") {
        monitor.press(button);
    } else {
        for (const Page& page : pages()) {
            if (button == page.send) {
                master.send(page);
            }
        }
    }
}

void World::toggle(const std::string& box) {
    if (!isUsable(box)) {
        return;
    }
    if (box == "chkMonLog") {
        monitor.toggleLog();
    } else {
        desk.tick(box, !desk.isTicked(box));
    }
}

void World::apply(const Action& action) {
    written.clear();
    const auto& [verb, target, value] = action;
    if (verb == "advance") {
        agenda.advance(std::stoi(value));
    } else if (verb == "deliver") {
        link.deliver(octetsOf(value));
    } else if (verb == "flood") {
        for (int burst = 0; burst < std::stoi(value); ++burst) {
            link.deliver({0x2A});
            agenda.advance(100);
        }
    } else if (verb == "press") {
        press(target);
    } else if (verb == "toggle") {
        toggle(target);
    } else if (verb == "box") {
        answer(value);
    } else if (verb == "mode" || verb == "tab") {
        modes.click(std::stoi(value), verb == "tab");
    } else if (verb == "fill") {
        for (const Page& page : pages()) {
            if (page.name == target && isUsable(target)) {
                master.fill(page, value);
            }
        }
    } else {
        applyToField(action);
    }
}

void World::applyToField(const Action& action) {
    const auto& [verb, target, value] = action;
    if (verb == "choose") {
        if (target.rfind("cbSim", 0) == 0) {
            simulator.choose(target, std::stoi(value));
        } else if (isUsable(target)) {
            desk.show(target, LinkModel::entry(target, std::stoi(value)));
        }
    } else if (verb == "option") {
        if (isUsable(target)) {
            simulator.setOnOff(target.back() - '0');
        }
    } else if (verb == "type" || verb == "paste") {
        write(target, value);
    } else if (verb == "line") {
        if (target == "lstSchedule") {
            scenario.select(std::stoi(value));
        } else {
            simulator.clickLine(target, std::stoi(value));
        }
    } else if (verb == "double") {
        if (isUsable(target)) {
            simulator.reload(std::stoi(value));
        }
    } else if (verb == "log") {
        if (isUsable("cmdMonLogFile")) {
            monitor.chooseLog(value);
        }
    } else {
        applyToFile(action);
    }
}

void World::write(const std::string& field, const std::string& text) {
    if (!isUsable(field)) {
        return;
    }
    if (field == "txtScnPeriod") {
        scenario.setPeriod(text);
    } else if (field == "txtSimSendData") {
        simulator.typeSendData(text);
    } else if (field == "txtSimData") {
        simulator.typeData(text);
    } else if (field.rfind("cb", 0) == 0) {
        desk.show(field, text);
    } else {
        master.changePeriod(field, text);
    }
}

void World::applyToFile(const Action& action) {
    const auto& [verb, target, value] = action;
    if (verb == "write") {
        profiles[target] = {};
        std::istringstream words(value);
        std::string total;
        std::string line;
        words >> total;
        std::getline(words >> std::ws, line);
        profiles[target].write("Information", "Total", total);
        profiles[target].write("Receive", "0", line);
        profiles[target].write("Send", "0", line);
        profiles[target].write("Scenario", "Scenario0", line);
    } else if (target == "simulator" && isUsable(verb == "save" ? "cmdSaveSimPacket" : "cmdLoadSimPacket")) {
        if (verb == "save") {
            simulator.save(value);
        } else if (profiles.count(value) != 0) {
            simulator.load(value);
        }
    } else if (target == "scenario" && isUsable(verb == "save" ? "cmdSaveScenario" : "cmdLoadScenario")) {
        if (verb == "save") {
            scenario.save(value);
        } else if (profiles.count(value) != 0) {
            scenario.load(value);
        }
    }
}

Observation World::expected() const {
    static const std::string ending = ".enabled";
    Observation seen = desk.expected();
    for (auto& [key, value] : seen) {
        if (key.ends_with(ending)) {
            value = isEnabled(key.substr(0, key.size() - ending.size())) ? "1" : "0";
        }
    }
    seen["box"] = boxes.empty() ? "" : boxes.front().title + ": " + boxes.front().text;
    seen["written"] = written;
    return seen;
}

} // namespace varda::window_model
