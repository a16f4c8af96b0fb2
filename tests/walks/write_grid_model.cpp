#include "walks/write_page_model.h"

#include <utility>

namespace varda::walks {

namespace {

constexpr int columns = 16;
constexpr std::size_t dataBegin = 6;

} // namespace

void WritePageModel::layGrid() {
    const auto before = std::exchange(cells_, {});
    if (text("cbWLength") == "0") {
        rows_ = 18;
    } else if (text("cbWRegister").empty() || text("cbWRegAddress").empty()) {
        rows_ = count() / columns + 2;
    } else {
        if (text("cbWRegBit").empty()) {
            startBit();
        }
        rows_ = (number16(text("cbWRegBit")).value + count() - 1) / columns + 2;
    }
    if (counting_) {
        hexadecimalCells_.clear();
    } else {
        showCells(before);
    }
}

void WritePageModel::startBit() {
    laying_ = true;
    setText("cbWRegBit", "1");
    laying_ = false;
}

void WritePageModel::showCells(const std::map<int, std::string>& before) {
    const int begin = bits() ? number16(text("cbWRegBit")).value : 0;
    const int points =
        (static_cast<int>(length()) - 2) / (bits() ? 1 : 2); // of the image, whose data is shown
    const int cells = columns * (rows_ - 1);
    for (int point = 0; bits() && !text("cbWRegBit").empty() && point < points; ++point) {
        const bool isOn = image_.at(dataBegin + static_cast<std::size_t>(point)) == "FF";
        if (isOn && begin + point < cells) {
            cells_[begin + point] = "ON";
        }
    }
    for (int word = 0; !bits() && word < cells; ++word) {
        const std::size_t place = dataBegin + 2 * static_cast<std::size_t>(word);
        const int value = hexNumber(image_.at(place + 1) + image_.at(place)).value;
        const auto shown = before.find(word);
        const bool typed = shown != before.end() && !shown->second.empty();
        const bool hexadecimal = hexadecimalCells_.count(word) != 0;
        if (typed && (hexadecimal ? hexNumber(shown->second) : number32(shown->second)).value == value) {
            cells_[word] = shown->second; // as it was typed
        } else if (value != 0 && word < points) {
            cells_[word] = std::to_string(value);
            hexadecimalCells_.erase(word);
        }
    }
}

bool WritePageModel::checkCell(int position) {
    if (text("cbWLength").empty()) {
        status() = "Fill Register, Address, Length"; // the check goes on
    }
    const Number first = number16(text(bits() ? "cbWRegBit" : "cbWRegAddress"));
    if (!first) {
        error(first.error);
        return false;
    }
    const int begin = first.value;
    const bool valid = position >= begin && position < begin + count();
    status() = valid ? "" : "Invalid Range !!";
    return valid;
}

void WritePageModel::cellClicked(int position) {
    if (!isComplete() || !checkCell(position)) {
        return;
    }
    if (!bits()) {
        const bool isEmpty = cells_[position].empty();
        const bool hexadecimal = isEmpty ? usesHexadecimal_ : hexadecimalCells_.count(position) != 0;
        dialog_ = Dialog{position, cells_[position], hexadecimal};
        return;
    }
    const auto entry =
        static_cast<std::size_t>(static_cast<int>(dataBegin) + position - number16(text("cbWRegBit")).value);
    std::string& cell = cells_[position];
    if (cell == "ON") {
        cell = "";
        image_.at(entry) = "00";
    } else {
        cell = "ON";
        image_.at(entry) = "FF";
    }
    complete();
    display();
}

void WritePageModel::endDialog(const std::string& how) {
    const Dialog dialog = *dialog_;
    if (how == "Escape") {
        dialog_.reset();
        return;
    }
    const Number value = dialog.hexadecimal ? hexNumber(dialog.text) : number32(dialog.text);
    if (value.error == 13) {
        error(13);
        return;
    }
    if (!value || value.value > 65535) {
        status() = "Rage Over (0 to 65535)";
        cells_.erase(dialog.position);
        return;
    }
    const std::string digits = hex(value.value, 4);
    const std::size_t entry = dataBegin + 2 * static_cast<std::size_t>(dialog.position);
    image_.at(entry) = digits.substr(2, 2);
    image_.at(entry + 1) = digits.substr(0, 2);
    cells_[dialog.position] = dialog.text;
    usesHexadecimal_ = dialog.hexadecimal; // an empty cell begins with it
    hexadecimalCells_.erase(dialog.position);
    if (dialog.hexadecimal) {
        hexadecimalCells_.insert(dialog.position);
    }
    complete();
    display();
    dialog_.reset();
}

} // namespace varda::walks
