#include "monkey/monkey.h"

#include "support/event_loop.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractScrollArea>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QFileDialog>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QTabBar>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>

#include <algorithm>
#include <numeric>
#include <tuple>

namespace varda::monkey {
namespace {

constexpr std::size_t storyLength = 40;

/// What people type, and what they should not.
const std::vector<QString>& texts() {
    static const std::vector<QString> all{QStringLiteral("0"),
                                          QStringLiteral("1"),
                                          QStringLiteral("255"),
                                          QStringLiteral("256"),
                                          QStringLiteral("-1"),
                                          QStringLiteral("32768"),
                                          QStringLiteral("&HFF"),
                                          QStringLiteral("FFFF"),
                                          QStringLiteral("1A2B"),
                                          QStringLiteral("COM1"),
                                          QStringLiteral("VIRTUAL"),
                                          QStringLiteral("100"),
                                          QStringLiteral("3.5"),
                                          QStringLiteral("1E9"),
                                          QStringLiteral(" "),
                                          QString(),
                                          QStringLiteral("%'\"<b>"),
                                          QStringLiteral("müßig\u65E5\U0001F600"),
                                          QStringLiteral("2A 00 05 20 01"),
                                          QStringLiteral("W 0100 >= 10"),
                                          QStringLiteral("late 5"),
                                          QString(300, QLatin1Char('9')),
                                          QStringLiteral("a\nb\tc\rd")};
    return all;
}

const std::vector<Qt::Key>& keys() {
    static const std::vector<Qt::Key> all{
        Qt::Key_Tab,      Qt::Key_Backtab, Qt::Key_Return,    Qt::Key_Escape, Qt::Key_Space, Qt::Key_Up,
        Qt::Key_Down,     Qt::Key_Left,    Qt::Key_Right,     Qt::Key_Home,   Qt::Key_End,   Qt::Key_PageUp,
        Qt::Key_PageDown, Qt::Key_Delete,  Qt::Key_Backspace, Qt::Key_Insert, Qt::Key_F1,    Qt::Key_F2,
        Qt::Key_F3,       Qt::Key_F4,      Qt::Key_F5,        Qt::Key_F6,     Qt::Key_F9,    Qt::Key_F10,
        Qt::Key_1,        Qt::Key_2,       Qt::Key_3,         Qt::Key_4,      Qt::Key_5,     Qt::Key_6,
        Qt::Key_A,        Qt::Key_C,       Qt::Key_F,         Qt::Key_O,      Qt::Key_S,     Qt::Key_V,
        Qt::Key_X,        Qt::Key_Z};
    return all;
}

bool isAtHand(const QWidget* widget) { return widget->isVisible() && widget->isEnabled(); }

/// Qt names them in the order of their addresses.
std::vector<QWidget*> shownWindows() {
    std::vector<QWidget*> shown;
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        if (window->isVisible()) {
            shown.push_back(window);
        }
    }
    std::sort(shown.begin(), shown.end(), [](const QWidget* one, const QWidget* other) {
        const auto place = [](const QWidget* window) {
            return std::make_tuple(std::string(window->metaObject()->className()), window->objectName(),
                                   window->windowTitle());
        };
        return place(one) < place(other);
    });
    return shown;
}

} // namespace

struct Monkey::Action {
    int weight;
    void (Monkey::*act)();
};

const std::vector<Monkey::Action>& Monkey::actions() {
    static const std::vector<Action> all{
        {20, &Monkey::press},      {10, &Monkey::choose},      {10, &Monkey::type},
        {4, &Monkey::paste},       {10, &Monkey::strike},      {5, &Monkey::clickSomewhere},
        {3, &Monkey::turnWheel},   {4, &Monkey::turnTab},      {4, &Monkey::chooseMode},
        {8, &Monkey::workTheLine}, {16, &Monkey::letTimePass}, {14, &Monkey::letPeerAct},
        {2, &Monkey::openMenu},    {4, &Monkey::clickLine},    {1, &Monkey::closeWindow}};
    return all;
}

Monkey::Monkey(std::uint64_t seed) : random_(seed) {
    rescue_.setInterval(20);
    QObject::connect(&rescue_, &QTimer::timeout, &rescue_, [this] { leaveLoop(); });
    qputenv("PATH", ""); // a manual's viewer or a browser would open a window for everybody to see
    live();
}

Monkey::~Monkey() = default;

/// Menus of Qt's own hold their caller up until they are closed: only here something runs meanwhile.
void Monkey::leaveLoop() {
    QWidget* const popup = QApplication::activePopupWidget();
    QWidget* const holder = popup != nullptr ? popup : QApplication::activeModalWidget();
    if (holder != nullptr) {
        note("leaves", holder);
        holder->close();
    }
}

/// A new window, as the program starts.
void Monkey::live() {
    peer_.reset();
    witness_.reset();
    window_.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    controller_ = std::make_unique<Controller>();
    window_ = std::make_unique<test::DrivenWindow>(controller_.get());
    witness_ = std::make_unique<Witness>(*window_);
    peer_ = std::make_unique<Peer>(*window_, random_);
    note("--- a new window");
}

