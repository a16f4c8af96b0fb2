#include "walks/mixed_page_model.h"

#include <utility>

namespace varda::walks {

namespace {

constexpr int overflow = 6;
constexpr int largestOctet = 255;
constexpr int fullList = 254;
constexpr int wordMark = 0x40;

} // namespace

MixedPageModel::MixedPageModel(MasterNames names, ListNames listNames)
    : MasterModel(std::move(names)), listNames_(std::move(listNames)) {
    setEnabled(listNames_.add, true);
    setEnabled(listNames_.remove, true);
    MixedPageModel::optionChosen();
    setItems(this->names().bit, bitEntries());
}

std::vector<Action> MixedPageModel::beginning() const {
    return {{"click", "cmdCommTest", ""}, {"click", "cmdPortOpen", ""}};
}

void MixedPageModel::changed(const std::string& control) {
    if (control == names().bit && (text(names().kind).empty() || text(names().number).empty())) {
        putText(control, "");
    }
    if (control == names().count && !number16(text(control))) {
        putText(control, "");
    }
    if (control != names().kind) {
        return;
    }
    const auto numbers = numberEntries(text(control));
    putText(names().number, "");
    putText(names().bit, "");
    setItems(names().number, numbers);
    setItems(names().bit, numbers.empty() ? std::vector<std::string>() : bitEntries());
}

void MixedPageModel::optionChosen() {
    setItems(names().kind, kindEntries(bits()));
    setItems(names().number, {});
    for (const std::string& list : {names().kind, names().number, names().bit}) {
        putText(list, "");
    }
    if (!names().count.empty()) {
        setItems(names().count, countEntries(bits() ? 256 : 128));
        putText(names().count, "");
    }
}

void MixedPageModel::modeEntered() {
    optionChosen();
    setItems(names().bit, bitEntries());
    length_ = 0;
    put(3, "00");
}

void MixedPageModel::pressed(const std::string& control) {
    if (control == listNames_.add) {
        add();
    } else if (control == listNames_.remove) {
        remove();
    }
}

bool MixedPageModel::isOwnActionPossible(const Action& action) const {
    return action.verb == "line" && std::stoul(action.text) < lines_.size();
}

void MixedPageModel::applyOwn(const Action& action) {
    moveFocus(listNames_.list);
    select(std::stoul(action.text));
}

MixedPageModel::Point MixedPageModel::cut(const std::string& line) {
    Point point;
    const auto first = line.find('\t');
    const auto last = line.rfind('\t');
    const std::string name = line.substr(first + 1, last - first - 1);
    const auto dot = name.find('.');
    point.isBit = line[0] == 'B';
    point.kind = name.substr(0, 1);
    point.number = name.substr(1, point.isBit ? dot - 1 : std::string::npos);
    point.bit = point.isBit ? name.substr(dot + 1) : "";
    point.last = line.substr(last + 1);
    return point;
}

bool MixedPageModel::address(const Point& point, int& word) {
    const Number number = number16(point.number);
    if (!number) {
        error(number.error);
        return false;
    }
    word = baseOf(point.isBit, point.kind) + number.value;
    if (word > 32767) {
        error(overflow);
        return false;
    }
    return true;
}

bool MixedPageModel::addTo(int& sum, int octets) {
    sum += octets;
    if (sum < 0 || sum > largestOctet) {
        error(overflow);
        return false;
    }
    return true;
}

bool MixedPageModel::grow(int octets) { return addTo(length_, octets); }

void MixedPageModel::select(std::size_t line) {
    selected_ = static_cast<int>(line);
    selectionKnown_ = true;
    setEnabled(listNames_.remove, true);
}

bool MixedPageModel::countLines(int& sum) {
    for (std::size_t line = 0; line < lines_.size(); ++line) {
        select(line);
        if (!countPoint(cut(lines_[line]), sum)) {
            return false;
        }
    }
    return true;
}

void MixedPageModel::add() {
    const std::string line = newLine();
    int sum = 0;
    if (!line.empty() && countLines(sum) && sum < fullList) {
        lines_.push_back(line);
    }
}

void MixedPageModel::remove() {
    if (selectionKnown_ && selected_ >= 0) {
        lines_.erase(lines_.begin() + selected_);
        selected_ = -1;
        selectionKnown_ = false;
    }
    setEnabled(listNames_.remove, false);
}

bool MixedPageModel::build() {
    length_ = 0;
    for (std::size_t line = 0; line < lines_.size(); ++line) {
        select(line);
        if (!buildPoint(cut(lines_[line]))) {
            return false;
        }
    }
    return true;
}

bool MixedPageModel::makeHeader() {
    for (const bool destination : {true, false}) {
        const Number station = number16(text(destination ? names().destination : names().source));
        const bool valid = station && station.value >= 0 && station.value <= largestOctet;
        put(destination ? 0 : 1, valid ? hex(station.value) : "00");
    }
    put(2, listNames_.command);
    int sum = 0;
    for (const std::string& line : lines_) {
        if (!pointLength(cut(line), sum)) {
            return false;
        }
    }
    length_ = sum == length_ ? length_ : 0;
    put(3, hex(length_, 2));
    const unsigned check = crc(octets(length_ + 4), static_cast<std::size_t>(length_) + 4);
    put(length_ + 4, hex(static_cast<int>(check & 0xFFU), 2));
    put(length_ + 5, hex(static_cast<int>(check >> 8U), 2));
    return true;
}

Octets MixedPageModel::octets(int count) const {
    Octets octets;
    for (int place = 0; place < count; ++place) {
        octets.push_back(
            static_cast<std::uint8_t>(hexNumber(image_.at(static_cast<std::size_t>(place))).value));
    }
    return octets;
}

void MixedPageModel::display() {
    std::string shown;
    for (int place = 0; place < length_ + 6; ++place) {
        shown += image_.at(static_cast<std::size_t>(place)) + " ";
    }
    putText(names().request, shown);
}

void MixedPageModel::stationChanged(const std::string& /*control*/) {
    if (makeHeader()) {
        display();
    }
}

void MixedPageModel::sendRequest() {
    if (!isComplete()) {
        box("Error: Data are missing. Please fill Data !!");
        return;
    }
    if (!build() || !makeHeader()) {
        return;
    }
    display();
    putText(names().answer, "");
    resetLink();
    int sum = 0;
    if (countLines(sum)) {
        sendAndWait(octets(length_ + 7), expectedLength(sum));
    }
}

PageModel::Shown MixedPageModel::shown() const {
    Shown shown = MasterModel::shown();
    std::string lines;
    for (const std::string& line : lines_) {
        lines += line + '|';
    }
    shown[listNames_.list + ".items"] = lines;
    if (selectionKnown_) {
        shown[listNames_.list + ".selected"] = std::to_string(selected_);
    }
    return shown;
}

MixedReadPageModel::MixedReadPageModel()
    : MixedPageModel({2,
                      "cbMRegister",
                      "cbMRegAddress",
                      "cbMRegBit",
                      "cbMRLength",
                      "txtMRDDA",
                      "txtMRDSA",
                      "optMRead_0",
                      "optMRead_1",
                      "lblMRBitPoint",
                      "cmdMRDSend",
                      "chkMRTimer",
                      "txtMReadTimerValue",
                      "txtSendMRData",
                      "txtReceiveMRData",
                      "txtMRStatus",
                      "txtWStatus",
                      "txtMRStatus",
                      "cmdRDSend",
                      "cmdMRDSend",
                      true,
                      "500"},
                     {"lstMRReadReg", "cmdMRAdd", "cmdMRDel", "25"}) {
    setEnabled("cmdRDSend", false);
    setEnabled("cmdMRDSend", true);
}

void MixedReadPageModel::modeEntered() {
    MixedPageModel::modeEntered();
    setEnabled("cmdMRAdd", true);
    setEnabled("cmdMRDel", true);
    setEnabled("cmdMRDSend", isEnabled("cmdMRDSend") || isOpen());
}

Action MixedReadPageModel::draw(std::mt19937& engine) const {
    switch (engine() % 8) {
    case 0:
    case 1:
    case 2:
        return {"click", "cmdMRAdd", ""};
    case 3:
        return {"click", "cmdMRDel", ""};
    case 4:
        return {"line", "lstMRReadReg", std::to_string(lines() == 0 ? 0 : engine() % lines())};
    case 5:
        return {"put", "cbMRLength", std::to_string(engine() % 12)};
    default:
        return drawCommon(
            engine, {"0", "1", "7", "12", "0003", "15", "16", "126", "253", "-1", "x", "100", "R", "r", "K"});
    }
}

std::string MixedReadPageModel::newLine() {
    if (!isComplete() || text("cbMRLength").empty()) {
        return {};
    }
    const std::string name = text("cbMRegister") + text("cbMRegAddress");
    return bits() ? "BIT\t" + name + "." + text("cbMRegBit") + "\t" + text("cbMRLength")
                  : "WORD\t" + name + "\t" + text("cbMRLength");
}

bool MixedReadPageModel::countPoint(const Point& point, int& sum) {
    const Number length = number16(point.last);
    if (!length) {
        error(length.error);
        return false;
    }
    return addTo(sum, point.isBit ? length.value : 2 * length.value);
}

bool MixedReadPageModel::pointLength(const Point& point, int& sum) {
    const Number length = number16(point.last);
    if (!length) {
        error(length.error);
        return false;
    }
    return addTo(sum, 2 * length.value);
}

bool MixedReadPageModel::buildPoint(const Point& point) {
    const Number count = number16(point.last);
    const Number bit = point.isBit ? number16(point.bit) : Number{};
    int word = 0;
    if (!count || !bit) {
        error(!count ? count.error : bit.error);
        return false;
    }
    if (!address(point, word)) {
        return false;
    }
    for (int place = 0; place < count.value; ++place) {
        const std::string digits =
            point.isBit ? bitAddress(word, bit.value + place) : wordAddress(word + place);
        const int high = hexNumber(digits.substr(0, 2)).value;
        put(length() + 4, digits.substr(2, 2));
        put(length() + 5, hex(point.isBit ? high : high | wordMark, 2));
        if (!grow(2)) {
            return false;
        }
    }
    return true;
}

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
