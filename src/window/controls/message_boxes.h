#pragma once

#include "window/controls/form.h"

#include <QPointer>
#include <QString>

#include <deque>
#include <functional>

class QMessageBox;
class QWidget;

namespace varda::window {

/// The message boxes of one window. Showing one returns at once, so that reception and timers go on behind
/// it; boxes wait for one another, and a box that is shown or waits already is not queued a second time.
class MessageBoxes {
public:
    using Answered = std::function<void(bool yes)>;

    explicit MessageBoxes(QWidget* window) : window_(window) {}
    MessageBoxes(const MessageBoxes&) = delete;
    MessageBoxes& operator=(const MessageBoxes&) = delete;
    ~MessageBoxes();

    /// @param tick none without a caption
    void show(const QString& text, const QString& title, const Form::Tick& tick = {});
    /// @param advice stands below the text
    void showAdvised(const QString& text, const QString& title, const QString& advice);
    /// Shows a report of the program itself: titled as its window.
    void showReport(const QString& text, const QString& advice = {});
    void ask(const QString& text, const QString& title, Answered answered);

private:
    struct Box {
        QString text;
        QString title;
        Answered answered{}; ///< empty for a box with an OK button only
        QString advice{};
        Form::Tick tick{};
    };

    void enqueue(Box box);
    void showFirst();
    void addTick(const Form::Tick& tick);
    void finishFirst(bool yes);

    QWidget* window_;
    std::deque<Box> boxes_; ///< the first one is on the screen
    QPointer<QMessageBox> shown_;
};

} // namespace varda::window