template <typename Item>
Item Monkey::oneOf(const std::vector<Item>& items) {
    return items.at(static_cast<std::size_t>(below(random_, static_cast<int>(items.size()))));
}

const Monkey::Action& Monkey::drawAction() {
    const auto& all = actions();
    int left = below(random_, std::accumulate(all.begin(), all.end(), 0, [](int sum, const Action& action) {
                         return sum + action.weight;
                     }));
    for (const Action& action : all) {
        left -= action.weight;
        if (left < 0) {
            return action;
        }
    }
    return all.front();
}

std::string Monkey::act() {
    if (!window_->window().isVisible()) {
        live();
    }
    rescue_.start();
    if (!answerDialog()) {
        (this->*drawAction().act)();
    }
    rescue_.stop();
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    awaitDoctor();
    return witness_->finding();
}

/// The port doctor looks around in a thread of its own: what follows must not depend on when it is done.
void Monkey::awaitDoctor() {
    const auto isLooking = [this] {
        const auto* const again = window_->window().findChild<QAbstractButton*>(QStringLiteral("lookAgain"));
        return again != nullptr && again->isVisible() && !again->isEnabled();
    };
    test::runUntil([&isLooking] { return !isLooking(); });
}

std::string Monkey::story() const {
    return std::accumulate(
        story_.begin(), story_.end(), std::string(),
        [](const std::string& all, const std::string& line) { return all + "  " + line + "\n"; });
}

void Monkey::note(const std::string& what, const QWidget* widget) {
    story_.push_back(what + (widget == nullptr ? ""
                                               : " " + std::string(widget->metaObject()->className()) + " " +
                                                     widget->objectName().toStdString()));
    if (story_.size() > storyLength) {
        story_.pop_front();
    }
}

/// The window that a user has before him: the dialog that nothing can be done beside, or else any.
QWidget* Monkey::front() const {
    if (QWidget* const modal = QApplication::activeModalWidget()) {
        return modal;
    }
    if (QWidget* const popup = QApplication::activePopupWidget()) {
        return popup;
    }
    return nullptr;
}

/// Something of that kind that is to be seen, anywhere. In an order that is the same whenever the same things
/// stand there.
template <typename Widget>
Widget* Monkey::draw() {
    QWidget* const only = front();
    std::vector<Widget*> found;
    for (QWidget* const window : only != nullptr ? std::vector<QWidget*>{only} : shownWindows()) {
        QList<Widget*> all = window->findChildren<Widget*>();
        if (auto* const itself = qobject_cast<Widget*>(window)) {
            all.prepend(itself);
        }
        std::copy_if(all.begin(), all.end(), std::back_inserter(found), [window](const Widget* widget) {
            return isAtHand(widget) && widget->window() == window;
        });
    }
    return found.empty() ? nullptr : oneOf(found);
}

void Monkey::answerFileDialog(QFileDialog& dialog) {
    if (below(random_, 3) == 0) {
        note("gives up the file dialog");
        dialog.reject();
        return;
    }
    const auto name = oneOf<std::string>(
        {"one.ini", "two.scn", "three.csv", "four.pcapng", "Data", "no/such.txt", "log.txt"});
    note("chooses the file " + name);
    emit dialog.fileSelected(QString::fromStdString(window_->folder().file(name)));
    dialog.close();
}

/// Most of the time a dialog that holds everything up is answered at once.
bool Monkey::answerDialog() {
    QWidget* const modal = QApplication::activeModalWidget();
    if (auto* const files = qobject_cast<QFileDialog*>(modal)) {
        answerFileDialog(*files);
        return true;
    }
    if (modal == nullptr || below(random_, 3) == 0) {
        return false;
    }
    if (auto* const box = qobject_cast<QMessageBox*>(modal)) {
        const QList<QAbstractButton*> buttons = box->buttons();
        QAbstractButton* const button = buttons.at(below(random_, static_cast<int>(buttons.size())));
        note("answers \"" + box->text().left(40).toStdString() + "\" with " + button->text().toStdString());
        button->click();
    } else {
        note("closes", modal);
        modal->close();
    }
    return true;
}

void Monkey::press() {
    if (auto* const button = draw<QAbstractButton>()) {
        note("presses", button);
        button->setFocus(Qt::MouseFocusReason);
        button->click();
    }
}

void Monkey::choose() {
    auto* const list = draw<QComboBox>();
    if (list != nullptr && list->count() > 0) {
        note("chooses from", list);
        list->setFocus(Qt::MouseFocusReason);
        const int index = below(random_, list->count());
        list->setCurrentIndex(index);
        emit list->activated(index);
        emit list->textActivated(list->itemText(index));
    }
}

