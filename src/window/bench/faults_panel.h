#pragma once

#include "window/bench/bench_context.h"
#include "window/controls/companion_window.h"

#include <memory>

namespace varda::window {

namespace Ui {
class FaultsPanel;
}
class FaultModel;
class FaultSwitch;

/// "Faults": which faults are done on purpose, how often, by which seed.
class FaultsPanel : public CompanionPart {
    Q_OBJECT
    Q_DISABLE_COPY(FaultsPanel)

public:
    FaultsPanel(FaultSwitch& faults, const BenchContext& context, QWidget* parent = nullptr);
    ~FaultsPanel() override;

    /// Shows how often each was done by now.
    void refresh() final;

private:
    void bind();
    void takeSeed();
    void takeText();
    void untickAll();
    void showChosen();
    void showProblems(const QString& ofCell = {});

    BenchContext context_;
    FaultSwitch& faults_;
    std::unique_ptr<Ui::FaultsPanel> ui_;
    FaultModel* model_;
    QString textProblem_;
    QString seedProblem_;
};

} // namespace varda::window
