#include "walks/world.h"

#include <algorithm>

namespace varda::window_model {

void SimulatorModel::registerPair() {
    const Desk& desk = world_.desk;
    if (desk.text("txtSimReceive").empty() || desk.text("txtSimSend").empty()) {
        return;
    }
    if (isRead() ||
        (kind_ == "Bit Write" && (desk.isTicked("optSimOnOff_0") || desk.isTicked("optSimOnOff_1"))) ||
        (kind_ == "Word Write" && !desk.text("txtSimData").empty())) {
        addPair();
    }
}

void SimulatorModel::addPair() {
    Desk& desk = world_.desk;
    desk.changeLines("lstSimReceive").push_back(desk.text("txtSimReceive"));
    desk.changeLines("lstSimSend").push_back(desk.text("txtSimSend"));
    desk.enable("cmdSaveSimPacket", true);
    switchStartButton();
}

void SimulatorModel::selectPair(int row) {
    Desk& desk = world_.desk;
    desk.select("lstSimReceive", row);
    desk.select("lstSimSend", row);
    const bool any = !desk.lines("lstSimReceive").empty();
    desk.enable("cmdSimDelete", any);
    desk.enable("cmdSimClear", any);
}

void SimulatorModel::clickLine(const std::string& list, int row) {
    if (row < static_cast<int>(world_.desk.lines(list).size()) && world_.isUsable(list)) {
        if (list == "lstSimMixed") {
            world_.desk.select(list, row);
            world_.desk.enable("cmdSimDelListBox", true);
        } else {
            selectPair(row);
        }
    }
}

void SimulatorModel::deletePair() {
    Desk& desk = world_.desk;
    const int row = desk.selected("lstSimReceive");
    if (row >= 0) {
        for (const char* const list : {"lstSimReceive", "lstSimSend"}) {
            Lines& lines = desk.changeLines(list);
            lines.erase(lines.begin() + row);
        }
        // The neighbour is selected then, as lists do.
        selectPair(std::min(row, static_cast<int>(desk.lines("lstSimReceive").size()) - 1));
    }
    const bool remain = !desk.lines("lstSimReceive").empty();
    desk.enable("cmdSaveSimPacket", remain);
    desk.enable("cmdSimStart", remain);
}

void SimulatorModel::clearPairs() {
    Desk& desk = world_.desk;
    for (const char* const list : {"lstSimReceive", "lstSimSend"}) {
        desk.changeLines(list).clear();
        desk.select(list, -1);
    }
    for (const char* const field : {"txtSimReceive", "txtSimSend", "txtSimSendData"}) {
        desk.show(field, "");
    }
}

bool SimulatorModel::answerRequest() {
    Desk& desk = world_.desk;
    const std::string request = hexText(world_.link.buffer, "");
    desk.show("txtSimRP", request);
    const Lines& prepared = desk.lines("lstSimReceive");
    const auto found = std::find(prepared.begin(), prepared.end(), request);
    world_.link.rxCount = 0;
    if (found == prepared.end()) {
        desk.select("lstSimReceive", -1);
        desk.select("lstSimSend", -1);
        return false;
    }
    const auto row = found - prepared.begin();
    const std::string answer = desk.lines("lstSimSend")[static_cast<std::size_t>(row)];
    world_.link.write(octetsOf(answer));
    desk.show("txtSimSP", answer);
    selectPair(static_cast<int>(row));
    return true;
}

} // namespace varda::window_model
