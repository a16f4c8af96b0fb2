#pragma once

#include "window/bench/bench_context.h"
#include "window/bench/bench_sources.h"
#include "window/controls/companion_window.h"

#include <functional>
#include <memory>

namespace varda::window {

namespace Ui {
class BenchWindow;
}

/// The window of the bench, a tab for each of its tools.
class BenchWindow : public CompanionWindow {
    Q_OBJECT
    Q_DISABLE_COPY(BenchWindow)

public:
    BenchWindow(const BenchSources& sources, const std::function<void()>& showHelp,
                const QString& programFolder);
    ~BenchWindow() override;

private:
    void add(CompanionPart* part, const QString& title);

    std::unique_ptr<Ui::BenchWindow> ui_;
};

} // namespace varda::window
