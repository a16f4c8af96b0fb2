#pragma once

#include "core/base/bytes.h"
#include "core/runs/scenario_run.h"
#include "window/controls/page_context.h"

#include <QWidget>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace varda::window {

namespace Ui {
class ScenarioPanel;
}
class FileDialogs;

/// A list of ready-made frames, sent one per period, round and round, until it is stopped.
class ScenarioPanel : public QWidget, public LinkObserver, public ScenarioLines {
    Q_OBJECT
    Q_DISABLE_COPY(ScenarioPanel)

public:
    /// What the panel asks of the window beyond its controls.
    struct Surroundings {
        PeriodTimer& tmrScenario;
        FileDialogs& files;
        std::function<Mode()> shownMode; ///< of the page and option that are shown
        std::function<std::string()>
            shownRequest; ///< of the master page that is shown; empty for another page
        std::function<void()> stopMonitor;
        std::function<void(bool)> enableMasters; ///< the tabs, and sending on the master pages
    };

    ScenarioPanel(const PageContext& context, Surroundings surroundings, QWidget* parent = nullptr);
    ~ScenarioPanel() override;

    /// Whether a scenario can be loaded now.
    bool mayLoad() const;
    /// Loads a scenario as its load button does.
    void load(const QString& path);

    /// Stops a run as its stop button does; nothing where none runs. @throws RuntimeError where the period is
    /// no number
    void stop();
    /// The run button follows the list and the run, the stop button the run.
    void switchRunButtons();

    // A recording is played in the place of a run: the same controls are off meanwhile.

    /// @return whether it may begin; else the user has been told why not, or a run goes on
    bool beginPlaying();
    void sendPlayed(const Bytes& frame);
    void endPlaying();

    /// The line that a run is sending just now; nothing where something else is sent.
    std::optional<std::size_t> lineBeingSent() const { return sending_; }

    /// @param isExpected whether no answer is expected to the line of that row: such a silence ends no run
    void expectSilence(std::function<bool(int row)> isExpected) { run_.expectSilence(std::move(isExpected)); }

    /// Stops the run when a controller stays silent.
    void told(const Exchange& exchange) override;

    int count() const override;
    std::string line(int row) const override;
    int current() const override;
    void choose(int row) override;

    /// One period of a run. @throws RuntimeError where the line is no frame; the run has stopped by then
    void tmrScenario_Timer();

signals:
    void linesInserted(std::size_t first, std::size_t count);
    void linesRemoved(std::size_t first, std::size_t count);
    void linesCleared();
    void loaded(const QString& path);
    void runBegins();

private:
    void tellOfLines();
    void bind();
    void cmdAddScenario_Click();
    void cmdDelScenario_Click();
    void cmdSaveScenario_Click();
    void cmdLoadScenario_Click();
    void cmdRunScenario_Click();
    void cmdStopScenario_Click();

    void startRun();
    void stopRun();
    void freeThePort();
    std::string periodText() const;
    void SetMasterControls(bool enabled);
    void showNumber();
    void endNoteWithChange();
    void showNote(const QString& note, const QString& toolTip = {});
    void tellSaved(const QString& path);
    void saveTo(const QString& path);
    void loadFrom(const QString& path);

    PageContext context_;
    Surroundings surroundings_;
    ScenarioRun run_;
    std::optional<std::size_t> sending_;
    bool isPlaying_ = false;
    std::unique_ptr<Ui::ScenarioPanel> ui_;
};

} // namespace varda::window
