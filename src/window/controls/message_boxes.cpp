#include "window/controls/message_boxes.h"

#include <QCheckBox>
#include <QMessageBox>
#include <QPushButton>
#include <QWidget>

#include <algorithm>
#include <utility>

namespace varda::window {

MessageBoxes::~MessageBoxes() { delete shown_; }

void MessageBoxes::show(const QString& text, const QString& title) { show(text, title, Tick()); }

void MessageBoxes::show(const QString& text, const QString& title, const Tick& tick) {
    enqueue({text, title, {}, tick});
}

void MessageBoxes::showReport(const QString& text) { show(text, window_->windowTitle()); }

void MessageBoxes::ask(const QString& text, const QString& title, Answered answered) {
    enqueue({text, title, std::move(answered), {}});
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
    QObject::connect(shown_, &QMessageBox::finished, window_,
                     [this](int button) { finishFirst(button == QMessageBox::Yes); });
    if (!box.tick.caption.isEmpty()) {
        addTick(box.tick);
    }
    shown_->open();
}

/// Enter and Space still press OK, as in every other box.
void MessageBoxes::addTick(const Tick& tick) {
    auto* const offer = new QCheckBox(tick.caption, shown_);
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
