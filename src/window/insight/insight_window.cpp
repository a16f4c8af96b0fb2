#include "window/insight/insight_window.h"

#include "ui_insight_window.h"
#include "window/controls/file_drops.h"
#include "window/controls/make_form.h"
#include "window/controls/message_talk.h"
#include "window/insight/explained.h"
#include "window/insight/statistics_panel.h"
#include "window/insight/trace_panel.h"
#include "window/insight/watch_panel.h"
#include "window/system/screen_room.h"

#include <QCloseEvent>
#include <QShortcut>

#include <chrono>

namespace varda::window {
namespace {

using namespace std::chrono_literals;

/// Four times a second are enough for the eye, and on a full line most of the cost is painting.
constexpr auto newsWait = 250ms;
/// Of what goes on without news: ages, and the time of the plot.
constexpr auto refreshWait = 1000ms;

} // namespace

InsightWindow::InsightWindow(const InsightSources& sources, const std::function<void()>& showHelp,
                             const QString& programFolder)
    : files_(this, programFolder),
      talk_(talkOf(boxes_, events_)),
      context_{sources, events_, files_, talk_},
      ui_(makeForm<Ui::InsightWindow>(this)),
      trace_(new TracePanel(context_, this)),
      statistics_(new StatisticsPanel(context_, this)),
      watch_(new WatchPanel(context_, this)) {
    setAttribute(Qt::WA_QuitOnClose, false); // the program ends with the main window
    ui_->insightTabs->addTab(trace_, tr("&Trace"));
    ui_->insightTabs->addTab(statistics_, tr("&Statistics"));
    ui_->insightTabs->addTab(watch_, tr("&Watch"));
    connect(ui_->insightTabs, &QTabWidget::currentChanged, this, [this] { refresh(); });
    connect(watch_, &WatchPanel::namesChanged, trace_, &TracePanel::showNames);
    addShortcuts(showHelp);
    trace_->setFocus();
    new FileDrops(this, [this](const QStringList& paths) {
        events_.guard([this, &paths] { watch_->loadNames(paths.first()); });
    });
    resize(size().boundedTo(roomFor(this)));
}

InsightWindow::~InsightWindow() = default;

void InsightWindow::addShortcuts(const std::function<void()>& showHelp) {
    connect(new QShortcut(Qt::Key_F9, this), &QShortcut::activated, this, &QWidget::close);
    auto* const help = new QShortcut(Qt::Key_F1, this);
    help->setAutoRepeat(false);
    connect(help, &QShortcut::activated, this, showHelp);
}

void InsightWindow::open() {
    show();
    raise();
    activateWindow();
    trace_->takeNews();
    refresh();
}

void InsightWindow::takeNewsSoon() {
    if (isVisible()) {
        news_ = context_.clock.after(newsWait, [this] { trace_->takeNews(); });
    }
}

void InsightWindow::explain(const Explained& explained, std::size_t byte) {
    if (isVisible()) {
        trace_->explain(explained, byte);
    }
}

void InsightWindow::refreshSoon() {
    refresh_ = context_.clock.after(refreshWait, [this] { refresh(); });
}

void InsightWindow::refresh() {
    const QWidget* const shown = ui_->insightTabs->currentWidget();
    if (shown == statistics_) {
        statistics_->refresh();
    } else if (shown == watch_) {
        watch_->refresh();
    }
    if (isVisible() && shown != trace_) { // which has nothing that changes without news
        refreshSoon();
    } else {
        refresh_.cancel();
    }
}

void InsightWindow::closeEvent(QCloseEvent* event) {
    news_.cancel();
    refresh_.cancel();
    event->accept();
    emit closed();
}

} // namespace varda::window
