#pragma once

#include "core/base/clock.h"
#include "window/controls/events.h"
#include "window/controls/file_dialogs.h"
#include "window/controls/message_boxes.h"
#include "window/controls/saving.h"
#include "window/insight/insight_context.h"

#include <QWidget>

#include <functional>
#include <memory>

namespace varda::window {

namespace Ui {
class InsightWindow;
}
struct Explained;
class StatisticsPanel;
class TracePanel;
class WatchPanel;

/// The window of the trace: what went over the line, what it says and what became of it. It stands beside the
/// main window, which goes on as it would without it.
class InsightWindow : public QWidget {
    Q_OBJECT
    Q_DISABLE_COPY(InsightWindow)

public:
    InsightWindow(const InsightSources& sources, const std::function<void()>& showHelp,
                  const QString& programFolder);
    ~InsightWindow() override;

    /// Comes to the front, and shows what there is from now on.
    void open();
    /// The trace has news: they are shown soon, many at once.
    void takeNewsSoon();
    void explain(const Explained& explained, std::size_t byte);

signals:
    void closed();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void addShortcuts(const std::function<void()>& showHelp);
    void refreshSoon();
    void refresh();

    MessageBoxes boxes_{this};
    Events events_{boxes_};
    FileDialogs files_;
    FileTalk talk_;
    InsightContext context_;
    std::unique_ptr<Ui::InsightWindow> ui_;
    TracePanel* trace_;
    StatisticsPanel* statistics_;
    WatchPanel* watch_;
    Wait news_;
    Wait refresh_;
};

} // namespace varda::window
