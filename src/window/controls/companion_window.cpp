#include "window/controls/companion_window.h"

#include "window/controls/message_talk.h"
#include "window/system/screen_room.h"

#include <QCloseEvent>
#include <QShortcut>
#include <QTabWidget>

#include <chrono>

namespace varda::window {
namespace {

using namespace std::chrono_literals;

/// Four times a second are enough for the eye, and on a full line most of the cost is painting.
constexpr auto newsWait = 250ms;

} // namespace

CompanionWindow::CompanionWindow(Clock& clock, Qt::Key key, const std::function<void()>& showHelp,
                                 const QString& programFolder)
    : files_(this, programFolder), talk_(talkOf(boxes_, events_)), clock_(clock) {
    setAttribute(Qt::WA_QuitOnClose, false); // the program ends with the main window
    connect(new QShortcut(key, this), &QShortcut::activated, this, &QWidget::close);
    auto* const help = new QShortcut(Qt::Key_F1, this);
    help->setAutoRepeat(false);
    connect(help, &QShortcut::activated, this, showHelp);
}

void CompanionWindow::setTabs(QTabWidget* tabs) {
    tabs_ = tabs;
    connect(tabs, &QTabWidget::currentChanged, this, [this] { refresh(); });
    resize(size().boundedTo(roomFor(this)));
}

CompanionPart* CompanionWindow::shownPart() const {
    return dynamic_cast<CompanionPart*>(tabs_->currentWidget());
}

void CompanionWindow::open() {
    show();
    raise();
    activateWindow();
    opened();
}

void CompanionWindow::takeNewsSoon() {
    if (isVisible() && !news_.isPending()) {
        news_ = clock_.after(newsWait, [this] { takeNews(); });
    }
}

void CompanionWindow::refresh() {
    if (CompanionPart* const part = shownPart()) {
        part->refresh();
    }
}

void CompanionWindow::closeEvent(QCloseEvent* event) {
    news_.cancel();
    event->accept();
    emit closed();
}

} // namespace varda::window
