#include "window/bench/bench_window.h"

#include "ui_bench_window.h"
#include "window/bench/controller_panel.h"
#include "window/bench/expectations_panel.h"
#include "window/bench/fault_banner.h"
#include "window/bench/faults_panel.h"
#include "window/bench/pairs_panel.h"
#include "window/bench/recordings_panel.h"
#include "window/controls/make_form.h"

namespace varda::window {

BenchWindow::BenchWindow(const BenchSources& sources, const std::function<void()>& showHelp,
                         const QString& programFolder)
    : CompanionWindow(sources.clock, Qt::Key_F10, showHelp, programFolder),
      ui_(makeForm<Ui::BenchWindow>(this)) {
    const BenchContext context = {clock_, events_, files_, talk_};
    ui_->benchLayout->insertWidget(0, new FaultBanner(sources.faults, events_, this));
    add(new FaultsPanel(sources.faults, context, this), tr("&Faults"));
    add(new ControllerPanel(sources.simulated, context, this), tr("&Controller"));
    add(new ExpectationsPanel(sources.expectations, sources.scenarioLine, context, this),
        tr("&Expectations"));
    add(new RecordingsPanel(sources.player, context, this), tr("&Recordings"));
    add(new PairsPanel(sources.pairs, context, this), tr("&Pairs"));
    setTabs(ui_->benchTabs);
}

BenchWindow::~BenchWindow() = default;

void BenchWindow::add(CompanionPart* part, const QString& title) { ui_->benchTabs->addTab(part, title); }

} // namespace varda::window
