#include "walks/walk.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>

namespace varda::walks {

std::string printed(const Action& action) {
    return action.verb + '|' + action.control + '|' + action.text + '\n';
}

namespace {

using Actions = std::vector<Action>;

std::string setting(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string() : value;
}

int setting(const char* name, int otherwise) {
    const std::string value = setting(name);
    return value.empty() ? otherwise : std::atoi(value.c_str());
}

/// A window and its model, side by side.
class Pair {
public:
    explicit Pair(const Subject& subject) : hands_(subject.makeHands()), model_(subject.makeModel()) {
        compare();
    }

    const Model& model() const { return *model_; }
    bool differs() const { return !difference_.empty(); }
    const std::string& difference() const { return difference_; }
    /// The name that differs first.
    std::string firstName() const { return difference_.substr(0, difference_.find('\n')); }

    /// Whether the action was possible.
    bool take(const Action& action) {
        if (!model_->isPossible(action)) {
            return false;
        }
        model_->apply(action);
        try {
            hands_->perform(action);
            compare();
        } catch (const std::exception& error) {
            difference_ += std::string("  ") + error.what() + '\n';
        }
        return true;
    }

private:
    void compare() {
        const std::string leftOut = "," + setting("VARDA_WALK_LEAVE_OUT") + ",";
        for (const auto& [name, expected] : model_->expected()) {
            const std::string actual = hands_->shown(name);
            if (actual != expected && leftOut.find("," + name + ",") == std::string::npos) {
                difference_.append("  ").append(name).append("\n    expected: ").append(expected);
                difference_.append("\n    actual:   ").append(actual).append("\n");
            }
        }
    }

    std::unique_ptr<Hands> hands_;
    std::unique_ptr<Model> model_;
    std::string difference_;
};

/// The pair at the end of these actions, or at the first difference.
Pair taken(const Subject& subject, const Actions& actions) {
    Pair pair(subject);
    for (auto action = actions.begin(); action != actions.end() && !pair.differs(); ++action) {
        pair.take(*action);
    }
    return pair;
}

/// Leaves out of a list that shows a difference what it does not need.
Actions shortened(const Subject& subject, Actions actions, const std::string& name) {
    for (std::size_t length = std::max<std::size_t>(1, actions.size() / 2); length > 0; length /= 2) {
        for (std::size_t begin = 0; begin + length <= actions.size();) {
            Actions fewer = actions;
            const auto from = fewer.begin() + static_cast<std::ptrdiff_t>(begin);
            fewer.erase(from, from + static_cast<std::ptrdiff_t>(length));
            if (taken(subject, fewer).firstName() == name) {
                actions = fewer;
            } else {
                begin += length;
            }
        }
    }
    return actions;
}

void report(const Subject& subject, const Actions& actions, const std::string& where) {
    const Actions fewest = shortened(subject, actions, taken(subject, actions).firstName());
    std::string list;
    for (const Action& action : fewest) {
        list += printed(action);
    }
    ADD_FAILURE() << where << ", step " << actions.size() << '\n'
                  << "-- actions, shortened; VARDA_WALK_REPLAY names a file of them\n"
                  << list << "-- difference\n"
                  << taken(subject, fewest).difference();
}

/// How a walk ended.
struct Walked {
    std::size_t actions;
    bool differs;
};

Walked walkOnce(const Subject& subject, std::uint32_t seed) {
    Pair pair(subject);
    std::mt19937 engine(seed);
    Actions actions;
    const auto take = [&](const Action& action) {
        if (!pair.differs() && pair.take(action)) {
            actions.push_back(action);
        }
    };
    for (const Action& action : pair.model().beginning(engine)) {
        take(action);
    }
    for (int left = setting("VARDA_WALK_STEPS", subject.steps); left > 0 && !pair.differs(); --left) {
        take(pair.model().draw(engine));
    }
    if (pair.differs()) {
        report(subject, actions, "seed " + std::to_string(seed));
    }
    return {actions.size(), pair.differs()};
}

Actions readActions(const std::string& path) {
    Actions actions;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        std::istringstream fields(line);
        Action action;
        std::getline(fields, action.verb, '|');
        std::getline(fields, action.control, '|');
        std::getline(fields, action.text);
        actions.push_back(action);
    }
    return actions;
}

} // namespace

void walk(const Subject& subject) {
    if (const std::string path = setting("VARDA_WALK_REPLAY"); !path.empty()) {
        const Actions actions = readActions(path);
        if (taken(subject, actions).differs()) {
            report(subject, actions, path);
        }
        return;
    }
    if (const int seed = setting("VARDA_WALK_SEED", 0); seed != 0) {
        walkOnce(subject, static_cast<std::uint32_t>(seed));
        return;
    }
    const int walks = std::max(1, setting("VARDA_WALKS", 200) / subject.share);
    const auto first =
        static_cast<std::uint32_t>(setting("VARDA_WALK_FIRST_SEED", static_cast<int>(subject.firstSeed)));
    std::cout << "seeds " << first << " .. " << first + static_cast<unsigned>(walks) - 1 << std::flush;
    std::size_t actions = 0;
    int differences = 0;
    for (int round = 0; round < walks && differences < setting("VARDA_WALK_DIFFERENCES", 3); ++round) {
        const Walked walked = walkOnce(subject, first + static_cast<unsigned>(round));
        actions += walked.actions;
        differences += walked.differs ? 1 : 0;
    }
    std::cout << ": " << actions << " actions\n";
}

} // namespace varda::walks
