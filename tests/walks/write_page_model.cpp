#include "walks/write_page_model.h"

namespace varda::walks {

namespace {

constexpr int columns = 16;
constexpr int dataBegin = 6;
constexpr int subscriptOutOfRange = 9;

} // namespace

WritePageModel::WritePageModel(std::uint_fast32_t seed)
    : MasterModel({1,
                   "cbWRegister",
                   "cbWRegAddress",
                   "cbWRegBit",
                   "cbWLength",
                   "txtWDDA",
                   "txtWDSA",
                   "optWrite_0",
                   "optWrite_1",
                   "lblWBitPoint",
                   "cmdWDSend",
                   "chkWTimer",
                   "txtWriteTimerValue",
                   "txtSendWData",
                   "txtReceiveWData",
                   "txtWStatus",
                   "txtWStatus",
                   "txtWStatus",
                   "cmdWDSend",
                   "cmdWDSend",
                   false,
                   "500"}),
      random_(seed) {
    setEnabled("cmdWDSend", false);
    setTicked("chkCounter", false);
    setTicked("chkRandomWrite", false);
    image_[0] = image_[1] = "FF";
    optionChosen();
}

std::vector<Action> WritePageModel::opening() const {
    return {{"click", "cmdCommTest", ""}, {"click", "cmdPortOpen", ""}};
}

int WritePageModel::count() const { return number16(text("cbWLength")).value; }

Action WritePageModel::draw(std::mt19937& engine) const {
    if (dialog_) {
        static const std::vector<std::string> words = {"0",    "1",   "4660",  "65535", "65536",      "FFFF",
                                                       "12AB", "fg3", "10000", "7",     "99999999999"};
        switch (engine() % 5) {
        case 0:
        case 1:
            return {"word", "", words[engine() % words.size()]};
        case 2:
            return {"wordhex", "", ""};
        case 3:
            return {"wordend", "", engine() % 2 == 0 ? "Enter" : "OK"};
        default:
            return {"wordend", "", engine() % 3 == 0 ? "Escape" : "Enter"};
        }
    }
    switch (engine() % 8) {
    case 0:
    case 1:
    case 2: {
        const int begin = number16(text(bits() ? "cbWRegBit" : "cbWRegAddress")).value;
        int position = begin + static_cast<int>(engine() % 8) - 1;
        if (engine() % 4 == 0) {
            position = static_cast<int>(engine() % static_cast<unsigned>(columns * (rows_ - 1) + 1));
        }
        return {"cell", "gridWriteData",
                std::to_string(position / columns) + "," + std::to_string(position % columns)};
    }
    case 3:
        if (engine() % 8 == 0) {
            return {"put", engine() % 4 == 0 ? "cbWLength" : "cbWRegAddress", "40000"};
        }
        return {"click", engine() % 2 == 0 ? "chkCounter" : "chkRandomWrite", ""};
    default:
        return drawCommon(engine, {"0", "1", "7", "12", "0003", "15", "16", "126", bits() ? "253" : "100",
                                   "256", "x", "40"});
    }
}

bool WritePageModel::isPossible(const Action& action) const {
    const bool dialogs = action.verb.substr(0, 4) == "word";
    if (dialogs || action.verb == "tick" || action.verb == "answer") {
        return dialogs ? dialog_.has_value() : MasterModel::isPossible(action);
    }
    return !dialog_ && MasterModel::isPossible(action);
}

bool WritePageModel::isOwnActionPossible(const Action& action) const {
    if (action.verb == "cell") {
        if (isOverlong()) {
            return false;
        }
        const auto comma = action.text.find(',');
        const int row = std::stoi(action.text);
        return row >= 0 && row < rows_ - 1 && std::stoi(action.text.substr(comma + 1)) >= 0;
    }
    return action.verb.substr(0, 4) == "word";
}

void WritePageModel::applyOwn(const Action& action) {
    if (action.verb == "cell") {
        moveFocus("gridWriteData");
        const auto comma = action.text.find(',');
        cellClicked(std::stoi(action.text) * columns + std::stoi(action.text.substr(comma + 1)));
    } else if (action.verb == "wordhex") {
        dialog_->hexadecimal = !dialog_->hexadecimal;
    } else if (action.verb == "wordend") {
        endDialog(action.text);
    } else {
        bool marked = true;
        for (const char key : action.text) {
            const char upper = key >= 'a' && key <= 'f' ? static_cast<char>(key - 'a' + 'A') : key;
            const bool digit = (upper >= '0' && upper <= '9') || upper == '%' || upper == '\'';
            if (digit || (dialog_->hexadecimal && upper >= 'A' && upper <= 'F')) {
                dialog_->text = (marked ? std::string() : dialog_->text) + upper;
                marked = false;
            }
        }
    }
}

void WritePageModel::changed(const std::string& control) {
    if (control == "cbWRegister") {
        kindChanged();
    } else if (control == "cbWRegAddress") {
        numberChanged();
    } else if (control == "cbWRegBit") {
        bitChanged();
    } else if (control == "cbWLength") {
        countChanged();
    }
}

void WritePageModel::keyPressed(const std::string& control) {
    changed(control == "cbWRegister" ? "cbWLength" : control);
}

void WritePageModel::pressed(const std::string& control) {
    if (control == "chkCounter" || control == "chkRandomWrite") {
        setTicked("chkCounter", control == "chkCounter");
        setTicked("chkRandomWrite", control == "chkRandomWrite");
    }
}

void WritePageModel::optionChosen() {
    setItems("cbWLength", countEntries(bits() ? 253 : 126));
    setItems("cbWRegister", kindEntries(bits()));
    setItems("cbWRegAddress", {});
    for (const char* const list : {"cbWLength", "cbWRegister", "cbWRegAddress", "cbWRegBit"}) {
        putText(list, "");
    }
    numberBefore_.clear();
    setEnabled("chkCounter", !bits());
    setEnabled("chkRandomWrite", !bits());
    for (std::size_t place = 3; place < image_.size(); ++place) {
        image_.at(place) = "00";
    }
    stationChanged("txtWDDA");
    stationChanged("txtWDSA");
}

void WritePageModel::modeEntered() {
    optionChosen();
    setEnabled("txtWriteTimerValue", true);
    setEnabled("cmdWDSend", isOpen());
}

void WritePageModel::setAddress(const std::string& address) {
    image_[4] = address.substr(2, 2);
    image_[5] = address.substr(0, 2);
}

void WritePageModel::kindChanged() {
    const std::string kind = text("cbWRegister");
    putText("cbWRegAddress", "");
    putText("cbWRegBit", "");
    numberBefore_.clear();
    setItems("cbWRegAddress", numberEntries(kind));
    setItems("cbWRegBit", numberEntries(kind).empty() ? std::vector<std::string>() : bitEntries());
    layGrid();
    display();
}

void WritePageModel::numberChanged() {
    putText("txtSendWData", "");
    if (text("cbWRegister").empty()) {
        return;
    }
    const Number number = number16(text("cbWRegAddress"));
    if (!number && !text("cbWRegAddress").empty()) {
        error(number.error);
        return;
    }
    if (text("cbWRegAddress") != numberBefore_) {
        setItems("cbWRegBit", bitEntries());
        putText("cbWRegBit", "");
    }
    numberBefore_ = text("cbWRegAddress");
    if (text("cbWRegAddress").empty()) {
        layGrid();
        display();
        return;
    }
    layGrid();
    if (!bits()) {
        setAddress(wordAddress(baseOf(false, text("cbWRegister")) + number.value));
        complete();
    }
    display();
}

void WritePageModel::bitChanged() {
    putText("txtSendWData", "");
    if (text("cbWRegister").empty() || text("cbWRegAddress").empty()) {
        putText("cbWRegBit", "");
        return;
    }
    if (text("cbWRegBit").empty()) {
        display();
        return;
    }
    if (bits()) {
        const Number number = number16(text("cbWRegAddress"));
        const Number bit = number16(text("cbWRegBit"));
        if (!number || !bit) {
            error(!number ? number.error : bit.error);
            return;
        }
        setAddress(bitAddress(baseOf(true, text("cbWRegister")) + number.value, bit.value));
    }
    if (!laying_) {
        layGrid();
    }
    complete();
    display();
}

void WritePageModel::countChanged() {
    putText("txtSendWData", "");
    const Number number = number16(text("cbWLength"));
    if (!number) {
        putText("cbWLength", "");
        return;
    }
    const int limit = bits() ? 253 : 126;
    const int entries = bits() ? number.value : 2 * number.value;
    if (number.value == 0 || number.value == 256) {
        image_[3] = "00";
    } else if (number.value > 0 && number.value <= limit) {
        image_[3] = hex(entries + 2, 2);
    }
    for (int place = dataBegin; place <= entries + dataBegin; ++place) {
        if (place > 1023) {
            error(subscriptOutOfRange);
            return;
        }
        image_.at(static_cast<std::size_t>(place)) = "00";
    }
    counting_ = true;
    layGrid();
    counting_ = false;
    complete();
    display();
}

void WritePageModel::stationChanged(const std::string& control) {
    const Number station = number16(text(control));
    const bool valid = station && station.value >= 0 && station.value <= 255;
    putText("txtSendWData", "");
    image_.at(control == "txtWDDA" ? 0 : 1) = valid ? hex(station.value) : "00";
    complete();
    display();
}

Octets WritePageModel::octets(std::size_t count) const {
    Octets octets;
    for (std::size_t place = 0; place < count; ++place) {
        octets.push_back(static_cast<std::uint8_t>(hexNumber(image_.at(place)).value));
    }
    return octets;
}

void WritePageModel::complete() {
    if (text("cbWLength").empty()) {
        setText("cbWLength", "1");
    }
    image_[2] = bits() ? "22" : "24";
    image_[3] = hex((bits() ? count() : 2 * count()) + 2, 2);
    const unsigned check = crc(octets(length() + 4), length() + 4);
    image_.at(length() + 4) = hex(static_cast<int>(check & 0xFFU), 2);
    image_.at(length() + 5) = hex(static_cast<int>(check >> 8U), 2);
}

void WritePageModel::display() {
    std::string shown;
    for (std::size_t place = 0; place < length() + 6; ++place) {
        shown += image_.at(place) + " ";
    }
    putText("txtSendWData", shown);
}

double WritePageModel::nextRandom() { return static_cast<double>(random_()) / 4294967296.0; }

void WritePageModel::fillRandom() {
    const std::size_t draws = length() - 2;
    for (std::size_t draw = 0; draw < draws; ++draw) {
        const std::string digits = hex(static_cast<int>(nextRandom() * 65535 + 1), 4);
        image_.at(dataBegin + 2 * draw) = digits.substr(2, 2);
        image_.at(dataBegin + 2 * draw + 1) = digits.substr(0, 2);
    }
}

void WritePageModel::sendRequest() {
    if (!isComplete()) {
        box("Error: Data are missing. Please fill Data !!");
        return;
    }
    complete();
    display();
    resetLink();
    if (isOpen()) {
        putText("txtReceiveWData", "");
        if (isTicked("chkRandomWrite")) {
            fillRandom();
            complete();
            display();
        }
    }
    sendAndWait(octets(length() + 6), 7);
    setEnabled("txtWriteTimerValue", true);
}

PageModel::Shown WritePageModel::shown() const {
    Shown shown = MasterModel::shown();
    shown["gridWriteData.rows"] = std::to_string(rows_ - 1);
    std::string cells;
    for (const auto& [position, text] : cells_) {
        if (!text.empty()) {
            cells += std::to_string(position / columns) + "," + std::to_string(position % columns) + "=" +
                     text + "|";
        }
    }
    shown["gridWriteData.cells"] = cells;
    if (isOverlong()) {
        shown.erase("gridWriteData.cells"); // what a count that is not offered leaves in the grid is open
    }
    std::string headings;
    for (int column = 0; column < columns; ++column) {
        headings += (bits() ? "Bit" : "+") + std::to_string(column) + "|";
    }
    shown["gridWriteData.headings"] = headings;
    shown["frmWriteWord"] = dialog_ ? "yes" : "no";
    if (dialog_) {
        shown["txtWordWrite"] = dialog_->text;
        shown["chkWWHex.ticked"] = dialog_->hexadecimal ? "yes" : "no";
    }
    return shown;
}

} // namespace varda::walks
