#include "walks/world.h"

#include <algorithm>

namespace varda::window_model {
namespace {

constexpr int bitsOfWord = 16;

/// The program reloads a pair over points that were collected without its question.
constexpr bool reloadingAsksNothing = true;

/// The register tables of the simulator's stepping.
struct Step {
    std::string kind;
    int highest;
    std::string next;
    std::string previous;
};

Step stepOf(const std::string& kind) {
    static const std::vector<Step> steps = {
        {"R", 127, "L", "ERR"},  {"L", 64, "M", "R"},      {"M", 127, "K", "L"},    {"K", 127, "F", "K"},
        {"F", 15, "TC", "K"},    {"TC", 255, "W", "F"},    {"W", 2047, "SV", "TC"}, {"SV", 255, "PV", "W"},
        {"PV", 255, "SR", "SV"}, {"SR", 511, "ERR", "PV"},
    };
    for (const Step& step : steps) {
        if (step.kind == kind) {
            return step;
        }
    }
    return {kind, 0, "", ""};
}

int widthOf(const std::string& name) {
    for (const Kind& kind : kinds()) {
        if (kind.name == name) {
            return kind.width;
        }
    }
    return 4;
}

} // namespace

std::optional<std::string> SimulatorModel::pointValue() const {
    const Desk& desk = world_.desk;
    if (kind_ == "Bit Write") {
        return desk.isTicked("optSimOnOff_0") ? "ON" : "OFF";
    }
    const std::string text = desk.text("txtSimData");
    if (desk.isTicked("chkSimHexDec")) {
        return ("0000" + text).substr(text.size());
    }
    if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos) {
        return std::nullopt;
    }
    return padHex(std::stoi(text), 4);
}

void SimulatorModel::addPoint() {
    Desk& desk = world_.desk;
    if (kind_ != "Bit Write" && kind_ != "Word Write") {
        return;
    }
    if (kind_ == "Bit Write" && !desk.isTicked("optSimOnOff_0") && !desk.isTicked("optSimOnOff_1")) {
        world_.showBox({"Confirm", "Please check Data (ON/OFF) !!", {}, {}});
        return;
    }
    const auto value = pointValue();
    if (!value || desk.text("cbSimReg").empty() || desk.text("cbSimAddress").empty() ||
        (isBit() && desk.text("cbSimBit").empty())) {
        world_.showRuntimeError("13", "Type mismatch");
        return;
    }
    const std::string place = desk.text("cbSimReg") + desk.text("cbSimAddress");
    desk.changeLines("lstSimMixed")
        .push_back(isBit() ? "WT_BIT \t\t" + place + "." + desk.text("cbSimBit") + "\t" + *value
                           : "WT_WORD\t" + place + "\t" + *value);
    stepForward();
    rebuildWrite(std::nullopt);
}

void SimulatorModel::stepForward() {
    Desk& desk = world_.desk;
    const Place at = here();
    const Step step = stepOf(at.kind);
    if (isBit() && at.bit + 1 < bitsOfWord) {
        desk.show("cbSimBit", std::to_string(at.bit + 1));
    } else if (at.number + 1 <= step.highest) {
        desk.show("cbSimAddress", padded(at.number + 1, 4));
        desk.show("cbSimBit", "0");
    } else if (step.next != "ERR") {
        desk.show("cbSimReg", step.next);
        chooseRegister();
        desk.show("cbSimAddress", "00000");
        desk.show("cbSimBit", "0");
    }
}

/// The request of the points collected, which begin at `place`, or as far back as they are many.
void SimulatorModel::rebuildWrite(const std::optional<Place>& place) {
    Desk& desk = world_.desk;
    const Lines& points = desk.lines("lstSimMixed");
    if (points.empty()) {
        desk.show("txtSimReceive", "");
        return;
    }
    Place start = place ? *place : here();
    for (std::size_t back = 0; !place && back < points.size(); ++back) {
        if (isBit() && start.bit > 0) {
            --start.bit;
            continue;
        }
        start.bit = bitsOfWord - 1;
        if (start.number > 0) {
            --start.number;
        } else {
            start.kind = stepOf(start.kind).previous;
            start.number = stepOf(start.kind).highest;
        }
    }
    std::string body = stations() + (isBit() ? "22" : "24") + padHex(static_cast<int>(points.size()), 2) +
                       addressText(start);
    for (const std::string& point : points) {
        const std::string value = point.substr(point.rfind('\t') + 1);
        body += value == "ON" ? "FF" : value == "OFF" ? "00" : value;
    }
    desk.show("txtSimReceive", body + hexText(check(octetsOf(body)), ""));
}

void SimulatorModel::delPoint() {
    Desk& desk = world_.desk;
    const int row = desk.selected("lstSimMixed");
    Lines& points = desk.changeLines("lstSimMixed");
    if (row < 0 || row >= static_cast<int>(points.size())) {
        return;
    }
    points.erase(points.begin() + row);
    desk.select("lstSimMixed",
                std::min(row, static_cast<int>(points.size()) - 1)); // its neighbour, as lists do
    desk.enable("cmdSimDelListBox", !points.empty());
    stepBack();
    rebuildWrite(std::nullopt);
}

