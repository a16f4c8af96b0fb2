#include "walks/window_walk.h"

#include "walks/window_hands.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <optional>
#include <sstream>

namespace varda::window_model {
namespace {

int fromEnvironment(const char* name, int otherwise) {
    const char* const text = std::getenv(name);
    return text == nullptr ? otherwise : std::atoi(text);
}

/// Whether VARDA_WALK_LEAVE_OUT names the key, between commas: for walking on behind a difference that is
/// known.
bool isLeftOut(const std::string& key) {
    const char* const names = std::getenv("VARDA_WALK_LEAVE_OUT");
    return names != nullptr && ("," + std::string(names) + ",").find("," + key + ",") != std::string::npos;
}

/// The window and the model side by side.
class Pair {
public:
    World& world() { return world_; }

    /// What differs after one more step; empty where nothing does.
    std::string doStep(const Action& action) {
        world_.apply(action);
        std::string difference;
        try {
            hands_.apply(action);
            difference = compare();
        } catch (const std::exception& error) {
            difference = error.what();
        }
        return difference;
    }

private:
    std::string compare() {
        std::ostringstream differences;
        for (const auto& [key, expected] : world_.expected()) {
            const std::string actual = hands_.see(key);
            if (actual != expected && !isLeftOut(key)) {
                differences << key << "\n  expected: " << expected << "\n  actual:   " << actual << "\n";
            }
        }
        return differences.str();
    }

    World world_;
    WindowHands hands_;
};

/// What differs at the end of these steps, or earlier.
std::string replay(const std::vector<Action>& actions) {
    Pair pair;
    for (const Action& action : actions) {
        std::string difference = pair.doStep(action);
        if (!difference.empty()) {
            return difference;
        }
    }
    return {};
}

std::vector<Action> without(const std::vector<Action>& actions, std::size_t from, std::size_t count) {
    std::vector<Action> rest(actions.begin(), actions.begin() + static_cast<std::ptrdiff_t>(from));
    const std::size_t end = std::min(actions.size(), from + count);
    rest.insert(rest.end(), actions.begin() + static_cast<std::ptrdiff_t>(end), actions.end());
    return rest;
}

/// The key that differs first.
std::string firstKey(const std::string& difference) { return difference.substr(0, difference.find('\n')); }

/// Leaves out what the difference does not need.
std::vector<Action> shrink(std::vector<Action> actions, const std::string& difference) {
    for (std::size_t part = std::max<std::size_t>(1, actions.size() / 2); part > 0; part /= 2) {
        for (std::size_t from = 0; from < actions.size();) {
            const std::vector<Action> fewer = without(actions, from, part);
            if (firstKey(replay(fewer)) == firstKey(difference)) {
                actions = fewer;
            } else {
                from += part;
            }
        }
    }
    return actions;
}

std::string listed(const std::vector<Action>& actions) {
    std::string all;
    for (const Action& action : actions) {
        all += "    " + action.print() + "\n";
    }
    return all;
}

void walkOnce(std::uint32_t seed, int steps, const DrawStep& drawStep) {
    Draw draw(seed);
    Pair pair;
    std::vector<Action> actions;
    for (int step = 0; step < steps; ++step) {
        actions.push_back(drawStep(pair.world(), draw));
        const std::string difference = pair.doStep(actions.back());
        if (!difference.empty()) {
            const std::vector<Action> fewest = shrink(actions, difference);
            ADD_FAILURE() << "seed " << seed << ", step " << step << "\n"
                          << difference << "  after\n"
                          << listed(actions) << "  the fewest steps to it\n"
                          << listed(fewest) << replay(fewest);
            return;
        }
    }
}

void replayFile(const std::string& path) {
    std::ifstream stream(path);
    std::vector<Action> actions;
    for (std::string line; std::getline(stream, line);) {
        actions.push_back(Action::parse(line.substr(line.find_first_not_of(' '))));
    }
    EXPECT_EQ(replay(actions), "") << listed(actions);
}

} // namespace

void walk(std::uint32_t firstSeed, int steps, const DrawStep& drawStep) {
    if (const char* const file = std::getenv("VARDA_WALK_ACTIONS")) {
        replayFile(file);
        return;
    }
    const auto first =
        static_cast<std::uint32_t>(fromEnvironment("VARDA_WALK_SEED", static_cast<int>(firstSeed)));
    const int walks = fromEnvironment("VARDA_WALKS", 200);
    const int length = fromEnvironment("VARDA_WALK_STEPS", steps);
    std::cout << "seeds " << first << " .. " << first + static_cast<std::uint32_t>(walks) - 1 << ", "
              << length << " steps each\n";
    for (int number = 0; number < walks && !testing::Test::HasFailure(); ++number) {
        walkOnce(first + static_cast<std::uint32_t>(number), length, drawStep);
    }
}

} // namespace varda::window_model
