#include "window/shell/frmVarda.h"

#include "core/base/runtime_error.h"
#include "core/link/period.h"
#include "ui_frmVarda.h"
#include "window/bench/fault_banner.h"
#include "window/controls/file_drops.h"
#include "window/controls/lists.h"
#include "window/controls/make_form.h"
#include "window/master/mixed_read_page.h"
#include "window/master/mixed_write_page.h"
#include "window/master/read_page.h"
#include "window/master/write_page.h"
#include "window/monitor/monitor_page.h"
#include "window/scenario/scenario_panel.h"
#include "window/shell/frames.h"
#include "window/shell/frmAbout.h"
#include "window/shell/label_lines.h"
#include "window/shell/look.h"
#include "window/shell/port_corner.h"
#include "window/shell/screen_fit.h"
#include "window/simulator/simulation_page.h"

#include <QCloseEvent>
#include <QShortcut>

#include <algorithm>

namespace varda::window {
namespace {

std::vector<std::string> portListTexts() {
    constexpr int ports = 20;
    std::vector<std::string> texts;
    texts.reserve(ports);
    for (int number = 1; number <= ports; ++number) {
        texts.push_back("COM" + std::to_string(number));
    }
    return texts;
}

} // namespace

FrmVarda::FrmVarda(const Surroundings& surroundings, QWidget* parent)
    : QMainWindow(parent),
      ui_(makeForm<Ui::FrmVarda>(this)),
      clock_(surroundings.clock, events_),
      bench_(clock_, surroundings.controller),
      commPLC_(bench_.faulty(insight_.traced(surroundings.makeLine))),
      commTest_(surroundings.makeLine),
      tmrComm_(surroundings.makeTimer([this] { events_.guard([this] { link_.tmrComm_Timer(); }); })),
      tmrScenario_(
          surroundings.makeTimer([this] { events_.guard([this] { scenarioPanel_->tmrScenario_Timer(); }); })),
      link_(commPLC_, clock_),
      linkPort_(commTest_, link_, *tmrComm_, form_),
      lineNotice_(ui_->slowLine, announcer_),
      files_(this, surroundings.programFolder),
      manual_(*this, events_, surroundings.programFolder) {
    makePortCorner(surroundings);
    makePages(surroundings);
    addPages();
    form_.collectControls(*this);
    bind();
    attachInsight(surroundings.programFolder);
    attachBench(surroundings.programFolder);
    addShortcuts();
    announcer_.listenToStatuses(this);
    new FileDrops(this, [this](const QStringList& paths) { fileLoader_->load(paths); });
    Form_Load();
}

FrmVarda::~FrmVarda() = default;

void FrmVarda::makePortCorner(const Surroundings& surroundings) {
    const auto makeTimer = [this, &surroundings](std::function<void()> tick) {
        return surroundings.makeTimer([this, tick = std::move(tick)] { events_.guard(tick); });
    };
    portCorner_ = new PortCorner({commPLC_, linkPort_, ui_->cbPort, ui_->cbBaudRate, ui_->cbDataBit,
                                  ui_->cbStopBit, ui_->cbParityBit, ui_->cmdPortOpen},
                                 makeTimer, ui_->settingsTabs);
    ui_->settingsTabs->setCornerWidget(portCorner_);
}

void FrmVarda::makePages(const Surroundings& surroundings) {
    const PageContext context = {form_, events_, link_, images_, *tmrComm_, isFreeForRun_};
    auto* const readPage = new ReadPage(context, this);
    auto* const writePage = new WritePage(context, surroundings.random, this);
    auto* const mixedReadPage = new MixedReadPage(context, this);
    auto* const mixedWritePage = new MixedWritePage(context, this);
    masters_ = {readPage, writePage, mixedReadPage, mixedWritePage};
    simulationPage_ = new SimulationPage(context,
                                         {files_,
                                          [mixedReadPage, mixedWritePage](Mode mixedMode) {
                                              MixedPage* const page =
                                                  mixedMode == Mode::MixedRead
                                                      ? static_cast<MixedPage*>(mixedReadPage)
                                                      : mixedWritePage;
                                              page->sendAsItStands();
                                          }},
                                         this);
    monitorPage_ = new MonitorPage(context, {files_, clock_, surroundings.now}, this);
    scenarioPanel_ = new ScenarioPanel(context,
                                       {.tmrScenario = *tmrScenario_,
                                        .files = files_,
                                        .shownMode = [this] { return shownMode().page->mode(); },
                                        .shownRequest = [this] { return shownMode().page->requestText(); },
                                        .stopMonitor = [this] { monitorPage_->stopRun(); },
                                        .enableMasters = [this](bool enabled) { enableMasters(enabled); }},
                                       this);
    fileLoader_ = std::make_unique<FileLoader>(
        context,
        FileLoader::Window{.simulation = *simulationPage_,
                           .scenario = *scenarioPanel_,
                           .showSimulation = [this] { ui_->optMode_4->click(); },
                           .tell = [this](const std::string& news) { lineNotice_.tellOfFile(news); }});
    modes_ = {{ui_->optMode_0, ui_->pageRead, ControlGroup::Read, readPage},
              {ui_->optMode_1, ui_->pageWrite, ControlGroup::Write, writePage},
              {ui_->optMode_2, ui_->pageMixedRead, ControlGroup::MixedRead, mixedReadPage},
              {ui_->optMode_3, ui_->pageMixedWrite, ControlGroup::MixedWrite, mixedWritePage},
              {ui_->optMode_4, ui_->pageSimulation, ControlGroup::Simulation, simulationPage_},
              {ui_->optMode_5, ui_->pageMonitor, std::nullopt, monitorPage_}};
    link_.setRoles({.repeat = [this](Mode mode) { repeatRequest(mode); },
                    .answerTo = [this](auto request) { return bench_.answerTo(request); }});
    insight_.observe(link_);
    link_.observe(bench_);
    for (LinkObserver* const observer :
         {static_cast<LinkObserver*>(&frameTips_), // knows the request before its answer is shown
          static_cast<LinkObserver*>(&presenter_), static_cast<LinkObserver*>(&lastAnswers_),
          &simulationPage_->requestView(), static_cast<LinkObserver*>(monitorPage_),
          static_cast<LinkObserver*>(scenarioPanel_)}) {
        link_.observe(*observer);
    }
    link_.observeCounters(presenter_);
    linkPort_.setPages({.stopRuns = [this] { stopRuns(); },
                        .takeReadStations = [readPage] { readPage->takeStations(); },
                        .showPort = [this] { portCorner_->showPort(); },
                        .tell = [this](const std::string& notice) { lineNotice_.tell(notice); },
                        .offerAfterHangUp = [this] { return portCorner_->offerAfterHangUp(); }});
}

void FrmVarda::addPages() {
    fitScreen(this);
    QList<QWidget*> tabOrder = {ui_->settingsTabs};
    for (const ModeRow& mode : modes_) {
        mode.tab->layout()->addWidget(lettingScroll(mode.page));
        tabOrder.append(mode.option);
    }
    ui_->scenarioHolderLayout->addWidget(lettingScroll(scenarioPanel_));
    useFixedWidthForFrames(this);
    alignLabelsWithFields(this);
    keepDisabledTextsReadable(this);
    nameListsBeside(this);
    keepFramesReadable(this);
    frameTips_.watchFrames();
    chainTabOrder(tabOrder << ui_->tabMode << ui_->scenarioHolder << ui_->txtTotalData << ui_->txtCurrentData
                           << ui_->txtWatchDog << ui_->cmdHelp << ui_->cmdAbout << ui_->cmdEnd
                           << ui_->openTrace << ui_->openBench);
}

void FrmVarda::bind() {
    for (int index = 0; index < static_cast<int>(modes_.size()); ++index) {
        events_.option(modes_[static_cast<std::size_t>(index)].option,
                       [this, index] { optMode_Click(index); });
    }
    keepTabsFromWheel(ui_->settingsTabs);
    keepTabsFromWheel(ui_->tabMode);
    connect(ui_->tabMode, &QTabWidget::currentChanged, this,
            [this] { shownMode().option->setChecked(true); });
    events_.click(ui_->cmdCommTest, [this] { linkPort_.cmdCommTest_Click(); });
    events_.click(ui_->cmdPortOpen, [this] { cmdPortOpen_Click(); });
    events_.click(ui_->cmdHelp, [this] { manual_.show(); });
    events_.click(ui_->cmdAbout, [this] { cmdAbout_Click(); });
    events_.click(ui_->cmdEnd, [this] { cmdEnd_Click(); });
    commPLC_.setEventHandler([this](CommEvent event, const std::string& reason) {
        events_.guard([this, event, &reason] { commPLC_Event(event, reason); });
    });
}

void FrmVarda::attachInsight(const QString& programFolder) {
    const auto period = [this] {
        const bool isScenario = link_.state().CommMode == Mode::Scenario;
        return (isScenario ? tmrScenario_ : tmrComm_)->interval();
    };
    insight_.attach({.pairs = simulationPage_->pairs(),
                     .button = ui_->openTrace,
                     .pages = *this,
                     .requestOf = [this](const auto* answer) { return frameTips_.requestOf(answer); },
                     .wantedPeriod = period,
                     .showHelp = [this] { events_.guard([this] { manual_.show(manual_page::trace); }); },
                     .programFolder = programFolder});
}

/// The banner stands above all that scrolls.
void FrmVarda::attachBench(const QString& programFolder) {
    setMenuWidget(new FaultBanner(bench_.faults(), events_, this));
    bench_.tellFaults([this](const std::string& what) { insight_.doneOnPurpose(what); });
    connect(simulationPage_, &SimulationPage::pairsChanged, &bench_, &Bench::followPairs);
    ScenarioExpectations* const expectations = &bench_.expectations();
    connect(scenarioPanel_, &ScenarioPanel::linesInserted, expectations, &ScenarioExpectations::insert);
    connect(scenarioPanel_, &ScenarioPanel::linesRemoved, expectations, &ScenarioExpectations::remove);
    connect(scenarioPanel_, &ScenarioPanel::linesCleared, expectations, &ScenarioExpectations::clear);
    connect(scenarioPanel_, &ScenarioPanel::loaded, expectations, &ScenarioExpectations::loadBeside);
    connect(scenarioPanel_, &ScenarioPanel::runBegins, expectations, &ScenarioExpectations::begin);
    scenarioPanel_->expectSilence([expectations](int row) {
        return expectations->expected().isSilenceExpected(static_cast<std::size_t>(row));
    });
    bench_.attach(
        {.button = ui_->openBench,
         .pairs = simulationPage_->pairs(),
         .addPair = [this](const auto& pair) { simulationPage_->addPair(pair.request, pair.answer); },
         .showPair = [this](std::size_t row) { showPair(row); },
         .scenarioLine = [this](int row) { return scenarioPanel_->line(row); },
         .lineBeingSent = [this] { return scenarioPanel_->lineBeingSent(); },
         .portUse = {.begin = [this] { return scenarioPanel_->beginPlaying(); },
                     .send = [this](const Bytes& frame) { scenarioPanel_->sendPlayed(frame); },
                     .end = [this] { scenarioPanel_->endPlaying(); }},
         .showHelp = [this] { events_.guard([this] { manual_.show(manual_page::bench); }); },
         .programFolder = programFolder});
}

/// While the port is open the simulation would answer; while points are collected there it would ask.
void FrmVarda::showPair(std::size_t row) {
    if (!commPLC_.isOpen() && !simulationPage_->isVisible() && !simulationPage_->hasPoints()) {
        ui_->optMode_4->click();
    }
    simulationPage_->showPair(row);
    activateWindow();
}

void FrmVarda::commPLC_Event(CommEvent event, const std::string& reason) {
    switch (event) {
    case CommEvent::Received:
        link_.commPLC_OnComm(event);
        break;
    case CommEvent::Unsent:
        lineNotice_.tellUnsent(commPLC_.unsentWrites());
        break;
    case CommEvent::HungUp:
        lineNotice_.tellUnsent(0);
        lineNotice_.tell({});
        linkPort_.hangUp(reason);
        break;
    }
}

void FrmVarda::cmdPortOpen_Click() {
    linkPort_.cmdPortOpen_Click();
    lineNotice_.tellUnsent(0); // of this connection
    if (!commPLC_.isOpen()) {
        lineNotice_.tell({});
    }
    monitorPage_->showRun(); // attaching again finds no run: the hang-up has stopped it
}

void FrmVarda::addShortcuts() {
    const auto add = [this](const QKeySequence& keys, const std::function<void()>& press) {
        auto* const shortcut = new QShortcut(keys, this);
        shortcut->setAutoRepeat(false); // a key that is held would flood the line, or open manual upon manual
        connect(shortcut, &QShortcut::activated, this, press);
    };
    add(Qt::Key_F1, [this] { events_.guard([this] { manual_.show(shownManualPage()); }); });
    add(Qt::Key_F9, [this] { ui_->openTrace->click(); });
    add(Qt::Key_F10, [this] { ui_->openBench->click(); });
    add(Qt::Key_F5, [this] { shownMode().page->clickSend(); });
    int key = Qt::Key_1;
    for (const ModeRow& mode : modes_) {
        add(QKeyCombination(Qt::ControlModifier, static_cast<Qt::Key>(key++)), [option = mode.option] {
            option->setFocus(Qt::ShortcutFocusReason); // as a click does
            option->click();
        });
    }
}

void FrmVarda::repeatRequest(Mode mode) {
    const auto page =
        std::ranges::find_if(masters_, [mode](const MasterPage* master) { return master->serves(mode); });
    (*page)->repeatRequest(); // every mode that repeats is a page's
}

void FrmVarda::enableMasters(bool enabled) {
    ui_->tabMode->setEnabled(enabled);
    for (MasterPage* const page : masters_) {
        page->enableSending(enabled);
    }
}

void FrmVarda::Form_Load() {
    fillSerialLists();
    tmrComm_->setInterval(startPeriod);
    tmrScenario_->setInterval(startPeriod);
    form_.setEnabled("cmdRDSend", false);
    form_.setEnabled("cmdSimStart", false);
    link_.tellCounters();
    form_.setText("txtWatchDog", "0");
    events_.choose(ui_->optMode_0);
    ui_->cbPort->setFocus(); // where every work begins
    ui_->cbPort->lineEdit()->selectAll();
}

void FrmVarda::fillSerialLists() {
    for (DropDownList* const list : {static_cast<DropDownList*>(ui_->cbPort), ui_->cbBaudRate, ui_->cbDataBit,
                                     ui_->cbStopBit, ui_->cbParityBit}) {
        letTypeInto(list);
    }
    fillList(ui_->cbPort, portListTexts(), "COM1");
    fillList(ui_->cbBaudRate, {"38400", "19200", "9600", "4800", "2400"}, "9600");
    fillList(ui_->cbDataBit, {"8", "7", "6"}, "8");
    fillList(ui_->cbStopBit, {"1", "2"}, "1");
    fillList(ui_->cbParityBit, {"NONE", "EVEN", "ODD"}, "NONE");
    ui_->cbPort->offerWhileTyping();
}

void FrmVarda::optMode_Click(int index) {
    if (index < 0 || index >= static_cast<int>(modes_.size())) {
        return;
    }
    monitorPage_->stopRun(); // closes the log
    const ModeRow& mode = modes_[static_cast<std::size_t>(index)];
    {
        const QSignalBlocker once(mode.option);
        mode.option->setChecked(true);
    }
    ui_->tabMode->setCurrentWidget(mode.tab);
    link_.enterMode(mode.page->mode());
    enableGroups(mode);
    scenarioPanel_->switchRunButtons();
    mode.page->enterMode();
    if (mode.page == simulationPage_) {
        lineNotice_.fileIsSeen();
    }
    if (mode.page != monitorPage_) {
        simulationPage_->switchStartButton();
    }
}

void FrmVarda::enableGroups(const ModeRow& mode) {
    for (const ModeRow& other : modes_) {
        if (other.group) {
            form_.enableGroup(*other.group, other.group == mode.group);
        }
    }
    form_.EnableScenarioControls(findRoute(mode.page->mode()) != nullptr);
}

const FrmVarda::ModeRow& FrmVarda::shownMode() const {
    return *std::ranges::find(modes_, ui_->tabMode->currentWidget(), &ModeRow::tab);
}

void FrmVarda::stopRuns() {
    monitorPage_->stopRun();
    bench_.stopRuns();
    scenarioPanel_->stop();
}

void FrmVarda::shutDown() {
    try {
        stopRuns();
    } catch (const RuntimeError&) { // NOLINT(bugprone-empty-catch): a bad period is no matter at the end
    }
    commPLC_.close();
    tmrComm_->stop();
}

/// The panel beside the pages has a page of its own.
const ManualPage& FrmVarda::shownManualPage() const {
    const QWidget* const focused = focusWidget();
    const bool isInScenario = focused != nullptr && scenarioPanel_->isAncestorOf(focused);
    return isInScenario ? manual_page::scenario : manualPageOf(shownMode().page->mode());
}

void FrmVarda::cmdAbout_Click() { (new FrmAbout(windowTitle(), this))->open(); }

void FrmVarda::cmdEnd_Click() {
    shutDown();
    close();
}

void FrmVarda::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) { // the desktop has turned dark or light
        keepDisabledTextsReadable(this);
    }
}

void FrmVarda::closeEvent(QCloseEvent* event) {
    shutDown();
    insight_.close();
    bench_.close();
    event->accept();
}

} // namespace varda::window
