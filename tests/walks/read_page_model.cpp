#include "walks/read_page_model.h"

namespace varda::walks {

ReadPageModel::ReadPageModel()
    : MasterModel({0,
                   "cbRegister",
                   "cbRegAddress",
                   "cbRegBit",
                   "cbRLength",
                   "txtRDDA",
                   "txtRDSA",
                   "optRead_0",
                   "optRead_1",
                   "lblBitPoint",
                   "cmdRDSend",
                   "chkRTimer",
                   "txtReadTimerValue",
                   "txtSendRData",
                   "txtReceiveRData",
                   "txtRStatus",
                   "txtRStatus",
                   "txtRStatus",
                   "cmdRDSend",
                   "cmdRDSend",
                   true,
                   "500"}) {
    setEnabled("cmdRDSend", false);
    optionChosen();
    setItems("cbRegBit", bitEntries());
}

std::vector<Action> ReadPageModel::opening() const {
    return {{"click", "cmdCommTest", ""}, {"click", "cmdPortOpen", ""}};
}

Action ReadPageModel::draw(std::mt19937& engine) const {
    return drawCommon(engine, {"0",  "1", "7",     "12", "0003", "15", "255", "256",   "257", "300",
                               "-1", "x", "40000", "R",  "W",    "r",  "16",  "32767", "-40", "2000"});
}

void ReadPageModel::changed(const std::string& control) {
    if (control == "cbRegister") {
        kindChanged();
    } else if (control == "cbRegAddress") {
        numberChanged();
    } else if (control == "cbRegBit") {
        bitChanged();
    } else if (control == "cbRLength") {
        countChanged();
    }
}

void ReadPageModel::keyPressed(const std::string& control) {
    changed(control == "cbRegister" ? "cbRLength" : control);
}

void ReadPageModel::optionChosen() {
    setItems("cbRLength", countEntries(bits() ? 256 : 128));
    setItems("cbRegister", kindEntries(bits()));
    setItems("cbRegAddress", {});
    for (const char* const list : {"cbRLength", "cbRegister", "cbRegAddress", "cbRegBit"}) {
        putText(list, "");
    }
    stationChanged("txtRDDA");
    stationChanged("txtRDSA");
}

void ReadPageModel::modeEntered() {
    optionChosen();
    setItems("cbRegBit", bitEntries());
    setEnabled("txtReadTimerValue", true); // its name begins as those of the page do
}

void ReadPageModel::setByte(std::size_t place, const std::string& digits) { image_.at(place) = digits; }

void ReadPageModel::setAddress(const std::string& address) {
    setByte(4, address.substr(2, 2));
    setByte(5, address.substr(0, 2));
}

void ReadPageModel::kindChanged() {
    const std::string kind = text("cbRegister");
    putText("cbRegAddress", "");
    putText("cbRegBit", "");
    setItems("cbRegAddress", numberEntries(kind));
    setItems("cbRegBit", numberEntries(kind).empty() ? std::vector<std::string>() : bitEntries());
    display();
}

void ReadPageModel::numberChanged() {
    putText("txtSendRData", "");
    if (text("cbRegister").empty()) {
        return;
    }
    if (text("cbRegAddress").empty()) {
        display(); // about to be typed anew
        return;
    }
    const Number number = number16(text("cbRegAddress"));
    if (!number) {
        error(number.error);
        return;
    }
    const int word = baseOf(bits(), text("cbRegister")) + number.value;
    if (word > 32767) {
        error(6);
        return;
    }
    if (!bits()) {
        setAddress(wordAddress(word));
        complete();
    }
    display();
}

void ReadPageModel::bitChanged() {
    putText("txtSendRData", "");
    if (text("cbRegister").empty() || text("cbRegAddress").empty()) {
        putText("cbRegBit", "");
        return;
    }
    if (text("cbRegBit").empty()) {
        display(); // about to be typed anew
        return;
    }
    const Number number = number16(text("cbRegAddress"));
    const Number bit = number16(text("cbRegBit"));
    if (!number || !bit) {
        error(!number ? number.error : bit.error);
        return;
    }
    const int word = baseOf(true, text("cbRegister")) + number.value;
    if (word > 32767) {
        error(6);
        return;
    }
    setAddress(bitAddress(word, bit.value));
    complete();
    display();
}

void ReadPageModel::countChanged() {
    putText("txtSendRData", "");
    const Number count = number16(text("cbRLength"));
    if (!count) {
        putText("cbRLength", "");
        return;
    }
    if (count.value == 256 || count.value == 0) {
        setByte(6, "00");
    } else if (count.value > 0 && count.value < 256) {
        setByte(6, hex(count.value, 2));
    }
    complete();
    display();
}

void ReadPageModel::stationChanged(const std::string& control) {
    const Number station = number16(text(control));
    const bool valid = station && station.value >= 0 && station.value <= 255;
    setByte(control == "txtRDDA" ? 0 : 1, valid ? hex(station.value) : "00");
    complete();
    display();
}

Octets ReadPageModel::octets() const {
    Octets octets;
    for (const std::string& digits : image_) {
        octets.push_back(static_cast<std::uint8_t>(hexNumber(digits).value));
    }
    return octets;
}

void ReadPageModel::complete() {
    image_[2] = bits() ? "21" : "23";
    image_[3] = "03";
    for (std::string& digits : image_) {
        digits = digits.empty() ? "00" : digits;
    }
    const unsigned check = crc(octets(), 7);
    image_[7] = hex(static_cast<int>(check & 0xFFU), 2);
    image_[8] = hex(static_cast<int>(check >> 8U), 2);
}

void ReadPageModel::display() {
    std::string shown;
    for (std::string& digits : image_) {
        digits = digits.empty() ? "00" : digits;
        shown += digits + " ";
    }
    putText("txtSendRData", shown);
}

void ReadPageModel::sendRequest() {
    if (!isComplete()) {
        box("Error: Data are missing. Please fill Data !!");
        return;
    }
    complete();
    display();
    putText("txtReceiveRData", "");
    resetLink();
    const int count = octets()[6] == 0 ? 256 : octets()[6];
    sendAndWait(octets(), (bits() ? count : 2 * count) + 6);
    setEnabled("txtReadTimerValue", true); // switched off and on with the page
}

} // namespace varda::walks
