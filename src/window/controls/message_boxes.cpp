#include "window/controls/message_boxes.h"

#include <QApplication>
#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QWidget>

#include <algorithm>
#include <utility>

namespace varda::window {

namespace {

/// The advice quotes what was typed, which is no mark-up.
void showAdvice(QMessageBox* box, const QString& advice) {
    box->setInformativeText(advice);
    if (auto* const label = box->findChild<QLabel*>(QStringLiteral("qt_msgbox_informativelabel"))) {
        label->setTextFormat(Qt::PlainText);
        label->setTextInteractionFlags(box->textInteractionFlags());
    }
}

/// As wide as the title and the buttons beside it in the frame that the desktop draws.
void makeRoomForTitle(QMessageBox* box) {
    QFont font = QApplication::font("QMdiSubWindowTitleBar");
    font.setBold(true);
    const int buttons = 5 * QFontMetrics(font).height();
    const int width = QFontMetrics(font).horizontalAdvance(box->windowTitle()) + 2 * buttons;
    if (auto* const layout = qobject_cast<QGridLayout*>(box->layout())) {
        layout->addItem(new QSpacerItem(width, 0), layout->rowCount(), 0, 1, layout->columnCount());
    }
}

} // namespace

MessageBoxes::~MessageBoxes() { delete shown_; }

void MessageBoxes::show(const QString& text, const QString& title, const Form::Tick& tick) {
    enqueue({.text = text, .title = title, .tick = tick});
}

void MessageBoxes::showAdvised(const QString& text, const QString& title, const QString& advice) {
    enqueue({.text = text, .title = title, .advice = advice});
}

void MessageBoxes::showReport(const QString& text, const QString& advice) {
    showAdvised(text, window_->windowTitle(), advice);
}

void MessageBoxes::ask(const QString& text, const QString& title, Answered answered) {
    enqueue({.text = text, .title = title, .answered = std::move(answered)});
}

void MessageBoxes::enqueue(Box box) {
    const bool repeated = std::ranges::any_of(
        boxes_, [&box](const Box& other) { return other.text == box.text && other.title == box.title; });
    if (repeated) {
        return;
    }
    boxes_.push_back(std::move(box));
    if (boxes_.size() == 1) {
        showFirst();
    }
}

void MessageBoxes::showFirst() {
    const Box& box = boxes_.front();
    const bool question = static_cast<bool>(box.answered);
    shown_ = new QMessageBox(question ? QMessageBox::Question : QMessageBox::Warning, box.title, box.text,
                             question ? QMessageBox::Yes | QMessageBox::No : QMessageBox::Ok, window_);
    shown_->setAttribute(Qt::WA_DeleteOnClose);
    shown_->setTextFormat(Qt::PlainText);
    shown_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    if (!box.advice.isEmpty()) {
        showAdvice(shown_, box.advice);
    }
    if (!box.tick.caption.empty()) {
        addTick(box.tick);
    }
    makeRoomForTitle(shown_); // behind what lays the box out anew
    QObject::connect(shown_, &QMessageBox::finished, window_,
                     [this](int button) { finishFirst(button == QMessageBox::Yes); });
    shown_->open();
}

/// Enter and Space still press OK, as in every other box.
void MessageBoxes::addTick(const Form::Tick& tick) {
    auto* const offer = new QCheckBox(QString::fromStdString(tick.caption), shown_);
    offer->setChecked(tick.isTicked);
    QObject::connect(offer, &QCheckBox::toggled, window_, tick.changed);
    shown_->setCheckBox(offer);
    shown_->button(QMessageBox::Ok)->setFocus();
}

void MessageBoxes::finishFirst(bool yes) {
    const Box box = std::move(boxes_.front());
    boxes_.pop_front();
    if (!boxes_.empty()) {
        showFirst();
    }
    if (box.answered) {
        box.answered(yes);
    }
}

} // namespace varda::window