/// A word's step back has no bit to show: no rule says one.
void SimulatorModel::stepBack() {
    Desk& desk = world_.desk;
    const Place at = here();
    const std::string lastBit = isBit() ? "15" : desk.text("cbSimBit");
    if (isBit() && at.bit > 0) {
        desk.show("cbSimBit", std::to_string(at.bit - 1));
        desk.show("cbSimAddress", padded(at.number, 4));
    } else if (at.number > 0) {
        desk.show("cbSimAddress", padded(at.number - 1, 4));
        desk.show("cbSimBit", lastBit);
    } else {
        const Step before = stepOf(stepOf(at.kind).previous);
        desk.show("cbSimReg", before.kind);
        chooseRegister();
        desk.show("cbSimAddress", padded(before.highest, 4));
        desk.show("cbSimBit", lastBit);
    }
}

SimulatorModel::Place SimulatorModel::splitAddress(const std::string& lowFirst) const {
    const int value = std::stoi(lowFirst.substr(2, 2) + lowFirst.substr(0, 2), nullptr, 16);
    const int word = isBit() ? value / bitsOfWord : value;
    Place place{"R", word, isBit() ? value % bitsOfWord : 0};
    for (const Kind& kind : kinds()) {
        if (word >= kind.base && (kind.bits || !isBit())) {
            place.kind = kind.name;
            place.number = kind.name == "SR" ? word : word - kind.base;
        }
    }
    return place;
}

void SimulatorModel::show(const Place& place, int width) {
    Desk& desk = world_.desk;
    desk.show("cbSimReg", place.kind);
    const std::string request = desk.text("txtSimReceive");
    chooseRegister();
    desk.show("txtSimReceive", request);
    desk.show("cbSimAddress", padded(place.number, width));
    if (isBit()) {
        desk.show("cbSimBit", std::to_string(place.bit));
    }
}

void SimulatorModel::reload(int row) {
    Desk& desk = world_.desk;
    if (row >= static_cast<int>(desk.lines("lstSimReceive").size())) {
        return;
    }
    clickLine("lstSimReceive", row);
    const std::string request = desk.lines("lstSimReceive")[static_cast<std::size_t>(row)];
    const std::string answer = desk.lines("lstSimSend")[static_cast<std::size_t>(row)];
    static const std::map<std::string, std::string> codes = {
        {"21", "Bit Read"}, {"22", "Bit Write"}, {"23", "Word Read"}, {"24", "Word Write"}};
    const auto code = codes.find(request.substr(4, 2));
    if (code == codes.end()) {
        world_.showBox({"Confirm", "Not Support in this version !!", {}, {}});
        return;
    }
    const auto reloadPair = [this, request, answer, kind = code->second] {
        const bool goesOn = (reloadingAsksNothing || kind == kind_) && world_.desk.isEnabled("cmdSimInputOK");
        changeKind(kind);
        world_.desk.enable("cmdSimInputOK", goesOn); // the kind that stands there already is no change
        fillReloaded(request, answer);
    };
    if (reloadingAsksNothing) {
        reloadPair();
    } else {
        askBefore(code->second, reloadPair);
    }
}

void SimulatorModel::fillReloaded(const std::string& request, const std::string& answer) {
    Desk& desk = world_.desk;
    desk.show("cbSimDA", std::to_string(std::stoi(request.substr(0, 2), nullptr, 16)));
    desk.show("cbSimSA", std::to_string(std::stoi(request.substr(2, 2), nullptr, 16)));
    const Place place = splitAddress(request.substr(8, 4));
    show(place, widthOf(place.kind));
    if (isRead()) {
        desk.show("cbSimLength", std::to_string(std::stoi(request.substr(12, 2), nullptr, 16)));
        desk.show("txtSimSendData", answer.substr(8, answer.size() - 12));
    } else {
        rebuildPoints(request);
    }
    desk.show("txtSimReceive", request);
    desk.show("txtSimSend", answer);
}

void SimulatorModel::rebuildPoints(const std::string& request) {
    Desk& desk = world_.desk;
    const int count = std::stoi(request.substr(6, 2), nullptr, 16);
    const std::size_t digits = isBit() ? 2 : 4;
    for (int point = 0; point < count; ++point) {
        const std::string value = request.substr(12 + static_cast<std::size_t>(point) * digits, digits);
        const std::string place = desk.text("cbSimReg") + desk.text("cbSimAddress");
        std::string line = isBit() ? "WT_BIT \t\t" : "WT_WORD \t";
        line.append(place);
        if (isBit()) {
            line.append(".").append(desk.text("cbSimBit"));
        }
        line.append("\t").append(!isBit() ? value : value == "FF" ? "ON" : "OFF");
        desk.changeLines("lstSimMixed").push_back(line);
        stepForward();
    }
}

} // namespace varda::window_model
