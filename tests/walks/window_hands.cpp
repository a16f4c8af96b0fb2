#include "walks/window_hands.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QMessageBox>
#include <QTabBar>
#include <QTabWidget>

#include <sstream>

namespace varda::window_model {
namespace {

constexpr int placeOfM = 2; // among the kinds of every list

std::string digits(const Bytes& bytes) {
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += "0123456789ABCDEF"[byte / 16];
        text += "0123456789ABCDEF"[byte % 16];
    }
    return text;
}

Bytes bytesOf(const std::string& text) {
    Bytes bytes;
    for (std::size_t at = 0; at + 1 < text.size(); at += 2) {
        bytes.push_back(static_cast<std::uint8_t>(std::stoi(text.substr(at, 2), nullptr, 16)));
    }
    return bytes;
}

} // namespace

void WindowHands::press(const std::string& button) { window_.click(button); }

void WindowHands::perform(const Action& action) {
    const auto& [verb, target, value] = action;
    if (verb == "advance") {
        window_.advance(std::stoi(value));
    } else if (verb == "deliver") {
        window_.farEnd().deliver(bytesOf(value));
    } else if (verb == "flood") {
        for (int burst = 0; burst < std::stoi(value); ++burst) {
            window_.farEnd().deliver({0x2A});
            window_.advance(100);
        }
    } else if (verb == "press" || verb == "toggle" || verb == "option") {
        press(target);
    } else if (verb == "box") {
        window_.answerBox(value);
    } else if (verb == "mode") {
        press("optMode_" + value);
    } else if (verb == "tab") {
        window_.clickTab(std::stoi(value));
    } else if (verb == "fill") {
        fill(target, value);
    } else if (verb == "choose") {
        window_.choose(target, std::stoi(value));
    } else if (verb == "type") {
        window_.type(target, value);
    } else if (verb == "paste") {
        window_.paste(target, value);
    } else if (verb == "line") {
        window_.clickLine(target, std::stoi(value));
    } else if (verb == "double") {
        window_.doubleClickLine(target, std::stoi(value));
    } else if (verb == "write") {
        writeFile(target, value);
    } else if (verb == "log") {
        answerDialog("cmdMonLogFile", value);
    } else {
        const std::string what = target == "simulator" ? "SimPacket" : "Scenario";
        answerDialog((verb == "save" ? "cmdSave" : "cmdLoad") + what, value);
    }
    QCoreApplication::processEvents();
    takeWritten();
}

void WindowHands::takeWritten() {
    written_.clear();
    for (const auto& [time, bytes] : window_.farEnd().takeWritten()) {
        written_ += std::to_string(time.count()) + " " + digits(bytes) + "\n";
    }
}

void WindowHands::answerDialog(const std::string& button, const std::string& file) {
    if (window_.find(button)->isEnabled() && window_.find(button)->isVisible()) {
        press(button);
        window_.chooseFile(file);
    }
}

void WindowHands::writeFile(const std::string& name, const std::string& value) {
    std::istringstream words(value);
    std::string total;
    std::string line;
    words >> total;
    std::getline(words >> std::ws, line);
    test::writeBytes(window_.folder().file(name),
                     "[Information]\r\nTotal=" + total + "\r\n[Receive]\r\n0=" + line +
                         "\r\n[Send]\r\n0=" + line + "\r\n[Scenario]\r\nScenario0=" + line + "\r\n");
}

void WindowHands::fillSingle(const std::string& prefix, int number, int count, bool word) {
    window_.choose(prefix == "cbR" ? "cbRegister" : prefix + "Register", placeOfM);
    window_.choose(prefix == "cbR" ? "cbRegAddress" : prefix + "RegAddress", number);
    if (!word) {
        window_.choose(prefix == "cbR" ? "cbRegBit" : prefix + "RegBit", number % 16);
    }
    if (prefix != "cbMW") {
        window_.choose(prefix == "cbM" ? "cbMRLength" : prefix + "Length", count - 1);
    }
}

void WindowHands::fill(const std::string& page, const std::string& how) {
    std::istringstream words(how);
    std::string access;
    int number = 0;
    int count = 0;
    words >> access >> number >> count;
    const bool word = access == "word";
    static const std::map<std::string, Lines> names = {{"read", {"optRead_", "cbR", ""}},
                                                       {"write", {"optWrite_", "cbW", ""}},
                                                       {"mixed read", {"optMRead_", "cbM", "cmdMRAdd"}},
                                                       {"mixed write", {"optMWrite_", "cbMW", "cmdMWAdd"}}};
    const Lines& of = names.at(page);
    const QWidget* const option = window_.find(of[0] + "0");
    if (!option->isEnabled() || !option->isVisible()) {
        return;
    }
    press(of[0] + (word ? "1" : "0"));
    fillSingle(of[1], number, count, word);
    if (page == "mixed write" && word) {
        window_.paste("txtMWData", "1234");
    }
    if (!of[2].empty()) {
        press(of[2]);
    }
}

std::string WindowHands::seeBox() {
    const QMessageBox* const box = window_.box();
    return box == nullptr ? "" : box->windowTitle().toStdString() + ": " + box->text().toStdString();
}

std::string WindowHands::logText(const std::string& file) {
    std::string text = test::bytesOf(window_.folder().file(file));
    for (std::size_t end = 0; (end = text.find("\r\n", end)) != std::string::npos; ++end) {
        text.erase(end, 1); // the end of a line; a received CR stays, with a space behind it
    }
    return text;
}

std::string WindowHands::shown(const std::string& name) {
    if (name == "box") {
        return seeBox();
    }
    if (name == "written") {
        return written_;
    }
    if (name == "mode") {
        const int index = window_.find<QTabWidget>("tabMode")->currentIndex();
        const bool agree = window_.find<QAbstractButton>("optMode_" + std::to_string(index))->isChecked();
        return agree ? std::to_string(index) : "option and tab differ";
    }
    if (name == "line.settings") {
        return window_.farEnd().settings();
    }
    if (name.rfind("log.", 0) == 0) {
        return logText(name.substr(4));
    }
    const std::size_t dot = name.find('.');
    return seeControl(name.substr(0, dot), name.substr(dot + 1));
}

std::string WindowHands::seeControl(const std::string& name, const std::string& what) {
    if (name == "tabMode") {
        return window_.find<QTabWidget>("tabMode")->tabBar()->isEnabled() ? "1" : "0";
    }
    if (name == "txtMonLogFile" && what == "text") {
        const std::string path = window_.text(name);
        const std::string folder = window_.folder().file("");
        return path.rfind(folder, 0) == 0 ? path.substr(folder.size()) : path;
    }
    if (what == "text") {
        return window_.text(name);
    }
    if (what == "enabled") {
        return window_.find(name)->isEnabled() ? "1" : "0";
    }
    if (what == "visible") {
        return window_.find(name)->isHidden() ? "0" : "1";
    }
    if (what == "ticked") {
        return window_.find<QAbstractButton>(name)->isChecked() ? "1" : "0";
    }
    return what == "selected" ? std::to_string(window_.selectedLine(name))
                              : inShort(window_.entryCount(name),
                                        [this, &name](int row) { return window_.entry(name, row); });
}

} // namespace varda::window_model
