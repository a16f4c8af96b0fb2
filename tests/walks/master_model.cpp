#include "walks/master_model.h"

#include <utility>

namespace varda::walks {

namespace {

constexpr int silentTicks = 12;

std::string joined(const std::vector<std::string>& items) {
    std::string line;
    for (const std::string& item : items) {
        line += item + '|';
    }
    return line;
}

const char* yesNo(bool value) { return value ? "yes" : "no"; }

/// The octets that answer() sends.
std::string answerText(int count) {
    std::string text;
    for (int place = 0; place < count; ++place) {
        text += hex((place * 37 + count) % 256, 2) + " ";
    }
    return text;
}

} // namespace

MasterModel::MasterModel(MasterNames names) : names_(std::move(names)), period_(names_.startPeriod) {
    for (const std::string* const list : {&names_.kind, &names_.number, &names_.bit, &names_.count}) {
        if (!list->empty()) {
            items_[*list] = {};
            texts_[*list] = "";
        }
    }
    for (const std::string* const field :
         {&names_.request, &names_.answer, &names_.status, &names_.received}) {
        texts_[*field] = "";
    }
    texts_[names_.destination] = texts_[names_.source] = "255";
    texts_["txtTotalData"] = texts_["txtCurrentData"] = texts_["txtWatchDog"] = "0";
    texts_["cmdPortOpen"] = "Open Port";
    enabled_["cmdPortOpen"] = false;
    enabled_["cmdCommTest"] = true;
    enabled_[names_.period] = true;
    ticked_[names_.continuous] = false;
}

std::string MasterModel::text(const std::string& control) const {
    const auto found = texts_.find(control);
    return found == texts_.end() ? std::string() : found->second;
}

bool MasterModel::isEnabled(const std::string& control) const {
    const auto found = enabled_.find(control);
    return found == enabled_.end() || found->second;
}

bool MasterModel::isTicked(const std::string& control) const {
    const auto found = ticked_.find(control);
    return found != ticked_.end() && found->second;
}

bool MasterModel::isStation(const std::string& control) const {
    return control == names_.destination || control == names_.source;
}

void MasterModel::setText(const std::string& control, const std::string& text) {
    if (texts_[control] != text) {
        texts_[control] = text;
        handleChange(control);
    }
}

void MasterModel::editText(const std::string& control, const std::string& text) {
    const bool stays = texts_[control].empty() && text.empty();
    texts_[control] = text;
    if (!stays) {
        handleChange(control);
    }
}

void MasterModel::handleChange(const std::string& control) {
    if (isStation(control)) {
        stationChanged(control);
    } else {
        changed(control);
    }
}

void MasterModel::handleKey(const std::string& control) {
    if (isStation(control)) {
        stationChanged(control);
    } else if (control != names_.period) {
        keyPressed(control);
    }
}

void MasterModel::handleClick(const std::string& control) { handleChange(control); }

void MasterModel::moveFocus(const std::string& control) {
    if (focus_ == control) {
        return;
    }
    if (isStation(focus_)) {
        stationChanged(focus_);
    }
    period_.interrupt();
    focus_ = control;
}

void MasterModel::typeOver(const std::string& control, const std::string& keys) {
    bool marked = true;
    for (const char key : keys) {
        const std::string before = text(control);
        handleKey(control);
        if (control == names_.period) {
            period_.key(key);
        } else {
            marked = marked && text(control) == before;
            editText(control, (marked ? std::string() : text(control)) + key);
        }
        marked = false;
        answerBoxes();
    }
}

bool MasterModel::isPossible(const Action& action) const {
    const std::string& verb = action.verb;
    if (verb == "answer") {
        return open_;
    }
    if (verb == "tick") {
        return timerRuns_;
    }
    if (verb == "visit") {
        return true;
    }
    if (isOwnActionPossible(action)) {
        return true;
    }
    if (!isEnabled(action.control) || (action.control == names_.bit && !bits_)) {
        return false;
    }
    if (verb == "choose") {
        const auto& offered = items_.at(action.control);
        return std::find(offered.begin(), offered.end(), action.text) != offered.end();
    }
    return verb == "click" || verb == "clicks" || texts_.count(action.control) != 0 ||
           action.control == names_.period;
}

void MasterModel::apply(const Action& action) {
    const std::string& verb = action.verb;
    const std::string& control = action.control;
    if (verb == "answer") {
        answer(std::stoi(action.text));
    } else if (verb == "tick") {
        tick();
    } else if (verb == "visit") {
        visit();
    } else if (isOwnActionPossible(action)) {
        applyOwn(action);
    } else if (verb == "click") {
        press(control);
    } else if (verb == "clicks") {
        for (int left = std::stoi(action.text); left > 0; --left) {
            press(control);
            answerBoxes();
        }
    } else {
        moveFocus(control);
        if (control == names_.period && verb != "type") {
            period_.interrupt();
        }
        if (verb == "choose") {
            setText(control, action.text);
            handleClick(control);
        } else if (verb == "type") {
            period_.mark();
            typeOver(control, action.text);
        } else if (verb == "put" || verb == "clear") {
            if (control == names_.period) {
                period_.put(action.text);
            } else {
                editText(control, action.text);
            }
        } else if (verb == "back") {
            handleKey(control);
            if (control == names_.period) {
                period_.toEnd();
                period_.backspace();
            } else if (!text(control).empty()) {
                setText(control, text(control).substr(0, text(control).size() - 1));
            }
        } else if (verb == "enter" || verb == "escape") {
            handleKey(control);
        }
    }
    if (control == names_.period && verb != "enter" && verb != "escape") {
        interval_ = period_.interval();
        timerRuns_ = true;
    }
    answerBoxes();
}

void MasterModel::press(const std::string& control) {
    if (control == names_.request || isStation(control)) {
        moveFocus(control);
        handleChange(control);
        return;
    }
    moveFocus(control);
    if (control == "cmdCommTest") {
        tested_ = true;
        setEnabled("cmdPortOpen", true);
    } else if (control == "cmdPortOpen") {
        openOrClose();
    } else if (control == names_.bitOption || control == names_.wordOption) {
        if (bits_ != (control == names_.bitOption)) {
            chooseOption(control == names_.bitOption);
        }
    } else if (control == names_.continuous) {
        setTicked(control, !isTicked(control));
    } else if (control == names_.sendButton) {
        sendRequest();
    } else {
        pressed(control);
    }
}

void MasterModel::chooseOption(bool bits) {
    bits_ = bits;
    optionChosen();
}

void MasterModel::openOrClose() {
    open_ = !open_;
    putText("cmdPortOpen", open_ ? "Close Port" : "Open Port");
    setEnabled("cmdCommTest", !open_);
    setEnabled(names_.period, !open_);
    setEnabled(open_ ? names_.opens : names_.closes, open_);
    timerRuns_ = open_;
    if (open_) {
        interval_ = period_.interval();
    }
    if (open_ && names_.mode == 0) {
        stationChanged(names_.destination);
        stationChanged(names_.source);
    }
}

void MasterModel::visit() {
    moveFocus("");
    setTicked(names_.continuous, false);
    bits_ = true;
    modeEntered();
}

void MasterModel::resetLink() {
    if (open_) {
        expected_ = waitTicks_ = 0;
        status().clear();
    }
}

void MasterModel::sendAndWait(const Octets& octets, int expected) {
    if (!open_) {
        status() = "Port Closed";
        return;
    }
    send(octets);
    expected_ = expected;
    answered_ = false;
    waiting_ = true;
    forget("txtTotalData"); // shown at the next tick at the latest
    forget("txtCurrentData");
    forget("txtWatchDog");
}

void MasterModel::answer(int count) {
    putText("txtWatchDog", "0");
    know("txtWatchDog");
    waitTicks_ = 0;
    if (count == expected_) {
        putText(names_.received, "Data Receive OK !!");
        putText(names_.answer, answerText(count));
    }
    answered_ = true;
    waiting_ = false;
    putText("txtCurrentData", std::to_string(count));
    putText("txtTotalData", std::to_string(expected_));
    know("txtTotalData");
    know("txtCurrentData");
}

void MasterModel::tick() {
    know("txtTotalData");
    know("txtCurrentData");
    putText("txtTotalData", std::to_string(expected_));
    putText("txtCurrentData", "0");
    if (waiting_) {
        ++waitTicks_;
        putText("txtWatchDog", std::to_string(waitTicks_));
        know("txtWatchDog");
    }
    if (waitTicks_ > silentTicks) {
        waitTicks_ = expected_ = 0;
        answered_ = waiting_ = false;
        putText(names_.silence, "No Answer From PLC");
        putText("txtWatchDog", "0");
        putText("txtTotalData", "0");
    }
    if (answered_) {
        answered_ = false;
        expected_ = 0;
        putText("txtTotalData", "0");
    }
    const auto fields = repeatFields();
    const bool filled =
        std::none_of(fields.begin(), fields.end(), [this](const auto& name) { return text(name).empty(); });
    if (isTicked(names_.continuous) && filled && (names_.repeatsWhileWaiting || !waiting_)) {
        sendRequest();
    }
}

bool MasterModel::isComplete() const {
    return !text(names_.kind).empty() && !text(names_.number).empty() &&
           (!bits_ || !text(names_.bit).empty());
}

std::vector<std::string> MasterModel::repeatFields() const {
    std::vector<std::string> fields = {names_.destination, names_.source, names_.kind, names_.number};
    if (!names_.count.empty()) {
        fields.push_back(names_.count);
    }
    if (bits_) {
        fields.push_back(names_.bit);
    }
    return fields;
}

PageModel::Shown MasterModel::shown() const {
    Shown shown;
    for (const auto& [name, text] : texts_) {
        if (unknown_.count(name) == 0) {
            shown[name] = text;
        }
    }
    for (const auto& [name, items] : items_) {
        if (unknown_.count(name + ".items") == 0) {
            shown[name + ".items"] = joined(items);
        }
    }
    for (const auto& [name, enabled] : enabled_) {
        if (unknown_.count(name + ".enabled") == 0) {
            shown[name + ".enabled"] = yesNo(enabled);
        }
    }
    for (const auto& [name, ticked] : ticked_) {
        shown[name + ".ticked"] = yesNo(ticked);
    }
    shown[names_.bit + ".visible"] = shown[names_.bitPoint + ".visible"] = yesNo(bits_);
    shown[names_.bitOption + ".ticked"] = yesNo(bits_);
    shown[names_.wordOption + ".ticked"] = yesNo(!bits_);
    shown[names_.period] = period_.text();
    shown["tmrComm"] = std::string(timerRuns_ ? "runs " : "stands ") + std::to_string(interval_);
    return shown;
}

} // namespace varda::walks
