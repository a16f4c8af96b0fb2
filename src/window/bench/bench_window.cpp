#include "window/bench/bench_window.h"

#include "ui_bench_window.h"
#include "window/bench/controller_panel.h"
#include "window/bench/expectations_panel.h"
#include "window/bench/fault_banner.h"
#include "window/bench/faults_panel.h"
#include "window/bench/pairs_panel.h"
#include "window/bench/recordings_panel.h"
#include "window/controls/make_form.h"
#include "window/controls/message_talk.h"
#include "window/system/screen_room.h"

#include <QCloseEvent>
#include <QShortcut>

#include <chrono>

namespace varda::window {
namespace {

using namespace std::chrono_literals;

/// Ten times a second are enough for the eye, however much goes over the line.
constexpr auto benchNewsWait = 100ms;

} // namespace

BenchWindow::BenchWindow(const BenchSources& sources, const std::function<void()>& showHelp,
                         const QString& programFolder)
    : files_(this, programFolder),
      talk_(talkOf(boxes_, events_)),
      context_{sources.clock, events_, files_, talk_},
      ui_(makeForm<Ui::BenchWindow>(this)),
      faults_(new FaultsPanel(sources.faults, context_, this)),
      controller_(new ControllerPanel(sources.simulated, context_, this)),
      expectations_(new ExpectationsPanel(sources.expectations, sources.scenarioLine, context_, this)),
      recordings_(new RecordingsPanel(sources.player, context_, this)),
      pairs_(new PairsPanel(sources.pairs, context_, this)) {
    setAttribute(Qt::WA_QuitOnClose, false); // the program ends with the main window
    ui_->benchLayout->insertWidget(0, new FaultBanner(sources.faults, events_, this));
    ui_->benchTabs->addTab(faults_, tr("&Faults"));
    ui_->benchTabs->addTab(controller_, tr("&Controller"));
    ui_->benchTabs->addTab(expectations_, tr("&Expectations"));
    ui_->benchTabs->addTab(recordings_, tr("&Recordings"));
    ui_->benchTabs->addTab(pairs_, tr("&Pairs"));
    connect(ui_->benchTabs, &QTabWidget::currentChanged, this, [this] { refresh(); });
    addShortcuts(showHelp);
    resize(size().boundedTo(roomFor(this)));
}

BenchWindow::~BenchWindow() = default;

void BenchWindow::addShortcuts(const std::function<void()>& showHelp) {
    connect(new QShortcut(Qt::Key_F10, this), &QShortcut::activated, this, &QWidget::close);
    auto* const help = new QShortcut(Qt::Key_F1, this);
    help->setAutoRepeat(false);
    connect(help, &QShortcut::activated, this, showHelp);
}

void BenchWindow::open() {
    show();
    raise();
    activateWindow();
    refresh();
}

void BenchWindow::takeNewsSoon() {
    if (isVisible() && !news_.isPending()) {
        news_ = context_.clock.after(benchNewsWait, [this] { refresh(); });
    }
}

void BenchWindow::refresh() {
    const QWidget* const shown = ui_->benchTabs->currentWidget();
    if (shown == faults_) {
        faults_->refresh();
    } else if (shown == controller_) {
        controller_->refresh();
    } else if (shown == expectations_) {
        expectations_->refresh();
    } else if (shown == recordings_) {
        recordings_->refresh();
    } else {
        pairs_->refresh();
    }
}

void BenchWindow::closeEvent(QCloseEvent* event) {
    news_.cancel();
    event->accept();
    emit closed();
}

} // namespace varda::window
