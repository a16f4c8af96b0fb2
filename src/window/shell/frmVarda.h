#pragma once

#include "core/base/period_timer.h"
#include "core/link/mscomm.h"
#include "core/link/serial_link.h"
#include "core/protocol/frame_image.h"
#include "window/bench/bench.h"
#include "window/controls/events.h"
#include "window/controls/file_dialogs.h"
#include "window/controls/guarded_clock.h"
#include "window/controls/message_boxes.h"
#include "window/insight/insight.h"
#include "window/shell/announcer.h"
#include "window/shell/file_loader.h"
#include "window/shell/frame_tips.h"
#include "window/shell/last_answers.h"
#include "window/shell/line_notice.h"
#include "window/shell/link_port.h"
#include "window/shell/link_presenter.h"
#include "window/shell/manual.h"
#include "window/shell/window_form.h"

#include <QMainWindow>
#include <QTime>

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

class QRadioButton;

namespace varda::window {

namespace Ui {
class FrmVarda;
}
class MasterPage;
class ModePage;
class MonitorPage;
class PortCorner;
class ScenarioPanel;
class SimulationPage;

/// The main window: owns the link, the timers, the frame images and the pages, and wires them; switches the
/// modes.
class FrmVarda : public QMainWindow {
    Q_OBJECT
    Q_DISABLE_COPY(FrmVarda)

public:
    /// What the window takes from outside, so that tests can put their own in its place.
    struct Surroundings {
        Clock& clock;                   ///< where waits come from
        MSComm::LineFactory makeLine;   ///< turns a port's name into a closed line
        std::function<double()> random; ///< draws a number of at least 0 and below 1
        QString programFolder;          ///< the program's own folder, where dialogs start
        std::function<QTime()> now;     ///< time of day for the monitor's stamps
        /// Makes a stopped period timer that runs `tick` at each of its ticks.
        std::function<std::unique_ptr<PeriodTimer>(std::function<void()> tick)> makeTimer;
        Controller* controller = nullptr; ///< the embedded one, whose memory the bench shows
    };

    explicit FrmVarda(const Surroundings& surroundings, QWidget* parent = nullptr);
    ~FrmVarda() override;

    Form& form() { return form_; }
    SerialLink& link() { return link_; }
    const FrameImages& images() const { return images_; }

    /// Shows the page of a mode and prepares it; an index that is no mode's does nothing.
    void optMode_Click(int index);

    const FileLoader& fileLoader() const { return *fileLoader_; }
    const Insight& insight() const { return insight_; }
    const Bench& bench() const { return bench_; }

    /// Ends whatever runs, and closes the log and the port: all that the end of the program has to leave in
    /// order.
    void shutDown();

protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    struct ModeRow {
        QRadioButton* option;
        QWidget* tab;
        std::optional<ControlGroup> group; ///< the controls that are on in this mode alone
        ModePage* page;
    };

    void makePortCorner(const Surroundings& surroundings);
    void makePages(const Surroundings& surroundings);
    void addPages();
    void bind();
    void attachInsight(const QString& programFolder);
    void attachBench(const QString& programFolder);
    void showPair(std::size_t row);
    void Form_Load();
    void fillSerialLists();
    void repeatRequest(Mode mode);
    void enableMasters(bool enabled);
    void stopRuns();
    void commPLC_Event(CommEvent event, const std::string& reason);
    void cmdPortOpen_Click();
    void addShortcuts();
    const ManualPage& shownManualPage() const;
    void cmdAbout_Click();
    void cmdEnd_Click();
    const ModeRow& shownMode() const;
    void enableGroups(const ModeRow& mode);

    std::unique_ptr<Ui::FrmVarda> ui_;
    MessageBoxes boxes_{this};
    Events events_{boxes_};
    WindowForm form_{events_, boxes_};
    GuardedClock clock_;

    Insight insight_{clock_};
    Bench bench_;
    MSComm commPLC_;
    MSComm commTest_;
    std::unique_ptr<PeriodTimer> tmrComm_;
    std::unique_ptr<PeriodTimer> tmrScenario_;
    FrameImages images_;
    SerialLink link_;
    LinkPresenter presenter_{form_};
    LastAnswers lastAnswers_{form_};
    FrameTips frameTips_{*this};
    LinkPort linkPort_;
    Announcer announcer_{clock_};
    LineNotice lineNotice_;
    const std::function<bool()> isFreeForRun_ = [this] { return linkPort_.isFreeForRun(); };
    FileDialogs files_;
    Manual manual_;
    std::unique_ptr<FileLoader> fileLoader_;

    PortCorner* portCorner_ = nullptr;
    SimulationPage* simulationPage_ = nullptr;
    MonitorPage* monitorPage_ = nullptr;
    ScenarioPanel* scenarioPanel_ = nullptr;
    std::vector<ModeRow> modes_; ///< in the order of their options
    std::vector<MasterPage*> masters_;
};

} // namespace varda::window
