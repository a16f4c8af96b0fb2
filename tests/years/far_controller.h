#pragma once

#include "core/base/clock.h"
#include "core/base/runtime_error.h"
#include "core/virtual/controller.h"
#include "years/cable.h"
#include "years/findings.h"
#include "years/sky.h"

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace varda::years {

/// The embedded controller at the far end of a cable: it takes what came in for a request once the line has
/// been quiet for a moment, and thinks before it answers.
class FarController {
public:
    FarController(HandClock& clock, Sky& sky, Cable& cable, Controller& controller)
        : clock_(clock), sky_(sky), cable_(cable), controller_(controller) {}
    FarController(const FarController&) = delete;
    FarController& operator=(const FarController&) = delete;
    ~FarController() = default;

    void attach() {
        isWanted_ = true;
        connect();
    }
    void detach() {
        isWanted_ = false;
        again_.cancel();
        settling_.cancel();
        answers_.clear();
        line_.reset();
    }
    bool isAttached() const { return isWanted_; }
    std::uint64_t answered() const { return answered_; }

private:
    using Milliseconds = std::chrono::milliseconds;

    static constexpr Milliseconds quiet{20};
    static constexpr Milliseconds repair{1000};
    static constexpr int longestThought = 5;

    void connect() {
        line_ = cable_.makeLine(1);
        line_->setEventHandler([this](CommEvent event, const std::string& /*reason*/) {
            if (event == CommEvent::HungUp) {
                connectLater();
            } else {
                settle();
            }
        });
        try {
            line_->open({});
        } catch (const RuntimeError&) {
            connectLater();
        }
    }

    void connectLater() {
        settling_.cancel();
        again_ = clock_.after(repair, [this] { connect(); });
    }

    void settle() {
        const auto pieces = cable_.onWire(2 * static_cast<std::size_t>(sky_.weather.chunk));
        settling_ = clock_.after(quiet + std::chrono::ceil<Milliseconds>(pieces), [this] { takeRequest(); });
    }

    void takeRequest() {
        Bytes request;
        try {
            request = line_->read().bytes;
        } catch (const RuntimeError&) {
            line_->discard(); // else it would be the beginning of the next one
            return;
        }
        auto answer = controller_.answer(request);
        if (!answer || sky_.strikes(&Weather::silence)) {
            return;
        }
        int thought = sky_.random.below(longestThought + 1);
        if (sky_.strikes(&Weather::late)) {
            thought += sky_.random.below(sky_.weather.lateBy + 1);
        }
        std::erase_if(answers_, [](const Wait& wait) { return !wait.isPending(); });
        answers_.push_back(
            clock_.after(Milliseconds(thought), [this, bytes = std::move(*answer)] { send(bytes); }));
    }

    void send(const Bytes& answer) {
        ++answered_;
        try {
            line_->write(answer);
        } catch (const RuntimeError&) {
            return;
        }
    }

    HandClock& clock_;
    Sky& sky_;
    Cable& cable_;
    Controller& controller_;
    std::unique_ptr<Line> line_;
    bool isWanted_ = false;
    Wait again_;
    Wait settling_;
    std::vector<Wait> answers_;
    std::uint64_t answered_ = 0;
};

} // namespace varda::years
