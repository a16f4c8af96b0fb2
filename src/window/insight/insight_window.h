#pragma once

#include "core/base/clock.h"
#include "window/controls/companion_window.h"
#include "window/insight/insight_context.h"

#include <functional>
#include <memory>

namespace varda::window {

namespace Ui {
class InsightWindow;
}
struct Explained;
class TracePanel;

/// The window of the trace: what went over the line, what it says and what became of it.
class InsightWindow : public CompanionWindow {
    Q_OBJECT
    Q_DISABLE_COPY(InsightWindow)

public:
    InsightWindow(const InsightSources& sources, const std::function<void()>& showHelp,
                  const QString& programFolder);
    ~InsightWindow() override;

    void explain(const Explained& explained, std::size_t byte);

protected:
    void opened() override;
    void takeNews() override;
    void refresh() override;
    void closeEvent(QCloseEvent* event) override;

private:
    InsightContext context_;
    std::unique_ptr<Ui::InsightWindow> ui_;
    TracePanel* trace_;
    Wait refresh_;
};

} // namespace varda::window
