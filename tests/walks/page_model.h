#pragma once

#include "walks/arithmetic.h"
#include "walks/walk.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace varda::walks {

/// What was sent and what boxes stood on the screen, as walks compare them.
std::string printed(const std::vector<Octets>& frames);
std::string printed(const std::vector<std::string>& boxes);

/// What a page should show and send.
class PageModel : public Model {
public:
    using Shown = Observation;

    /// What most walks begin with.
    virtual std::vector<Action> opening() const { return {}; }
    std::vector<Action> beginning(std::mt19937& engine) const final {
        return engine() % 8 != 0 ? opening() : std::vector<Action>();
    }
    /// What the window shows, by name: "cbRLength", "cbRLength.items", "cmdRDSend.enabled".
    virtual Shown shown() const = 0;
    Observation expected() final;

protected:
    void send(Octets octets) { sent_.push_back(std::move(octets)); }
    /// A box on the screen; the same one does not queue twice while it is unanswered.
    void box(const std::string& text) {
        if (std::find(queued_.begin(), queued_.end(), text) == queued_.end()) {
            queued_.push_back(text);
        }
    }
    void error(int number) {
        box("error " + std::to_string(number));
        erred_ = true;
    }
    /// Whether an error was reported since the last call.
    bool takeErred() { return std::exchange(erred_, false); }
    /// The user answers what is on the screen.
    void answerBoxes() {
        boxes_.insert(boxes_.end(), queued_.begin(), queued_.end());
        queued_.clear();
    }

private:
    bool erred_ = false;
    std::vector<Octets> sent_;
    std::vector<std::string> queued_;
    std::vector<std::string> boxes_;
};

} // namespace varda::walks