void Monkey::type() {
    QWidget* field = draw<QLineEdit>();
    if (below(random_, 8) == 0) {
        field = draw<QPlainTextEdit>();
    }
    if (field == nullptr) {
        return;
    }
    const QString text = oneOf(texts()).left(12);
    note("types \"" + text.toStdString() + "\" into", field);
    field->setFocus();
    if (below(random_, 2) == 0) {
        QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
    }
    for (const QChar letter : text) {
        QTest::sendKeyEvent(QTest::Click, field, Qt::Key_unknown, QString(letter), Qt::NoModifier);
    }
}

void Monkey::paste() {
    if (auto* const field = draw<QLineEdit>()) {
        const QString text = oneOf(texts());
        note("pastes \"" + text.left(12).toStdString() + "\" into", field);
        QGuiApplication::clipboard()->setText(text);
        field->setFocus();
        QTest::keyClick(field, Qt::Key_V, Qt::ControlModifier);
    }
}

void Monkey::strike() {
    QWidget* widget = QApplication::focusWidget();
    if (widget == nullptr || !isAtHand(widget)) {
        widget = draw<QWidget>();
    }
    if (widget != nullptr) {
        const Qt::Key key = oneOf(keys());
        const auto modifier = oneOf<Qt::KeyboardModifier>(
            {Qt::NoModifier, Qt::NoModifier, Qt::ControlModifier, Qt::ShiftModifier});
        note("strikes " + QKeySequence(key).toString().toStdString() + " with " + std::to_string(modifier) +
                 " on",
             widget);
        QTest::keyClick(widget, key, modifier);
    }
}

void Monkey::clickSomewhere() {
    if (auto* const widget = draw<QWidget>()) {
        const QPoint at(below(random_, std::max(1, widget->width())),
                        below(random_, std::max(1, widget->height())));
        note("clicks into", widget);
        QTest::mouseClick(widget, Qt::LeftButton, Qt::NoModifier, at);
        if (below(random_, 3) == 0 && isAtHand(widget)) {
            QTest::mouseDClick(widget, Qt::LeftButton, Qt::NoModifier, at);
        }
    }
}

void Monkey::turnWheel() {
    if (auto* const widget = draw<QWidget>()) {
        note("turns the wheel over", widget);
        QWheelEvent event(QPointF(1, 1), widget->mapToGlobal(QPointF(1, 1)), QPoint(),
                          QPoint(0, below(random_, 2) == 0 ? 120 : -120), Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(widget, &event);
    }
}

void Monkey::turnTab() {
    auto* const tabs = draw<QTabBar>();
    if (tabs != nullptr && tabs->count() > 0) {
        note("turns a tab of", tabs);
        QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(below(random_, tabs->count())).center());
    }
}

void Monkey::chooseMode() {
    if (front() == nullptr) {
        const std::string option = "optMode_" + std::to_string(below(random_, 6));
        note("presses " + option);
        window_->click(option);
    }
}

/// What takes a random hand long to come to: an open port, something to send, and sending it.
void Monkey::workTheLine() {
    if (front() != nullptr) {
        return;
    }
    if (window_->find<QAbstractButton>("cmdCommTest")->isEnabled() && below(random_, 2) == 0) {
        note("opens the port");
        window_->paste("cbPort", below(random_, 4) == 0 ? "VIRTUAL" : "COM1");
        window_->click("cmdCommTest");
        window_->click("cmdPortOpen");
        return;
    }
    const auto button = oneOf<std::string>(
        {"cmdRDSend", "cmdWDSend", "cmdMRAdd", "cmdMRDSend", "cmdMWAdd", "cmdMWDSend", "cmdAddScenario",
         "cmdRunScenario", "cmdSimAddListBox", "cmdSimInputOK", "cmdSimSendDataInputOK", "cmdSimStart"});
    note("presses " + button);
    window_->click(button);
}

void Monkey::letTimePass() {
    const int time = oneOf<int>({1, 5, 50, 100, 150, 500, 1000, 5000});
    note("waits " + std::to_string(time) + " ms");
    window_->advance(time);
}

void Monkey::letPeerAct() {
    note("the far end acts");
    peer_->act(witness_->lastSent());
}

void Monkey::openMenu() {
    if (auto* const widget = draw<QWidget>()) {
        note("asks for the menu of", widget);
        QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(1, 1), widget->mapToGlobal(QPoint(1, 1)));
        QCoreApplication::sendEvent(widget, &event);
    }
}

void Monkey::clickLine() {
    auto* const view = draw<QAbstractItemView>();
    if (view != nullptr && view->model() != nullptr && view->model()->rowCount() > 0) {
        const QModelIndex line =
            view->model()->index(below(random_, view->model()->rowCount()),
                                 below(random_, std::max(1, view->model()->columnCount())));
        note("clicks a line of", view);
        view->scrollTo(line);
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(line).center());
        if (below(random_, 3) == 0 && isAtHand(view)) {
            QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(line).center());
        }
    }
}

void Monkey::closeWindow() {
    QWidget* const popup = front();
    QWidget* const window = popup != nullptr ? popup : QApplication::activeWindow();
    if (window != nullptr) {
        note("closes", window);
        window->close();
    }
}

} // namespace varda::monkey
