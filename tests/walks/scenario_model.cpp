#include "walks/world.h"

#include <algorithm>

namespace varda::window_model {
namespace {

constexpr int scenarioRuns = 0xC0;

} // namespace

ScenarioModel::ScenarioModel(World& world) : world_(world), timer_(world.agenda, [this] { tick(); }) {
    Desk& desk = world_.desk;
    desk.changeLines(list_);
    desk.select(list_, -1);
    desk.show("txtScnPeriod", "500");
    desk.show("txtNumberOfScenario", "0");
    desk.show("txtScnSend", "");
    desk.show("txtScnReceive", "");
    desk.enable("cmdRunScenario", false);
    desk.enable("cmdStopScenario", false);
}

void ScenarioModel::showCount() {
    world_.desk.show("txtNumberOfScenario", std::to_string(world_.desk.lines(list_).size()));
}

void ScenarioModel::press(const std::string& button) {
    if (button == "cmdAddScenario") {
        add();
    } else if (button == "cmdDelScenario") {
        del();
    } else if (button == "cmdRunScenario") {
        run();
    } else if (button == "cmdStopScenario") {
        stop();
    }
}

void ScenarioModel::add() {
    Desk& desk = world_.desk;
    const Page& page = pages().at(static_cast<std::size_t>(world_.modes.shown()));
    if (const std::string text = desk.text(page.request); !text.empty()) {
        desk.changeLines(list_).push_back(text);
    }
    desk.enable("cmdDelScenario", true);
    showCount();
    if (!desk.lines(list_).empty()) {
        desk.enable("cmdRunScenario", true);
    }
}

void ScenarioModel::del() {
    Desk& desk = world_.desk;
    Lines& lines = desk.changeLines(list_);
    if (const int row = desk.selected(list_); row >= 0) {
        lines.erase(lines.begin() + row);
        desk.select(list_, std::min(row, static_cast<int>(lines.size()) - 1)); // its neighbour, as lists do
    }
    if (lines.empty()) {
        desk.enable("cmdDelScenario", false);
    }
    showCount();
    desk.enable("cmdRunScenario", !lines.empty());
}

void ScenarioModel::select(int row) {
    if (row < static_cast<int>(world_.desk.lines(list_).size())) {
        world_.desk.select(list_, row);
    }
}

void ScenarioModel::setPeriod(const std::string& text) { world_.desk.show("txtScnPeriod", text); }

void ScenarioModel::save(const std::string& file) {
    Desk& desk = world_.desk;
    const Lines& lines = desk.lines(list_);
    Profile& profile = world_.profiles[file];
    profile.write("Information", "Total", std::to_string(lines.size()));
    for (std::size_t row = 0; row < lines.size(); ++row) {
        desk.select(list_, static_cast<int>(row));
        profile.write("Scenario", "Scenario" + std::to_string(row), lines[row]);
    }
    desk.show("txtSimStatus", "Saved Scenario Data completely !!!");
}

void ScenarioModel::load(const std::string& file) {
    Desk& desk = world_.desk;
    const Profile& profile = world_.profiles[file];
    desk.show("txtSimStatus", "");
    Lines& lines = desk.changeLines(list_);
    lines.clear();
    desk.select(list_, -1);
    const std::string total = profile.read("Information", "Total");
    if (total.empty() || total.find_first_not_of("0123456789") != std::string::npos || std::stoi(total) < 1) {
        world_.showBox({"Confirm", "Scenario Data is incorrect or corrupted. Please Check Data.", {}, {}});
        return;
    }
    for (int row = 0; row < std::stoi(total); ++row) {
        const std::string value = profile.read("Scenario", "Scenario" + std::to_string(row));
        if (value.empty()) {
            return;
        }
        lines.push_back(value.substr(0, value.find_last_not_of(' ') + 1));
    }
    desk.enable("cmdRunScenario", true);
    desk.show("txtNumberOfScenario", total);
}

void ScenarioModel::run() {
    Desk& desk = world_.desk;
    LinkModel& link = world_.link;
    if (!link.isOpen) {
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
    if (!desk.lines(list_).empty() &&
        desk.text("txtScnPeriod").find_first_not_of("0123456789") != std::string::npos) {
        world_.showRuntimeError("13", "Type mismatch");
        return;
    }
    desk.enable("cmdRunScenario", false);
    desk.enable("cmdStopScenario", true);
    if (desk.lines(list_).empty()) {
        stop();
        return;
    }
    setMasterControls(false);
    desk.select(list_, 0);
    link.enterMode(scenarioRuns);
    link.waitTicks = 0;
    desk.show("txtWatchDog", "0");
    link.waitingAnswer = false;
    timer_.setInterval(std::stoi(desk.text("txtScnPeriod")));
    timer_.start();
}

void ScenarioModel::tick() {
    Desk& desk = world_.desk;
    LinkModel& link = world_.link;
    const Lines& lines = desk.lines(list_);
    const int noted = desk.selected(list_);
    if (lines.empty()) {
        return;
    }
    desk.select(list_, (noted + 1) % static_cast<int>(lines.size()));
    if (noted < 0) {
        return;
    }
    const std::string& line = lines[static_cast<std::size_t>(noted)];
    desk.show("txtScnSend", line);
    std::string digits;
    for (const char letter : line) {
        if (letter != ' ') {
            digits += letter;
        }
    }
    const Octets octets = octetsOf(digits);
    switch (octets.at(2)) {
    case 0x21:
        link.rxExpected = octets.at(6) + 6;
        break;
    case 0x23:
        link.rxExpected = 2 * octets.at(6) + 6;
        break;
    case 0x22:
    case 0x24:
        link.rxExpected = 7;
        break;
    default: // as it was
        break;
    }
    if (link.isOpen) {
        link.write(octets);
        link.rxCount = 0;
        link.waitingAnswer = true;
    }
}

void ScenarioModel::stop() {
    Desk& desk = world_.desk;
    timer_.stop();
    desk.enable("cmdRunScenario", true);
    desk.enable("cmdStopScenario", false);
    setMasterControls(true);
    world_.link.enterMode(world_.modes.shownMode());
}

void ScenarioModel::setMasterControls(bool on) {
    Desk& desk = world_.desk;
    desk.enable("tabMode", on);
    for (const Page& page : pages()) {
        desk.enable(page.send, on);
        desk.tick(page.again, false);
        desk.enable(page.again, on);
    }
    enableEditing(on && world_.modes.shown() < static_cast<int>(pages().size()));
}

void ScenarioModel::enableEditing(bool on) {
    for (const char* const button :
         {"cmdAddScenario", "cmdDelScenario", "cmdLoadScenario", "cmdSaveScenario"}) {
        world_.desk.enable(button, on);
    }
}

void ScenarioModel::switchRunButtons() {
    world_.desk.enable("cmdRunScenario", !world_.desk.lines(list_).empty());
    world_.desk.enable("cmdStopScenario", false);
}

void ScenarioModel::enableButtons() {
    enableEditing(true);
    switchRunButtons();
}

} // namespace varda::window_model
