#pragma once

#include "window/controls/page_context.h"

#include <QWidget>

#include <cstdint>
#include <functional>
#include <memory>

namespace varda::window {

namespace Ui {
class ScenarioPanel;
}
class FileDialogs;

/// A list of ready-made frames, sent one per period, round and round, until it is stopped.
class ScenarioPanel : public QWidget {
    Q_OBJECT
    Q_DISABLE_COPY(ScenarioPanel)

public:
    /// What the panel asks of the window beyond its controls.
    struct Surroundings {
        PeriodTimer& tmrScenario;
        FileDialogs& files;
        std::function<std::int16_t()> shownCommMode; ///< CommMode of the page and option that are shown
    };

    ScenarioPanel(const PageContext& context, Surroundings surroundings, QWidget* parent = nullptr);
    ~ScenarioPanel() override;

    /// Stops a run as its stop button does; nothing where none runs. @throws RuntimeError where the period is
    /// no number
    void stop();
    /// The run button follows the list and CommMode, the stop button CommMode.
    void switchRunButtons();

    /// One period of a run. @throws RuntimeError where the line is no frame; the run has stopped by then
    void tmrScenario_Timer();

private:
    void bind();
    void cmdAddScenario_Click();
    void cmdDelScenario_Click();
    void cmdSaveScenario_Click();
    void cmdLoadScenario_Click();
    void cmdRunScenario_Click();
    void cmdStopScenario_Click();

    void startRun();
    void stopRun();
    void sendNextLine();
    int typedPeriod() const;
    void SetMasterControls(bool enabled);
    void showNumber();
    void saveTo(const QString& path);
    void loadFrom(const QString& path);

    PageContext context_;
    Surroundings surroundings_;
    std::unique_ptr<Ui::ScenarioPanel> ui_;
};

} // namespace varda::window
