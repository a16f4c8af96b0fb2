#pragma once

#include "walks/arithmetic.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace varda::walks {

/// One thing that a user, the far end or the clock does.
struct Action {
    std::string verb;
    std::string control;
    std::string text;
};

/// A line of an action list, as a replay reads it.
std::string printed(const Action& action);

/// What a page should show and send. A model is told what happens and is asked afterwards; what it does not
/// know it does not name.
class PageModel {
public:
    using Shown = std::map<std::string, std::string>;

    PageModel() = default;
    PageModel(const PageModel&) = delete;
    PageModel& operator=(const PageModel&) = delete;
    virtual ~PageModel() = default;

    /// What a walk begins with, once the window stands.
    virtual std::vector<Action> beginning() const { return {}; }
    virtual Action draw(std::mt19937& engine) const = 0;
    /// Whether somebody could do this now; what cannot be done is left out.
    virtual bool isPossible(const Action& action) const = 0;
    virtual void apply(const Action& action) = 0;
    /// What the window shows, by name: "cbRLength", "cbRLength.items", "cmdRDSend.enabled".
    virtual Shown shown() const = 0;

    std::vector<Octets> takeSent() { return std::exchange(sent_, {}); }
    std::vector<std::string> takeBoxes() { return std::exchange(boxes_, {}); }

protected:
    void send(Octets octets) { sent_.push_back(std::move(octets)); }
    /// A box on the screen; the same one does not queue twice while it is unanswered.
    void box(const std::string& text) {
        if (std::find(queued_.begin(), queued_.end(), text) == queued_.end()) {
            queued_.push_back(text);
        }
    }
    void error(int number) { box("error " + std::to_string(number)); }
    /// The user answers what is on the screen.
    void answerBoxes() {
        boxes_.insert(boxes_.end(), queued_.begin(), queued_.end());
        queued_.clear();
    }

private:
    std::vector<Octets> sent_;
    std::vector<std::string> queued_;
    std::vector<std::string> boxes_;
};

} // namespace varda::walks
