#include "walks/world.h"

#include <sstream>

namespace varda::window_model {
namespace {

constexpr int firstNumberOfM = 192; // every filling names a register of this kind

std::uint8_t low(int value) { return static_cast<std::uint8_t>(value & 0xFF); }
std::uint8_t high(int value) { return static_cast<std::uint8_t>((value >> 8) & 0xFF); }

int addressOf(bool word, int number) {
    return word ? firstNumberOfM + number : (firstNumberOfM + number) * 16 + number % 16;
}

Octets finished(Octets frame) {
    for (const std::uint8_t octet : check(frame)) {
        frame.push_back(octet);
    }
    return frame;
}

bool isMixed(const Page& page) { return page.bitMode == page.wordMode; }

} // namespace

PagesModel::PagesModel(World& world) : world_(world) {
    Desk& desk = world_.desk;
    for (const Page& page : pages()) {
        fillings_[page.name] = {};
        desk.tick(page.again, false);
        desk.enable(page.again, true);
        desk.enable(page.send, page.name != "read");
        desk.enable(page.period, true);
        desk.show(page.period, page.name == "mixed write" ? "100" : "500");
        desk.show(page.status, "");
        desk.show(page.answer, "");
    }
}

void PagesModel::chooseAccess(const Page& page, bool word) {
    Filling& filling = fillings_.at(page.name);
    if (filling.word == word) {
        return; // a click on the option in front
    }
    filling.word = word;
    filling.complete = false;
    world_.link.enterMode(word ? page.wordMode : page.bitMode);
}

void PagesModel::fill(const Page& page, const std::string& how) {
    std::istringstream words(how);
    std::string access;
    Filling& filling = fillings_.at(page.name);
    words >> access;
    chooseAccess(page, access == "word");
    words >> filling.number >> filling.count;
    filling.complete = true;
    filling.address = addressOf(filling.word, filling.number);
    if (isMixed(page)) {
        addMixedLine(page, filling);
        return;
    }
    world_.desk.show(page.request, hexText(singleRequest(page), " "));
}

void PagesModel::addMixedLine(const Page& page, Filling& filling) const {
    const int address = filling.address;
    const bool read = page.name == "mixed read";
    const int items = read ? filling.count : 1;
    for (int item = 0; item < items; ++item) {
        // A bit beyond the word's last makes the text longer; what is taken from it stays in its place.
        const std::string text =
            filling.word
                ? padHex(address + item, 4)
                : padHex(address / 16, 3) + padHex(address % 16 + item, 1 + (address % 16 + item) / 16);
        const int highOctet = std::stoi(text.substr(0, 2), nullptr, 16);
        filling.lines.push_back(low(std::stoi(text.substr(2, 2), nullptr, 16)));
        filling.lines.push_back(low(highOctet | (filling.word ? 0x40 : 0)));
    }
    filling.answer += filling.word ? 2 * filling.count : filling.count;
    if (!read) {
        filling.lines.push_back(filling.word ? 0x34 : 0xFF);
        if (filling.word) {
            filling.lines.push_back(0x12);
        }
    }
    ++filling.lineCount;
}

Octets PagesModel::singleRequest(const Page& page) const {
    const Filling& filling = fillings_.at(page.name);
    const int address = filling.address;
    const int code = filling.word ? page.wordMode : page.bitMode;
    if (page.name == "read") {
        return finished({0xFF, 0xFF, low(code), 3, low(address), high(address), low(filling.count)});
    }
    const int data = filling.word ? 2 * filling.count : filling.count;
    Octets frame = {0xFF, 0xFF, low(code), low(data + 2), low(address), high(address)};
    frame.insert(frame.end(), static_cast<std::size_t>(data), 0);
    return finished(frame);
}

Octets PagesModel::mixedRequest(const Page& page) {
    Filling& filling = fillings_.at(page.name);
    Octets frame = {0xFF, 0xFF, low(page.bitMode), low(static_cast<int>(filling.lines.size()))};
    frame.insert(frame.end(), filling.lines.begin(), filling.lines.end());
    frame = finished(frame);
    filling.image.resize(513);
    std::copy(frame.begin(), frame.end(), filling.image.begin());
    world_.desk.show(page.request, hexText(frame, " "));
    frame.push_back(filling.image.at(frame.size())); // one more than the frame has
    return frame;
}

int PagesModel::expectedAnswer(const Page& page) const {
    const Filling& filling = fillings_.at(page.name);
    if (page.name == "read") {
        return (filling.word ? 2 * filling.count : filling.count) + 6;
    }
    return page.name == "mixed read" ? filling.answer + 6 : 7;
}

/// What switching the page off and on around a send leaves behind.
void PagesModel::switchAround(const Page& page) {
    if (page.name == "read") {
        world_.modes.enableRead(true);
    } else if (page.name == "write") {
        world_.modes.enableWrite(true);
    } else {
        world_.scenario.enableButtons();
    }
}

void PagesModel::send(const Page& page) {
    if (!isFilled(page)) {
        world_.showBox({"Error", "Data are missing. Please fill Data !!", {}, {}});
        return;
    }
    const Octets frame = isMixed(page) ? mixedRequest(page) : singleRequest(page);
    if (!isMixed(page)) {
        world_.desk.show(page.request, hexText(frame, " "));
    }
    if (page.name != "write" || world_.link.isOpen) {
        world_.desk.show(page.answer, "");
    }
    if (world_.link.isOpen) {
        world_.desk.show(page.status, "");
        world_.link.sendRequest(frame, expectedAnswer(page));
    } else {
        world_.desk.show(page.status, "Port Closed");
    }
    switchAround(page);
}

void PagesModel::changePeriod(const std::string& field, const std::string& text) {
    Desk& desk = world_.desk;
    if (!world_.isUsable(field)) {
        return;
    }
    int period = 500;
    if (text.find_first_not_of("0123456789") == std::string::npos && !text.empty() &&
        std::stoi(text) <= 32767) {
        period = std::max(100, std::stoi(text));
    }
    desk.show(field, std::to_string(period));
    world_.link.timer.stop();
    world_.link.timer.setInterval(period);
    world_.link.timer.start();
}

void PagesModel::enterMode(int index) {
    const Page& page = pages().at(static_cast<std::size_t>(index));
    Desk& desk = world_.desk;
    Filling& filling = fillings_.at(page.name);
    filling.word = false;
    filling.complete = false;
    desk.tick(page.again, false);
    if (page.name == "read") {
        desk.show(page.request, hexText(singleRequest(page), " "));
    } else if (page.name == "write") {
        desk.show(page.request, hexText(finished({0xFF, 0xFF, 0x22, 3, 0, 0, 0}), " "));
    }
    if (world_.link.isOpen || page.name == "write" || page.name == "mixed write") {
        desk.enable(page.send, world_.link.isOpen);
    }
}

Action PagesModel::draw(Draw& draw) const {
    const auto shown = static_cast<std::size_t>(world_.modes.shown());
    if (shown >= pages().size()) {
        return {"mode", "", std::to_string(draw.below(4))};
    }
    const Page& page = pages()[shown];
    switch (draw.below(6)) {
    case 0: {
        const bool word = draw.once(2);
        if (isMixed(page) && fillings_.at(page.name).lineCount >= 4) {
            break;
        }
        return {"fill", page.name,
                std::string(word ? "word " : "bit ") + std::to_string(draw.below(30)) + " " +
                    std::to_string(1 + draw.below(9))};
    }
    case 1:
        return {"toggle", page.again, ""};
    case 2:
        return {"paste", page.period,
                draw.oneOf<std::string>({"100", "50", "150", "500", "abc", "250", "1000"})};
    default:
        break;
    }
    return {"press", page.send, ""};
}

} // namespace varda::window_model
