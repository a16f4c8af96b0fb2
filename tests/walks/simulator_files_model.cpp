#include "walks/profile_model.h"
#include "walks/world.h"

namespace varda::window_model {
namespace {

constexpr std::size_t longest = 1023;

std::string trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(' ');
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

} // namespace

void SimulatorModel::save(const std::string& file) {
    Desk& desk = world_.desk;
    const Lines& requests = desk.lines("lstSimReceive");
    const Lines& answers = desk.lines("lstSimSend");
    desk.show("txtSimStatus", "");
    Profile& profile = world_.profiles[file];
    profile.write("Information", "Total", std::to_string(requests.size()));
    for (std::size_t row = 0; row < requests.size(); ++row) {
        profile.write("Receive", std::to_string(row), requests[row]);
        if (row >= answers.size()) {
            world_.showRuntimeError("381", "Invalid property array index");
            return;
        }
        profile.write("Send", std::to_string(row), answers[row]);
        selectPair(static_cast<int>(row));
    }
    desk.show("txtSimStatus", "Saved completely !!!");
}

void SimulatorModel::load(const std::string& file) {
    Desk& desk = world_.desk;
    desk.show("txtSimStatus", "");
    const Profile& profile = world_.profiles[file];
    const std::string total = profile.read("Information", "Total");
    if (total.empty()) {
        return;
    }
    for (const char* const list : {"lstSimReceive", "lstSimSend"}) {
        desk.changeLines(list).clear();
        desk.select(list, -1);
    }
    if (total.find_first_not_of("0123456789-") != std::string::npos) {
        world_.showRuntimeError("13", "Type mismatch");
        return;
    }
    if (std::stoi(total) < 1) {
        world_.showBox({"Confirm", "Data is incorrect or corrupted. Please Check Data.", {}, {}});
        return;
    }
    for (int row = 0; row < std::stoi(total); ++row) {
        for (const char* const section : {"Receive", "Send"}) {
            const std::string value = profile.read(section, std::to_string(row));
            if (value.empty()) {
                return;
            }
            desk.changeLines(std::string("lstSim") + section).push_back(trimmed(value).substr(0, longest));
        }
    }
    desk.enable("cmdSimStart", true);
}

} // namespace varda::window_model
