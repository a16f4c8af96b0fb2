#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

/// Random walks: drawn steps done to the real window and to a model of it, and compared after each.
namespace varda::walks {

/// A step of a walk: one thing that a user, the far end or the clock does.
struct Action {
    std::string verb;
    std::string control;
    std::string text;
};

/// A line of an action list, "choose|cbSimReg|3", as a replay reads it.
std::string printed(const Action& action);

/// What is seen, or expected to be, by name: "cmdRDSend.enabled" -> "yes".
using Observation = std::map<std::string, std::string>;

/// What should be seen. A model is told what happens and is asked afterwards; what it does not know it does
/// not name.
class Model {
public:
    Model() = default;
    Model(const Model&) = delete;
    Model& operator=(const Model&) = delete;
    virtual ~Model() = default;

    /// What a walk begins with, once the window stands.
    virtual std::vector<Action> beginning(std::mt19937& /*engine*/) const { return {}; }
    virtual Action draw(std::mt19937& engine) const = 0;
    /// Whether somebody could do this now; what cannot be done is left out.
    virtual bool isPossible(const Action& /*action*/) const { return true; }
    virtual void apply(const Action& action) = 0;
    /// All that is to be seen now, and what has happened since the last call.
    virtual Observation expected() = 0;
};

/// Does the actions to the real window.
class Hands {
public:
    Hands() = default;
    Hands(const Hands&) = delete;
    Hands& operator=(const Hands&) = delete;
    virtual ~Hands() = default;

    virtual void perform(const Action& action) = 0;
    /// What is seen by a name of the model's.
    virtual std::string shown(const std::string& name) = 0;
};

/// What walks are taken on: a new window and a new model of it for each, and what the walks are without being
/// told.
struct Subject {
    std::function<std::unique_ptr<Hands>()> makeHands;
    std::function<std::unique_ptr<Model>()> makeModel;
    std::uint32_t firstSeed = 1;
    int steps = 60;
    int share = 1; ///< the number of walks is divided by this
};

/// Takes walks and reports the first difference of each with its seed and the shortest list of actions that
/// still shows it. VARDA_WALKS sets the number of walks, VARDA_WALK_STEPS their length, VARDA_WALK_FIRST_SEED
/// the first one's seed, VARDA_WALK_DIFFERENCES after how many differences to end, VARDA_WALK_SEED the one
/// walk to take, VARDA_WALK_REPLAY a file of actions to take instead, VARDA_WALK_LEAVE_OUT the names, between
/// commas, that are not compared: for walking on behind a difference that is known.
void walk(const Subject& subject);

} // namespace varda::walks
