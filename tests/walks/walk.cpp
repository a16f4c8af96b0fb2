#include "walks/walk.h"

#include "walks/walk_window.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iostream>
#include <sstream>

namespace varda::walks {

std::string printed(const Action& action) {
    return action.verb + '\t' + action.control + '\t' + action.text + '\n';
}

namespace {

using Actions = std::vector<Action>;
constexpr std::uint_fast32_t dataSeed = 4711;

int setting(const char* name, int otherwise) {
    const char* const value = std::getenv(name);
    return value == nullptr ? otherwise : std::atoi(value);
}

std::string printed(const std::vector<std::string>& boxes) {
    std::string line;
    for (const std::string& box : boxes) {
        line += "[" + box + "]";
    }
    return line;
}

std::string printed(const std::vector<Octets>& frames) {
    std::string line;
    for (const Octets& frame : frames) {
        for (const std::uint8_t octet : frame) {
            line += hex(octet, 2) + " ";
        }
        line += "/ ";
    }
    return line;
}

std::string different(const std::string& name, const std::string& expected, const std::string& actual) {
    return expected == actual
               ? ""
               : "  " + name + "\n    expected: " + expected + "\n    actual:   " + actual + '\n';
}

/// A window and its model, side by side.
class Pair {
public:
    explicit Pair(const Page& page) : window_(page.mode, dataSeed), model_(page.makeModel(dataSeed)) {
        difference_ = compare();
    }

    const PageModel& model() const { return *model_; }
    const std::string& difference() const { return difference_; }

    /// Whether the action was possible.
    bool take(const Action& action) {
        if (!model_->isPossible(action)) {
            return false;
        }
        model_->apply(action);
        difference_ = performed(action);
        difference_ += compare();
        return true;
    }

private:
    std::string performed(const Action& action) {
        try {
            window_.perform(action);
        } catch (const std::exception& error) {
            return std::string("  ") + error.what() + '\n';
        }
        return {};
    }
    std::string compare() {
        const auto sent = window_.takeSent();
        std::string difference =
            different("boxes", printed(model_->takeBoxes()), printed(window_.takeBoxes())) +
            different("sent", printed(model_->takeSent()), printed(sent));
        for (const auto& [name, expected] : model_->shown()) {
            difference += different(name, expected, window_.shown(name));
        }
        for (const Octets& frame : sent) {
            const std::size_t length = frame.size() < 4 ? 0 : frame[3] + std::size_t{6};
            if (!hasRightCrc(frame, length)) {
                difference += "  wrong check: " + printed(std::vector<Octets>{frame}) + '\n';
            }
        }
        return difference;
    }

    WalkWindow window_;
    std::unique_ptr<PageModel> model_;
    std::string difference_;
};

/// Takes the actions up to the first difference, which it returns; `actions` is cut there.
std::string taken(const Page& page, Actions& actions) {
    Pair pair(page);
    for (std::size_t step = 0; step < actions.size() && pair.difference().empty(); ++step) {
        pair.take(actions[step]);
        if (!pair.difference().empty()) {
            actions.resize(step + 1);
        }
    }
    return pair.difference();
}

/// Leaves out of a list that shows a difference what it does not need.
void shorten(const Page& page, Actions& actions) {
    for (std::size_t length = actions.size() / 2; length > 0; length /= 2) {
        for (std::size_t begin = 0; begin + length <= actions.size();) {
            Actions fewer = actions;
            const auto from = fewer.begin() + static_cast<std::ptrdiff_t>(begin);
            fewer.erase(from, from + static_cast<std::ptrdiff_t>(length));
            if (taken(page, fewer).empty()) {
                begin += length;
            } else {
                actions = fewer;
            }
        }
    }
}

void report(const Page& page, Actions actions, const std::string& where) {
    const std::size_t step = actions.size();
    shorten(page, actions);
    std::string list;
    for (const Action& action : actions) {
        list += printed(action);
    }
    const std::string difference = taken(page, actions);
    ADD_FAILURE() << where << ", step " << step << '\n'
                  << "-- actions, shortened; VARDA_WALK_REPLAY names a file of them\n"
                  << list << "-- difference\n"
                  << difference;
}

bool walkOnce(const Page& page, std::uint_fast32_t seed) {
    Pair pair(page);
    std::mt19937 engine(seed);
    Actions actions;
    const auto take = [&](const Action& action) {
        if (pair.take(action)) {
            actions.push_back(action);
        }
        return pair.difference().empty();
    };
    bool same = pair.difference().empty();
    if (engine() % 8 != 0) {
        for (const Action& action : pair.model().beginning()) {
            same = same && take(action);
        }
    }
    for (int step = setting("VARDA_WALK_STEPS", 60); same && step > 0; --step) {
        same = take(pair.model().draw(engine));
    }
    if (!same) {
        report(page, actions, "seed " + std::to_string(seed));
    }
    return same;
}

Actions readActions(const char* path) {
    Actions actions;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        std::istringstream fields(line);
        Action action;
        std::getline(fields, action.verb, '\t');
        std::getline(fields, action.control, '\t');
        std::getline(fields, action.text, '\t');
        actions.push_back(action);
    }
    return actions;
}

} // namespace

void walk(const Page& page, int share) {
    if (const char* const path = std::getenv("VARDA_WALK_REPLAY")) {
        Actions actions = readActions(path);
        if (!taken(page, actions).empty()) {
            report(page, actions, path);
        }
        return;
    }
    if (const int seed = setting("VARDA_WALK_SEED", 0); seed != 0) {
        walkOnce(page, static_cast<std::uint_fast32_t>(seed));
        return;
    }
    const int walks = std::max(1, setting("VARDA_WALKS", 200) / share);
    const auto first = static_cast<std::uint_fast32_t>(setting("VARDA_WALK_FIRST_SEED", 1));
    std::cout << "seeds " << first << " .. " << first + static_cast<unsigned>(walks) - 1 << '\n';
    int differences = 0;
    for (int round = 0; round < walks && differences < setting("VARDA_WALK_DIFFERENCES", 3); ++round) {
        differences += walkOnce(page, first + static_cast<unsigned>(round)) ? 0 : 1;
    }
}

} // namespace varda::walks
