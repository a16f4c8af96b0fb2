#pragma once

#include "monkey/peer.h"
#include "monkey/witness.h"

#include <QTimer>

#include <deque>
#include <memory>
#include <string>
#include <vector>

class QAbstractButton;
class QAbstractItemView;
class QFileDialog;
class QWidget;

namespace varda::monkey {

/// Plays with the real widgets of the whole program: presses, types, pastes, chooses, scrolls and strikes
/// keys wherever something is to be seen, opens and closes windows, lets time pass, and lets the far end of
/// the line do what it likes.
///
/// Everything follows from the seed. Two rules keep it on its own ground: files are chosen from the window's
/// own folder alone, and no other program can be started.
class Monkey {
public:
    explicit Monkey(std::uint64_t seed);
    Monkey(const Monkey&) = delete;
    Monkey& operator=(const Monkey&) = delete;
    Monkey(Monkey&&) = delete;
    Monkey& operator=(Monkey&&) = delete;
    ~Monkey();

    /// One action. @return what does not fit together afterwards; empty where all does
    std::string act();
    /// The same without an action.
    std::string look() { return witness_->finding(); }

    test::DrivenWindow& window() { return *window_; }
    /// The last actions, a line each.
    std::string story() const;

private:
    struct Action;
    static const std::vector<Action>& actions();
    void live();
    void leaveLoop();
    void awaitDoctor();
    const Action& drawAction();
    template <typename Widget>
    Widget* draw();
    template <typename Item>
    Item oneOf(const std::vector<Item>& items);
    QWidget* front() const;
    bool answerDialog();
    void answerFileDialog(QFileDialog& dialog);
    void note(const std::string& what, const QWidget* widget = nullptr);

    void press();
    void choose();
    void type();
    void paste();
    void strike();
    void clickSomewhere();
    void turnWheel();
    void turnTab();
    void chooseMode();
    void workTheLine();
    void letTimePass();
    void letPeerAct();
    void openMenu();
    void clickLine();
    void closeWindow();

    Random random_;
    QTimer rescue_; ///< runs out where an action does not come back
    std::unique_ptr<Controller> controller_;
    std::unique_ptr<test::DrivenWindow> window_;
    std::unique_ptr<Witness> witness_;
    std::unique_ptr<Peer> peer_;
    std::deque<std::string> story_;
};

} // namespace varda::monkey
