#pragma once

#include "support/far_end.h"
#include "support/manual_clock.h"
#include "walks/page_model.h"

#include "window/shell/frmVarda.h"

#include <QPointer>
#include <QTemporaryDir>
#include <QWidget>

#include <map>
#include <random>
#include <stdexcept>

namespace varda::walks {

using namespace window;

/// The main window on a line in memory, with time by hand: it does the actions of a walk by clicks and keys,
/// and tells what it shows by the names that models use.
class WalkWindow : public Hands {
public:
    /// @param mode the page that the walk belongs to
    /// @param seed of the random data
    WalkWindow(int mode, std::uint_fast32_t seed);

    void perform(const Action& action) override;
    std::string shown(const std::string& name) override;

    std::vector<Octets> takeSent();
    /// The boxes that were on the screen since the last call, in their order; each was answered at once.
    std::vector<std::string> takeBoxes() { return std::exchange(boxes_, {}); }

private:
    template <typename Control = QWidget>
    Control* find(const std::string& name) {
        auto* const control = qobject_cast<Control*>(findAny(name));
        if (control == nullptr) {
            throw std::runtime_error("no such control: " + name);
        }
        return control;
    }
    /// Looks a control up once: a walk asks for the same ones again and again.
    QWidget* findAny(const std::string& name);
    void focus(QWidget* control);
    void type(QWidget* control, const std::string& keys);
    void put(QWidget* control, const std::string& text);
    void erase(QWidget* control, bool all);
    void choose(const std::string& list, const std::string& entry);
    void click(const std::string& name);
    void press(QWidget* control, int key, bool withControl = false);
    void visit(int mode);
    void clickCell(const std::string& place);
    void useDialog(const Action& action);
    void selectLine(const std::string& list, const std::string& line);
    void answer(int count);
    std::unique_ptr<PeriodTimer> makeTimer(std::function<void()> tick);
    void tick();
    void answerBoxes();
    std::string sentFrames();
    std::string property(QWidget* control, const std::string& kind) const;

    int mode_;
    test::ManualClock clock_;
    test::FarEnd farEnd_{clock_};
    test::ManualClock timers_; ///< a tick is an action of its own, whatever time the line takes
    std::mt19937 generator_;
    QTemporaryDir folder_;
    test::ManualTimer* communicationTimer_ = nullptr;
    FrmVarda window_;
    std::map<std::string, QPointer<QWidget>> controls_;
    std::vector<std::string> boxes_;
};

} // namespace varda::walks
