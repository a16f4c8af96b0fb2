#include "walks/world.h"

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
    if (!desk.isEnabled(button)) {
        return;
    }
    if (button == "cmdCommTest") {
        link.test();
    } else if (button == "cmdPortOpen") {
        link.toggleOpen();
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
    if (!desk.isEnabled(box)) {
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
            if (page.name == target) {
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
        } else if (desk.isEnabled(target)) {
            desk.show(target, link.entry(target, std::stoi(value)));
        }
    } else if (verb == "option") {
        if (desk.isEnabled(target)) {
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
        simulator.reload(std::stoi(value));
    } else if (verb == "log") {
        if (desk.isEnabled("cmdMonLogFile")) {
            monitor.chooseLog(value);
        }
    } else {
        applyToFile(action);
    }
}

void World::write(const std::string& field, const std::string& text) {
    if (field == "txtScnPeriod") {
        scenario.setPeriod(text);
    } else if (field == "txtSimSendData") {
        simulator.typeSendData(text);
    } else if (field == "txtSimData") {
        simulator.typeData(text);
    } else if (field.rfind("cb", 0) == 0) {
        if (desk.isEnabled(field)) {
            desk.show(field, text);
        }
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
        std::string pair;
        words >> total >> pair;
        profiles[target].write("Information", "Total", total);
        profiles[target].write("Receive", "0", pair);
        profiles[target].write("Send", "0", pair);
    } else if (target == "simulator" &&
               desk.isEnabled(verb == "save" ? "cmdSaveSimPacket" : "cmdLoadSimPacket")) {
        verb == "save" ? simulator.save(value) : simulator.load(value);
    } else if (target == "scenario" &&
               desk.isEnabled(verb == "save" ? "cmdSaveScenario" : "cmdLoadScenario")) {
        verb == "save" ? scenario.save(value) : scenario.load(value);
    }
}

Observation World::expected() const {
    Observation seen = desk.expected();
    const auto frame = [&seen](const std::string& name, const std::string& around) {
        if (seen[around + ".enabled"] == "0") {
            seen[name + ".enabled"] = "0";
        }
    };
    for (const char* const index : {"_0", "_1"}) {
        frame(std::string("optRead") + index, "Frame2_0");
        frame(std::string("optWrite") + index, "Frame2_1");
    }
    seen["box"] = boxes.empty() ? "" : boxes.front().title + ": " + boxes.front().text;
    seen["written"] = written;
    return seen;
}

} // namespace varda::window_model
