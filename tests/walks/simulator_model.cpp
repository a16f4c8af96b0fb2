#include "walks/world.h"

namespace varda::window_model {
namespace {

const Lines& kindTexts() {
    static const Lines texts = {"Bit Read",   "Word Read",  "Bit Write",
                                "Word Write", "Mixed Read", "Mixed Write"};
    return texts;
}

Lines numbers(int from, int to, int width) {
    Lines texts;
    for (int number = from; number <= to; ++number) {
        texts.push_back(padded(number, width));
    }
    return texts;
}

bool isMixed(const std::string& kind) { return kind.rfind("Mixed", 0) == 0; }

constexpr const char* question = "Do you want to regist Data you written in List Box ?";

} // namespace

SimulatorModel::SimulatorModel(World& world) : world_(world) {
    Desk& desk = world_.desk;
    for (const char* const list : {"lstSimReceive", "lstSimSend", "lstSimMixed"}) {
        desk.changeLines(list);
    }
    for (const char* const list : {"lstSimReceive", "lstSimSend"}) {
        desk.select(list, -1);
    }
    for (const char* const field :
         {"txtSimReceive", "txtSimSend", "txtSimSendData", "txtSimRP", "txtSimSP", "txtSimStatus"}) {
        desk.show(field, "");
    }
    desk.enable("cmdSimStart", false);
}

bool SimulatorModel::isBit() const { return kind_.rfind("Bit", 0) == 0; }
bool SimulatorModel::isRead() const { return kind_ == "Bit Read" || kind_ == "Word Read"; }

void SimulatorModel::enterMode() {
    askBefore("Bit Read", [this] { finishEntering(); });
}

void SimulatorModel::finishEntering() {
    Desk& desk = world_.desk;
    desk.changeLines("cbSimDA") = numbers(0, 255, 1);
    desk.changeLines("cbSimSA") = numbers(0, 255, 1);
    changeKind("Bit Read");
    desk.show("cbSimDA", "255");
    desk.show("cbSimSA", "255");
    desk.tick("optSimMixed_0", false);
    desk.tick("optSimMixed_1", false);
    desk.changeLines("cbSimMode") = kindTexts();
    Lines& answers = desk.changeLines("cbSimModeS");
    answers.clear();
    for (const std::string& text : kindTexts()) {
        answers.push_back(text + " ANS");
    }
    for (const char* const button : {"cmdSimDelete", "cmdSimClear", "cmdSaveSimPacket"}) {
        desk.enable(button, false);
    }
    switchStartButton();
}

/// It needs an open port, and something to answer with.
void SimulatorModel::switchStartButton() {
    world_.desk.enable("cmdSimStart", world_.link.isOpen && !world_.desk.lines("lstSimReceive").empty());
}

void SimulatorModel::askBefore(const std::string& newKind, const std::function<void()>& then) {
    if (world_.desk.lines("lstSimMixed").empty()) {
        then();
        return;
    }
    world_.showBox({"Confirm", question,
                    [this, newKind, then] {
                        registerOnTheWay(newKind);
                        then();
                    },
                    then});
}

void SimulatorModel::registerOnTheWay(const std::string& newKind) {
    Desk& desk = world_.desk;
    if (desk.text("txtSimReceive").empty() || desk.text("txtSimSend").empty()) {
        return;
    }
    if (!isMixed(newKind)) {
        addPair();
        return;
    }
    const Page& page = *pageOf(newKind == "Mixed Read" ? 0x25 : 0x26);
    const Octets frame = world_.master.mixedRequest(page);
    if (world_.link.isOpen) {
        world_.link.write(frame);
    } else {
        desk.show(page.status, "Port Closed");
    }
}

void SimulatorModel::changeKind(const std::string& kind) {
    Desk& desk = world_.desk;
    kind_ = kind;
    desk.show("cbSimMode", kind);
    desk.changeLines("lstSimMixed").clear();
    desk.select("lstSimMixed", -1);
    desk.enable("cmdSimDelListBox", false);
    desk.enable("cmdSimInputOK", false);
    for (const char* const field : {"txtSimReceive", "txtSimSend", "txtSimSendData"}) {
        desk.show(field, "");
    }
    if (isMixed(kind)) {
        world_.showBox({"Confirm", "Not support in this version yet.", {}, {}});
        return;
    }
    answerKind_ = kind + " ANS";
    desk.show("cbSimModeS", answerKind_);
    desk.enable("txtSimSendData", isRead());
    desk.enable("cmdSimAddListBox", !isRead());
    showFieldsOf(kind);
    offerFieldsOf(kind);
    if (!isRead()) {
        desk.enable("lstSimMixed", true);
        desk.show("txtSimSend", acknowledgement());
    }
}

void SimulatorModel::showFieldsOf(const std::string& kind) {
    Desk& desk = world_.desk;
    for (const char* const name : {"lblSimPoint", "cbSimBit", "lblSimBit"}) {
        desk.setVisible(name, isBit());
    }
    for (const char* const name : {"lblSimLength", "cbSimLength"}) {
        desk.setVisible(name, isRead());
    }
    for (const char* const name : {"Frame25", "optSimMixed_0", "optSimMixed_1"}) {
        desk.setVisible(name, false);
    }
    for (const char* const name : {"optSimOnOff_0", "optSimOnOff_1"}) {
        desk.setVisible(name, kind == "Bit Write");
    }
    for (const char* const name : {"txtSimData", "chkSimHexDec"}) {
        desk.setVisible(name, kind == "Word Write");
    }
}

void SimulatorModel::offerFieldsOf(const std::string& kind) {
    Desk& desk = world_.desk;
    for (const char* const name : {"cbSimReg", "cbSimAddress", "cbSimBit"}) {
        desk.show(name, "");
        desk.enable(name, true);
        desk.changeLines(name).clear();
    }
    for (const Kind& each : kinds()) {
        if (each.bits || !isBit()) {
            desk.changeLines("cbSimReg").push_back(each.name);
        }
    }
    desk.show("cbSimLength", "");
    desk.changeLines("cbSimLength") = isRead() ? numbers(1, 255, 1) : Lines{};
    if (kind == "Word Write") {
        desk.enable("txtSimData", true);
        desk.enable("chkSimHexDec", true);
    }
}

std::string SimulatorModel::stations() const {
    return padHex(std::stoi(world_.desk.text("cbSimDA")), 2) +
           padHex(std::stoi(world_.desk.text("cbSimSA")), 2);
}

std::string SimulatorModel::acknowledgement() const {
    const std::string body = stations() + (isBit() ? "A20100" : "A40100");
    return body + hexText(check(octetsOf(body + "00")), "");
}

SimulatorModel::Place SimulatorModel::here() const {
    const Desk& desk = world_.desk;
    const auto number = [](const std::string& text) { return text.empty() ? 0 : std::stoi(text); };
    return {desk.text("cbSimReg"), number(desk.text("cbSimAddress")), number(desk.text("cbSimBit"))};
}

/// Low byte first.
std::string SimulatorModel::addressText(const Place& place) const {
    const int word = baseOf(place.kind, isBit()) + place.number;
    const std::string text = isBit() ? padHex(word, 3) + padHex(place.bit, 1) : padHex(word, 4);
    return text.substr(2, 2) + text.substr(0, 2);
}

void SimulatorModel::chooseRegister() {
    Desk& desk = world_.desk;
    desk.show("cbSimAddress", "");
    desk.show("cbSimBit", "");
    Lines& offered = desk.changeLines("cbSimAddress");
    offered.clear();
    for (const Kind& kind : kinds()) {
        if (kind.name == desk.text("cbSimReg")) {
            offered = numbers(0, kind.numbers - 1, kind.width);
        }
    }
    desk.changeLines("cbSimBit") = numbers(0, 15, 1);
    if (isRead()) {
        desk.show("txtSimReceive", "");
    }
}

void SimulatorModel::rebuildRead() {
    Desk& desk = world_.desk;
    if (!isRead() || desk.text("cbSimReg").empty() || desk.text("cbSimAddress").empty() ||
        (isBit() && desk.text("cbSimBit").empty()) || desk.text("cbSimLength").empty()) {
        return;
    }
    const std::string body = stations() + (isBit() ? "2103" : "2303") + addressText(here()) +
                             padHex(std::stoi(desk.text("cbSimLength")), 2);
    desk.show("txtSimReceive", body + hexText(check(octetsOf(body)), ""));
}

void SimulatorModel::chooseLength() {
    Desk& desk = world_.desk;
    desk.enable("cmdSimAddListBox", false);
    desk.enable("cmdSimDelListBox", false);
    if (!isRead()) {
        desk.enable("lstSimMixed", false); // neither bit nor word is chosen for a mixed kind
        return;
    }
    rebuildRead();
    std::string data;
    for (int item = 0; item < std::stoi(desk.text("cbSimLength")); ++item) {
        data += isBit() ? "FF" : "FFFF";
    }
    desk.show("txtSimSendData", data);
}

void SimulatorModel::choose(const std::string& list, int index) {
    Desk& desk = world_.desk;
    const Lines& entries = desk.lines(list);
    if (!world_.isUsable(list) || index >= static_cast<int>(entries.size())) {
        return;
    }
    const std::string entry = entries[static_cast<std::size_t>(index)];
    if (list == "cbSimMode") {
        desk.show(list, entry);
        askBefore(entry, [this, entry] { changeKind(entry); });
    } else if (list == "cbSimModeS") {
        answerKind_ = entry;
        desk.show(list, entry);
        desk.enable("txtSimSendData", entry == "Bit Read ANS" || entry == "Word Read ANS");
    } else {
        desk.show(list, entry);
        if (list == "cbSimReg") {
            chooseRegister();
        } else if (list == "cbSimLength") {
            chooseLength();
        } else if (list == "cbSimAddress" || list == "cbSimBit") {
            rebuildRead();
        }
    }
}

void SimulatorModel::setOnOff(int index) {
    world_.desk.tick("optSimOnOff_0", index == 0);
    world_.desk.tick("optSimOnOff_1", index == 1);
}

void SimulatorModel::typeData(const std::string& text) { world_.desk.show("txtSimData", text); }

void SimulatorModel::typeSendData(const std::string& text) {
    Desk& desk = world_.desk;
    if (!world_.isUsable("txtSimSendData")) {
        return;
    }
    const std::string passes = answerKind_ == "Bit Read ANS" ? "0F" : "0123456789ABCDEF";
    std::string left;
    for (const char letter : text) {
        const char big = letter >= 'a' && letter <= 'f' ? static_cast<char>(letter - 'a' + 'A') : letter;
        if (passes.find(big) != std::string::npos || big == '%' || big == '\'') {
            left += big;
        }
    }
    // Typing over what is marked: where nothing passes, the text stays.
    if (!left.empty() || text.empty()) {
        desk.show("txtSimSendData", left);
    }
}

bool SimulatorModel::dataIsRight(bool word) {
    const std::string data = world_.desk.text("txtSimSendData");
    const std::size_t digits = word ? 4 : 2;
    bool right = data.size() % digits == 0;
    if (!right) {
        world_.showBox({"Error", "Data Length is different !!", {}, {}});
    }
    for (std::size_t at = 0; right && at < data.size(); at += digits) {
        const std::string group = data.substr(at, digits);
        right = right && (word ? group.find_first_not_of("0123456789ABCDEF") == std::string::npos
                               : group == "00" || group == "FF");
    }
    if (!right) {
        world_.showBox({"Error",
                        word ? "In WORD_READ Mode,Only possible to enter 0000 to FFFF"
                             : "In BIT_READ Mode,Only possible to enter 00 or FF",
                        {},
                        {}});
    }
    return right;
}

void SimulatorModel::makeAnswer() {
    Desk& desk = world_.desk;
    const bool bit = answerKind_.rfind("Bit", 0) == 0;
    if (answerKind_ == "Bit Read ANS" || answerKind_ == "Word Read ANS") {
        if (!dataIsRight(!bit)) {
            return;
        }
        if (desk.text("cbSimLength").empty()) {
            world_.showRuntimeError("13", "Type mismatch");
            return;
        }
        const std::string body = stations() + (bit ? "A1" : "A3") +
                                 padHex(std::stoi(desk.text("cbSimLength")), 2) + desk.text("txtSimSendData");
        Octets checked = octetsOf(body + (bit ? "" : "00"));
        if (bit) {
            checked.resize(7);
        }
        desk.show("txtSimSend", body + hexText(check(checked), ""));
    } else if (answerKind_ == "Bit Write ANS" || answerKind_ == "Word Write ANS") {
        const std::string body = stations() + (bit ? "A20100" : "A40100");
        desk.show("txtSimSend", body + hexText(check(octetsOf(body + "00")), ""));
    } else {
        return;
    }
    desk.enable("cmdSimInputOK", true);
}

void SimulatorModel::press(const std::string& button) {
    if (button == "cmdSimAddListBox") {
        addPoint();
    } else if (button == "cmdSimDelListBox") {
        delPoint();
    } else if (button == "cmdSimSendDataInputOK") {
        makeAnswer();
    } else if (button == "cmdSimInputOK") {
        registerPair();
    } else if (button == "cmdSimDelete") {
        deletePair();
    } else if (button == "cmdSimClear") {
        world_.showBox({"Confirm", "Do you want to clear?", [this] { clearPairs(); }, {}});
    }
}

} // namespace varda::window_model
