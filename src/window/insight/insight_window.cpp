#include "window/insight/insight_window.h"

#include "ui_insight_window.h"
#include "window/controls/file_drops.h"
#include "window/controls/make_form.h"
#include "window/insight/explained.h"
#include "window/insight/statistics_panel.h"
#include "window/insight/trace_panel.h"
#include "window/insight/watch_panel.h"

#include <QCloseEvent>

#include <chrono>

namespace varda::window {
namespace {

using namespace std::chrono_literals;

/// Of what goes on without news: ages, and the time of the plot.
constexpr auto refreshWait = 1000ms;

} // namespace

InsightWindow::InsightWindow(const InsightSources& sources, const std::function<void()>& showHelp,
                             const QString& programFolder)
    : CompanionWindow(sources.clock, Qt::Key_F9, showHelp, programFolder),
      context_{sources, events_, files_, talk_},
      ui_(makeForm<Ui::InsightWindow>(this)),
      trace_(new TracePanel(context_, this)) {
    auto* const watch = new WatchPanel(context_, this);
    ui_->insightTabs->addTab(trace_, tr("&Trace"));
    ui_->insightTabs->addTab(new StatisticsPanel(context_, this), tr("&Statistics"));
    ui_->insightTabs->addTab(watch, tr("&Watch"));
    connect(watch, &WatchPanel::namesChanged, trace_, &TracePanel::showNames);
    setTabs(ui_->insightTabs);
    trace_->setFocus();
    new FileDrops(this, [this, watch](const QStringList& paths) {
        events_.guard([watch, &paths] { watch->loadNames(paths.first()); });
    });
}

InsightWindow::~InsightWindow() = default;

void InsightWindow::opened() {
    takeNews();
    refresh();
}

/// Whichever tab is shown: the lines that are kept are kept for the trace.
void InsightWindow::takeNews() { trace_->takeNews(); }

void InsightWindow::explain(const Explained& explained, std::size_t byte) {
    if (isVisible()) {
        trace_->explain(explained, byte);
    }
}

/// The trace alone has nothing that changes without news.
void InsightWindow::refresh() {
    CompanionWindow::refresh();
    if (isVisible() && shownPart() != nullptr) {
        refresh_ = clock_.after(refreshWait, [this] { refresh(); });
    } else {
        refresh_.cancel();
    }
}

void InsightWindow::closeEvent(QCloseEvent* event) {
    refresh_.cancel();
    CompanionWindow::closeEvent(event);
}

} // namespace varda::window
