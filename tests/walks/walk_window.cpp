#include "walks/walk_window.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QTableWidget>
#include <QTest>
#include <QWheelEvent>

#include <map>

namespace varda::walks {

namespace {

QString wide(const std::string& text) { return QString::fromStdString(text); }

std::string yesNo(bool value) { return value ? "yes" : "no"; }

/// "error 13" for a run-time error, title and text of any other box.
std::string boxName(const QMessageBox& box) {
    static const QRegularExpression number(QStringLiteral("[Rr]un-time error '?(\\d+)"));
    const auto match = number.match(box.windowTitle() + QLatin1Char(' ') + box.text());
    if (match.hasMatch()) {
        return "error " + match.captured(1).toStdString();
    }
    return box.windowTitle().toStdString() + ": " + box.text().toStdString();
}

Qt::Key keyOf(const std::string& verb) {
    static const std::map<std::string, Qt::Key> keys = {
        {"enter", Qt::Key_Return}, {"escape", Qt::Key_Escape}, {"delete", Qt::Key_Delete},
        {"left", Qt::Key_Left},    {"home", Qt::Key_Home},     {"end", Qt::Key_End},
        {"up", Qt::Key_Up},        {"down", Qt::Key_Down},     {"mark", Qt::Key_A}};
    return keys.at(verb);
}

void turnWheel(QWidget* control, int notches) {
    const QPointF place(control->rect().center());
    QWheelEvent event(place, control->mapToGlobal(place), QPoint(), QPoint(0, 120 * notches), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(control, &event);
}

} // namespace

WalkWindow::WalkWindow(int mode, std::uint_fast32_t seed)
    : mode_(mode),
      generator_(seed),
      window_({clock_, [this](const std::string& /*name*/) { return farEnd_.makeLine(); },
               [this] { return static_cast<double>(generator_()) / 4294967296.0; }, folder_.path(),
               QTime::currentTime,
               [this](std::function<void()> tick) { return makeTimer(std::move(tick)); }}) {
    window_.resize(1024, 768);
    window_.setUpdatesEnabled(false); // nobody looks at it, and painting would take most of the time
    window_.show();
    QApplication::setActiveWindow(&window_);
    if (mode != 0) {
        click("optMode_" + std::to_string(mode));
    }
}

QWidget* WalkWindow::findAny(const std::string& name) {
    QPointer<QWidget>& control = controls_[name];
    if (control.isNull()) {
        control = window_.findChild<QWidget*>(wide(name));
    }
    return control;
}

void WalkWindow::focus(QWidget* control) {
    if (!control->hasFocus()) {
        control->setFocus(Qt::MouseFocusReason);
    }
}

void WalkWindow::press(QWidget* control, int key, bool withControl) {
    QTest::keyClick(control, static_cast<Qt::Key>(key), withControl ? Qt::ControlModifier : Qt::NoModifier);
    answerBoxes();
}

void WalkWindow::type(QWidget* control, const std::string& keys) {
    QTest::keyClick(control, Qt::Key_A, Qt::ControlModifier);
    for (const char key : keys) {
        QTest::keyClick(control, key);
        answerBoxes();
    }
}

void WalkWindow::put(QWidget* control, const std::string& text) {
    QApplication::clipboard()->setText(wide(text));
    QTest::keyClick(control, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(control, Qt::Key_V, Qt::ControlModifier);
}

void WalkWindow::erase(QWidget* control, bool all) {
    if (all) {
        QTest::keyClick(control, Qt::Key_A, Qt::ControlModifier);
    } else {
        QTest::keyClick(control, Qt::Key_End);
    }
    press(control, all ? Qt::Key_Delete : Qt::Key_Backspace);
}

void WalkWindow::choose(const std::string& list, const std::string& entry) {
    auto* const box = find<QComboBox>(list);
    const int index = box->findText(wide(entry), Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (index < 0) {
        throw std::runtime_error(list + " does not offer " + entry);
    }
    box->showPopup();
    box->view()->setCurrentIndex(box->model()->index(index, box->modelColumn()));
    QTest::keyClick(box->view(), Qt::Key_Return);
}

void WalkWindow::click(const std::string& name) {
    auto* const control = find(name);
    if (control->isEnabled() && (control->focusPolicy() & Qt::ClickFocus) != 0) {
        focus(control); // as a desktop does at the press
    }
    QTest::mouseClick(control, Qt::LeftButton, {}, QPoint(10, control->height() / 2));
}

void WalkWindow::visit(int mode) {
    click("optMode_" + std::to_string(mode));
    answerBoxes();
    click("optMode_" + std::to_string(mode_));
}

void WalkWindow::clickCell(const std::string& place) {
    auto* const grid = find<QTableWidget>("gridWriteData");
    const auto comma = place.find(',');
    const QModelIndex cell =
        grid->model()->index(std::stoi(place.substr(0, comma)), std::stoi(place.substr(comma + 1)));
    grid->scrollTo(cell);
    focus(grid);
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, grid->visualRect(cell).center());
}

void WalkWindow::useDialog(const Action& action) {
    auto* const dialog = window_.findChild<QDialog*>(QStringLiteral("frmWriteWord"));
    if (dialog == nullptr || !dialog->isVisible()) {
        throw std::runtime_error("no word dialog is on the screen");
    }
    QApplication::setActiveWindow(dialog);
    auto* const field = dialog->findChild<QLineEdit*>(QStringLiteral("txtWordWrite"));
    if (action.verb == "word") {
        focus(field);
        type(field, action.text);
    } else if (action.verb == "wordhex") {
        QTest::mouseClick(dialog->findChild<QAbstractButton*>(QStringLiteral("chkWWHex")), Qt::LeftButton, {},
                          QPoint(10, 8));
    } else if (action.text == "OK") {
        QTest::mouseClick(dialog->findChild<QAbstractButton*>(QStringLiteral("cmdInputOK")), Qt::LeftButton);
    } else {
        focus(field);
        press(field, action.text == "Enter" ? Qt::Key_Return : Qt::Key_Escape);
    }
    answerBoxes();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    const auto* const rest = window_.findChild<QDialog*>(QStringLiteral("frmWriteWord"));
    if (rest == nullptr || !rest->isVisible()) {
        QApplication::setActiveWindow(&window_);
    }
}

void WalkWindow::selectLine(const std::string& list, const std::string& line) {
    auto* const box = find<QListWidget>(list);
    QListWidgetItem* const item = box->item(std::stoi(line));
    box->scrollToItem(item);
    focus(box);
    QTest::mouseClick(box->viewport(), Qt::LeftButton, {}, box->visualItemRect(item).center());
}

void WalkWindow::answer(int count) {
    Bytes bytes;
    for (int place = 0; place < count; ++place) {
        bytes.push_back(static_cast<std::uint8_t>((place * 37 + count) % 256));
    }
    farEnd_.deliver(bytes);
    clock_.advance(100);
}

std::unique_ptr<PeriodTimer> WalkWindow::makeTimer(std::function<void()> tick) {
    auto timer = std::make_unique<test::ManualTimer>(timers_, std::move(tick));
    if (communicationTimer_ == nullptr) {
        communicationTimer_ = timer.get(); // the window makes it first
    }
    return timer;
}

/// One tick of the communication timer, where it runs.
void WalkWindow::tick() {
    if (communicationTimer_->isRunning()) {
        timers_.advance(communicationTimer_->interval());
    }
}

void WalkWindow::answerBoxes() {
    QCoreApplication::sendPostedEvents();
    for (bool found = true; found;) {
        found = false;
        for (auto* const box : window_.findChildren<QMessageBox*>()) {
            if (box->isVisible()) {
                boxes_.push_back(boxName(*box));
                box->button(QMessageBox::Ok) != nullptr ? box->button(QMessageBox::Ok)->click()
                                                        : box->reject();
                QCoreApplication::sendPostedEvents();
                QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
                QApplication::setActiveWindow(&window_);
                found = true;
                break;
            }
        }
    }
}

void WalkWindow::perform(const Action& action) {
    const std::string& verb = action.verb;
    if (verb == "answer") {
        answer(std::stoi(action.text));
    } else if (verb == "tick") {
        tick();
    } else if (verb == "visit") {
        visit(std::stoi(action.text));
    } else if (verb == "click") {
        click(action.control);
    } else if (verb == "clicks") {
        for (int left = std::stoi(action.text); left > 0; --left) {
            click(action.control);
            answerBoxes();
        }
    } else if (verb == "cell") {
        clickCell(action.text);
    } else if (verb == "line") {
        selectLine(action.control, action.text);
    } else if (verb == "wheel") {
        focus(find(action.control));
        turnWheel(find(action.control), std::stoi(action.text));
    } else if (verb == "word" || verb == "wordhex" || verb == "wordend") {
        useDialog(action);
    } else {
        auto* const control = find(action.control);
        focus(control);
        if (verb == "choose") {
            choose(action.control, action.text);
        } else if (verb == "type") {
            type(control, action.text);
        } else if (verb == "put") {
            put(control, action.text);
        } else if (verb == "backspace") {
            press(control, Qt::Key_Backspace);
        } else if (verb == "clear" || verb == "back") {
            erase(control, verb == "clear");
        } else if (verb == "key") {
            QTest::keyClick(control, action.text[0]);
        } else if (verb == "leave") {
            focus(find(action.text));
            focus(control);
        } else {
            press(control, keyOf(verb), action.text == "Ctrl" || verb == "mark");
        }
    }
    answerBoxes();
}

std::string WalkWindow::property(QWidget* control, const std::string& kind) const {
    if (kind == "enabled") {
        return yesNo(control->isEnabled());
    }
    if (kind == "visible") {
        return yesNo(control->isVisible());
    }
    if (kind == "ticked") {
        return yesNo(qobject_cast<QAbstractButton*>(control)->isChecked());
    }
    if (kind == "caret") {
        return std::to_string(qobject_cast<QLineEdit*>(control)->cursorPosition());
    }
    std::string lines;
    if (auto* const list = qobject_cast<QListWidget*>(control)) {
        if (kind == "selected") {
            return list->selectedItems().isEmpty() ? "-1"
                                                   : std::to_string(list->row(list->selectedItems().first()));
        }
        for (int row = 0; row < list->count(); ++row) {
            lines += list->item(row)->text().toStdString() + '|';
        }
    } else if (const auto* const box = qobject_cast<QComboBox*>(control)) {
        for (int index = 0; index < box->count(); ++index) {
            lines += box->itemText(index).toStdString() + '|';
        }
    } else if (const auto* const grid = qobject_cast<QTableWidget*>(control)) {
        if (kind == "rows") {
            return std::to_string(grid->rowCount());
        }
        if (kind == "headings") {
            for (int column = 0; column < grid->columnCount(); ++column) {
                const auto* const heading = grid->horizontalHeaderItem(column);
                lines += (heading == nullptr ? std::string() : heading->text().toStdString()) + '|';
            }
            return lines;
        }
        for (int row = 0; row < grid->rowCount(); ++row) {
            for (int column = 0; column < grid->columnCount(); ++column) {
                const auto* const cell = grid->item(row, column);
                if (cell != nullptr && !cell->text().isEmpty()) {
                    lines += std::to_string(row) + ',' + std::to_string(column) + '=' +
                             cell->text().toStdString() + '|';
                }
            }
        }
    }
    return lines;
}

std::string WalkWindow::shown(const std::string& name) {
    if (name == "boxes") {
        return printed(takeBoxes());
    }
    if (name == "sent") {
        return sentFrames();
    }
    if (name == "tmrComm") {
        return (communicationTimer_->isRunning() ? "runs " : "stands ") +
               std::to_string(communicationTimer_->interval());
    }
    if (name == "frmWriteWord") {
        const auto* const dialog = window_.findChild<QDialog*>(QStringLiteral("frmWriteWord"));
        return yesNo(dialog != nullptr && dialog->isVisible());
    }
    const auto point = name.find('.');
    auto* const control = find(name.substr(0, point));
    if (point != std::string::npos) {
        return property(control, name.substr(point + 1));
    }
    if (const auto* const box = qobject_cast<QComboBox*>(control)) {
        return box->currentText().toStdString();
    }
    if (const auto* const line = qobject_cast<QLineEdit*>(control)) {
        return line->text().toStdString();
    }
    if (const auto* const frame = qobject_cast<QPlainTextEdit*>(control)) {
        return frame->toPlainText().toStdString();
    }
    return qobject_cast<QAbstractButton*>(control)->text().toStdString();
}

/// A wrong check is told of its own: a model could err alike.
std::string WalkWindow::sentFrames() {
    const std::vector<Octets> frames = takeSent();
    std::string line = printed(frames);
    for (const Octets& frame : frames) {
        line += hasRightCrc(frame) ? "" : " wrong check: " + printed(std::vector<Octets>{frame});
    }
    return line;
}

std::vector<Octets> WalkWindow::takeSent() {
    std::vector<Octets> sent;
    for (const test::FarEnd::Write& write : farEnd_.takeWritten()) {
        sent.push_back(write.bytes);
    }
    return sent;
}

} // namespace varda::walks
