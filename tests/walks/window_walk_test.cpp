#include "walks/window_hands.h"
#include "walks/world.h"

#include <gtest/gtest.h>

namespace varda::window_model {
namespace {

/// Draws the next step of a walk from what the model shows.
using DrawStep = std::function<Action(const World& world, Draw& draw)>;

/// The whole window, whose steps are drawn as a subject has them.
class WindowModel : public walks::Model {
public:
    explicit WindowModel(DrawStep drawStep) : drawStep_(std::move(drawStep)) {}

    Action draw(std::mt19937& engine) const override {
        Draw draw(engine);
        return drawStep_(world_, draw);
    }
    void apply(const Action& action) override { world_.apply(action); }
    Observation expected() override { return world_.expected(); }

private:
    World world_;
    DrawStep drawStep_;
};

/// A box holds everything up but time and the line.
std::optional<Action> beforeABox(const World& world, Draw& draw) {
    if (!world.asks() || draw.once(5)) {
        return std::nullopt;
    }
    const bool isQuestion = static_cast<bool>(world.boxes.front().yes);
    return Action{"box", "", !isQuestion ? "OK" : draw.once(2) ? "Yes" : "No"};
}

/// Time and traffic, which no box stops.
Action outside(Draw& draw) {
    return draw.once(3) ? Action{"deliver", "", "0102"}
                        : Action{"advance", "", draw.oneOf<std::string>({"1", "100", "150", "500"})};
}

/// A step of the subject's; one of the boxes' where one is shown.
DrawStep stepOf(const std::function<Action(const World&, Draw&)>& subject) {
    return [subject](const World& world, Draw& draw) {
        if (world.asks()) {
            const auto answer = beforeABox(world, draw);
            return answer ? *answer : outside(draw);
        }
        return subject(world, draw);
    };
}

void walk(std::uint32_t firstSeed, int steps, const DrawStep& subject) {
    walks::walk({[] { return std::make_unique<WindowHands>(); },
                 [subject] { return std::make_unique<WindowModel>(stepOf(subject)); }, firstSeed, steps});
}

Action openPort(const World& world) {
    return {"press", world.desk.isEnabled("cmdPortOpen") ? "cmdPortOpen" : "cmdCommTest", ""};
}

} // namespace

TEST(WindowWalk, Link) {
    walk(1000, 80, [](const World& world, Draw& draw) {
        return draw.once(25)  ? world.modes.draw(draw)
               : draw.once(3) ? world.master.draw(draw)
                              : world.link.draw(draw);
    });
}

TEST(WindowWalk, Simulator) {
    walk(2000, 80, [](const World& world, Draw& draw) -> Action {
        if (!world.link.isOpen && draw.once(3)) {
            return openPort(world);
        }
        if (world.modes.shown() != 4) {
            return {"mode", "", draw.once(10) ? "0" : "4"};
        }
        return draw.once(40)   ? world.modes.draw(draw)
               : draw.once(60) ? world.link.draw(draw)
                               : world.simulator.draw(draw);
    });
}

TEST(WindowWalk, Scenario) {
    walk(3000, 80, [](const World& world, Draw& draw) -> Action {
        if (!world.link.isOpen && draw.once(3)) {
            return openPort(world);
        }
        return draw.once(25)  ? world.modes.draw(draw)
               : draw.once(4) ? world.master.draw(draw)
               : draw.once(4) ? world.link.draw(draw)
                              : world.scenario.draw(draw);
    });
}

TEST(WindowWalk, Monitor) {
    walk(4000, 80, [](const World& world, Draw& draw) -> Action {
        if (!world.link.isOpen && draw.once(3)) {
            return openPort(world);
        }
        if (world.modes.shown() != 5) {
            return draw.once(3) ? world.master.draw(draw) : Action{"mode", "", "5"};
        }
        return draw.once(25)  ? world.modes.draw(draw)
               : draw.once(3) ? world.link.draw(draw)
                              : world.monitor.draw(draw);
    });
}

TEST(WindowWalk, Modes) {
    walk(5000, 60, [](const World& world, Draw& draw) -> Action {
        switch (draw.below(8)) {
        case 0:
            return world.link.draw(draw);
        case 1:
            return world.master.draw(draw);
        case 2:
            return world.modes.shown() == 4 ? world.simulator.draw(draw) : world.modes.draw(draw);
        case 3:
            return world.modes.shown() == 5 ? world.monitor.draw(draw) : world.scenario.draw(draw);
        case 4:
            return openPort(world);
        default:
            return world.modes.draw(draw);
        }
    });
}

} // namespace varda::window_model
