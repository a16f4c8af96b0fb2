#include "walks/period_walk_model.h"

#include <utility>

namespace varda::walks {

PeriodWalkModel::PeriodWalkModel(std::string field, std::string neighbour, const std::string& start)
    : field_(std::move(field)), neighbour_(std::move(neighbour)), period_(start) {}

Action PeriodWalkModel::draw(std::mt19937& engine) const {
    static const std::vector<std::string> pasted = {"50", "100", "250", "40000", "x", "1234", "99", "-1"};
    switch (engine() % 20) {
    case 0:
        return {"mark", field_, ""};
    case 1:
        return {"put", field_, pasted[engine() % pasted.size()]};
    case 2:
        return {"backspace", field_, ""};
    case 3:
        return {"delete", field_, ""};
    case 4:
        return {"left", field_, ""};
    case 5:
        return {"end", field_, ""};
    case 6:
        return {"leave", field_, neighbour_};
    case 7:
        return {"key", field_, std::string(1, "abx-"[engine() % 4])};
    case 8:
        return {engine() % 2 == 0 ? "up" : "down", field_, engine() % 2 == 0 ? "Ctrl" : ""};
    case 9:
        return {"wheel", field_, engine() % 2 == 0 ? "1" : "-1"};
    case 10:
        return {engine() % 2 == 0 ? "enter" : "home", field_, ""};
    default:
        return {"key", field_, std::string(1, "0123456789"[engine() % (engine() % 2 == 0 ? 10 : 3)])};
    }
}

bool PeriodWalkModel::isPossible(const Action& action) const { return action.control == field_; }

void PeriodWalkModel::apply(const Action& action) {
    const std::string before = period_.text();
    const std::string& verb = action.verb;
    if (verb == "key") {
        period_.key(action.text[0]);
    } else if (verb == "put") {
        period_.put(action.text);
    } else if (verb == "backspace") {
        period_.backspace();
    } else if (verb == "delete") {
        period_.erase();
    } else if (verb == "left") {
        period_.move(period_.caret() == 0 ? 0 : period_.caret() - 1);
    } else if (verb == "home") {
        period_.move(0);
    } else if (verb == "end") {
        period_.toEnd();
    } else if (verb == "mark") {
        period_.mark();
    } else if (verb == "up" || verb == "down") {
        period_.step((verb == "up" ? 10 : -10) * (action.text.empty() ? 1 : 10));
    } else if (verb == "wheel") {
        period_.step(10 * std::stoi(action.text));
    } else if (verb == "leave") {
        period_.move(period_.isMarked() ? period_.text().size()
                                        : period_.caret()); // a field that is left unmarks
    } else {
        period_.interrupt(); // another key
    }
    altered_ = altered_ || (verb != "mark" && verb != "left" && verb != "home" && verb != "end" &&
                            verb != "leave" && verb != "enter" && before != period_.text());
}

PageModel::Shown PeriodWalkModel::shown() const {
    Shown shown = {{field_, period_.text()}, {field_ + ".caret", std::to_string(period_.caret())}};
    if (period_.isMarked()) {
        shown.erase(field_ + ".caret");
    }
    if (altered_) {
        shown["tmrComm"] = "runs " + std::to_string(period_.interval());
    }
    return shown;
}

} // namespace varda::walks
