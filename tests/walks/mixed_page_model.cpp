#include "walks/mixed_page_model.h"

#include <utility>

namespace varda::walks {

namespace {

constexpr int overflow = 6;
constexpr int largestOctet = 255;
constexpr int fullList = 254;

} // namespace

MixedPageModel::MixedPageModel(MasterNames names, ListNames listNames)
    : MasterModel(std::move(names)), listNames_(std::move(listNames)) {
    setEnabled(listNames_.add, true);
    setEnabled(listNames_.remove, true);
    MixedPageModel::optionChosen();
    setItems(this->names().bit, bitEntries());
}

std::vector<Action> MixedPageModel::opening() const {
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

bool MixedPageModel::isPossible(const Action& action) const {
    return !(selectionIsOpen_ && action.control == listNames_.remove) && MasterModel::isPossible(action);
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
    selectionIsOpen_ = false;
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
        selectionIsOpen_ = !lines_.empty();
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
    putText(names().request, "");
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

} // namespace varda::walks
