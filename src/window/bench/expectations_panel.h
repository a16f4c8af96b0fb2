#pragma once

#include "window/bench/bench_context.h"
#include "window/controls/companion_window.h"

#include <functional>
#include <memory>
#include <string>

namespace varda::window {

namespace Ui {
class ExpectationsPanel;
}
class ExpectationModel;
class ScenarioExpectations;

/// "Expectations": what is wanted of the answers to a scenario, and what became of that while it runs.
class ExpectationsPanel : public CompanionPart {
    Q_OBJECT
    Q_DISABLE_COPY(ExpectationsPanel)

public:
    ExpectationsPanel(ScenarioExpectations& expectations, std::function<std::string(int row)> lineText,
                      const BenchContext& context, QWidget* parent = nullptr);
    ~ExpectationsPanel() override;

    /// Shows how things are now.
    void refresh() final;

private:
    void takeFromRun();
    void chooseFile();
    void chooseWhereToSave();
    void load(const QString& path);
    void save(const QString& path);
    void showAll();
    void showProblem();

    BenchContext context_;
    ScenarioExpectations& expectations_;
    std::unique_ptr<Ui::ExpectationsPanel> ui_;
    ExpectationModel* model_;
    QString news_; ///< of what was done last
};

} // namespace varda::window
