#include "walks/mixed_page_model.h"

namespace varda::walks {

namespace {

constexpr int wordMark = 0x40;

} // namespace

MixedWritePageModel::MixedWritePageModel()
    : MixedPageModel({3,
                      "cbMWRegister",
                      "cbMWRegAddress",
                      "cbMWRegBit",
                      "",
                      "txtMWDDA",
                      "txtMWDSA",
                      "optMWrite_0",
                      "optMWrite_1",
                      "lblMWBitPoint",
                      "cmdMWDSend",
                      "chkMWTimer",
                      "txtMWriteTimerValue",
                      "txtSendMWData",
                      "txtReceiveMWData",
                      "txtMWStatus",
                      "txtWStatus",
                      "txtWStatus",
                      "cmdMWDSend",
                      "cmdMWDSend",
                      false,
                      "100"},
                     {"lstMWWriteReg", "cmdMWAdd", "cmdMWDel", "26"}) {
    setEnabled("cmdMWDSend", false);
    setEnabled("txtMWData", true);
    setEnabled("chkHexDec", true);
    setEnabled("optMWBData_0", true);
    setEnabled("optMWBData_1", true);
    putText("txtMWData", "");
    putText("chkHexDec", "HEX");
    setTicked("chkHexDec", true);
    setTicked("optMWBData_0", true);
    setTicked("optMWBData_1", false);
}

Action MixedWritePageModel::draw(std::mt19937& engine) const {
    static const std::vector<std::string> values = {"0", "65535", "65536", "6553",        "1A2B", "1a2b",
                                                    "g", "FFFFF", "12x4",  "99999999999", "ABCDE"};
    switch (engine() % 10) {
    case 0:
    case 1:
    case 2:
        return {"click", "cmdMWAdd", ""};
    case 3:
        return {"click", "cmdMWDel", ""};
    case 4:
        return {"line", "lstMWWriteReg", std::to_string(lines() == 0 ? 0 : engine() % lines())};
    case 5:
        if (engine() % 16 == 0) {
            return {"clicks", "cmdMWAdd", std::to_string(60 + engine() % 80)};
        }
        return {"click", engine() % 2 == 0 ? "optMWBData_0" : "optMWBData_1", ""};
    case 6:
        return {"click", "chkHexDec", ""};
    case 7:
        return {engine() % 2 == 0 ? "put" : "type", "txtMWData", values[engine() % values.size()]};
    case 8:
        return {engine() % 4 == 0 ? "back" : "click", engine() % 2 == 0 ? "txtMWData" : "cmdMWAdd", ""};
    default:
        return drawCommon(
            engine, {"0", "1", "7", "12", "0003", "15", "16", "126", "253", "-1", "x", "100", "R", "r", "K"});
    }
}

void MixedWritePageModel::modeEntered() {
    MixedPageModel::modeEntered();
    setEnabled("cmdMWDSend", isOpen());
    putText("chkHexDec", "HEX");
    setTicked("chkHexDec", true);
}

void MixedWritePageModel::pressed(const std::string& control) {
    if (control == "chkHexDec") {
        setTicked(control, !isTicked(control));
        putText(control, isTicked(control) ? "HEX" : "DEC");
    } else if (control == "optMWBData_0" || control == "optMWBData_1") {
        setTicked("optMWBData_0", control == "optMWBData_0");
        setTicked("optMWBData_1", control == "optMWBData_1");
    } else {
        MixedPageModel::pressed(control);
    }
}

void MixedWritePageModel::changed(const std::string& control) {
    if (control == "txtMWData") {
        dataChanged();
    } else {
        MixedPageModel::changed(control);
    }
}

void MixedWritePageModel::cutData(const std::string& message) {
    status() = message;
    const std::string data = text("txtMWData");
    setText("txtMWData", data.substr(0, data.size() - 1));
}

void MixedWritePageModel::dataChanged() {
    const bool hexadecimal = isTicked("chkHexDec");
    std::string data = text("txtMWData");
    if (hexadecimal) {
        std::transform(data.begin(), data.end(), data.begin(),
                       [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
        putText("txtMWData", data);
    }
    const Number value = hexadecimal ? hexNumber(data) : number32(data);
    if (data.empty()) {
        return;
    }
    if (data.find_first_not_of(hexadecimal ? "0123456789ABCDEF" : "0123456789") != std::string::npos) {
        cutData("Invalid Data");
    } else if (!value || value.value > 65535) {
        cutData("Range Over");
    }
}

std::string MixedWritePageModel::newLine() {
    if (!isComplete()) {
        return {};
    }
    const std::string name = text("cbMWRegister") + text("cbMWRegAddress");
    if (bits()) {
        return "BIT\t" + name + "." + text("cbMWRegBit") + "\t" + (isTicked("optMWBData_0") ? "ON" : "OFF");
    }
    const std::string data = text("txtMWData");
    if (isTicked("chkHexDec")) {
        return "WORD\t" + name + "\t" + data;
    }
    const Number value = number32(data);
    if (!value) {
        error(value.error);
        return {};
    }
    return "WORD\t" + name + "\t" + hex(value.value);
}

bool MixedWritePageModel::countPoint(const Point& point, int& sum) { return addTo(sum, point.isBit ? 1 : 2); }

bool MixedWritePageModel::pointLength(const Point& point, int& sum) {
    return addTo(sum, point.isBit ? 3 : 4);
}

bool MixedWritePageModel::buildPoint(const Point& point) {
    const Number bit = point.isBit ? number16(point.bit) : Number{};
    const Number value = point.isBit ? Number{} : hexNumber(point.last);
    int word = 0;
    if (!address(point, word)) {
        return false;
    }
    if (!bit || !value) {
        error(!bit ? bit.error : value.error);
        return false;
    }
    const int size = point.isBit ? 3 : 4;
    if (length() + size > (point.isBit ? 252 : 251)) {
        return true; // left out without a word
    }
    const std::string digits = point.isBit ? bitAddress(word, bit.value) : wordAddress(word);
    const int high = hexNumber(digits.substr(0, 2)).value;
    put(length() + 4, digits.substr(2, 2));
    put(length() + 5, hex(point.isBit ? high : high | wordMark, 2));
    if (point.isBit) {
        put(length() + 6, point.last == "ON" ? "FF" : "00");
    } else {
        const std::string data = lastCharacters("0000" + point.last, 4);
        put(length() + 6, data.substr(2, 2));
        put(length() + 7, data.substr(0, 2));
    }
    return grow(size);
}

} // namespace varda::walks
