#pragma once

#include "core/runs/monitor_run.h"
#include "window/controls/mode_page.h"
#include "window/controls/page_context.h"
#include "window/monitor/monitor_model.h"

#include <QTime>

#include <functional>
#include <memory>

namespace varda::window {

namespace Ui {
class MonitorPage;
}
class FileDialogs;
class FrmMonitoringData;

/// "Monitoring": lists every burst that the open port receives, and keeps a log of it.
class MonitorPage : public ModePage, public LinkObserver {
    Q_OBJECT
    Q_DISABLE_COPY(MonitorPage)

public:
    /// What the page asks of the window beyond its controls.
    struct Surroundings {
        FileDialogs& files;
        Clock& clock;
        std::function<QTime()> now; ///< time of day for the stamps
    };

    MonitorPage(const PageContext& context, Surroundings surroundings, QWidget* parent = nullptr);
    ~MonitorPage() override;

    Mode mode() const override { return Mode::MonitorIdle; }
    /// The log's controls follow its check box.
    void enterMode() override { chkMonLog_Click(); }

    /// Lists what is heard, and logs it where a log was chosen.
    void told(const Exchange& exchange) override;
    /// Stops a monitoring run as its stop button does; nothing where none runs.
    void stopRun();
    /// Shows whether the page listens, and switches its buttons to what they can do; the port may have been
    /// opened or closed.
    void showRun();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void bind();
    void cmdMonStart_Click();
    void cmdMonStop_Click();
    void cmdMonLogFile_Click();
    void chkMonLog_Click();
    void cmdClear_Click();
    void switchButtons(bool listening, bool running);

    void listBurst(const Bytes& burst);
    void showLine();
    bool isBelowLines(const QEvent& press) const;

    PageContext context_;
    Surroundings surroundings_;
    std::unique_ptr<Ui::MonitorPage> ui_;
    MonitorModel lines_;
    MonitorRun run_;
    FrmMonitoringData* frmMonitoringData_;
    QString logToolTip_; ///< of the log's check box while nothing is wrong
};

} // namespace varda::window
