#pragma once

#include "core/base/clock.h"
#include "window/bench/bench_context.h"
#include "window/bench/bench_sources.h"
#include "window/controls/events.h"
#include "window/controls/file_dialogs.h"
#include "window/controls/message_boxes.h"
#include "window/controls/saving.h"

#include <QWidget>

#include <functional>
#include <memory>

namespace varda::window {

namespace Ui {
class BenchWindow;
}
class ExpectationsPanel;
class FaultsPanel;
class RecordingsPanel;

/// The window of the bench, a tab for each of its tools. It stands beside the main window, which goes on as
/// it would without it.
class BenchWindow : public QWidget {
    Q_OBJECT
    Q_DISABLE_COPY(BenchWindow)

public:
    BenchWindow(const BenchSources& sources, const std::function<void()>& showHelp,
                const QString& programFolder);
    ~BenchWindow() override;

    /// Comes to the front.
    void open();
    /// There is something new to show: it is shown soon, much at once.
    void takeNewsSoon();

signals:
    void closed();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void addShortcuts(const std::function<void()>& showHelp);
    void refresh();

    MessageBoxes boxes_{this};
    Events events_{boxes_};
    FileDialogs files_;
    FileTalk talk_;
    BenchContext context_;
    std::unique_ptr<Ui::BenchWindow> ui_;
    FaultsPanel* faults_;
    ControllerPanel* controller_;
    ExpectationsPanel* expectations_;
    RecordingsPanel* recordings_;
    PairsPanel* pairs_;
    Wait news_;
};

} // namespace varda::window
