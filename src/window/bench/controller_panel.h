#pragma once

#include "core/runs/living_controller.h"
#include "window/bench/bench_context.h"
#include "window/controls/companion_window.h"

#include <functional>
#include <memory>
#include <optional>

class QTabBar;

namespace varda::inline core {
class PacketTable;
class UnknownRequests;
} // namespace varda::core

namespace varda::window {

namespace Ui {
class ControllerPanel;
}
class MemoryModel;
class UnknownModel;

/// What simulates a controller beyond the prepared pairs.
struct SimulatedController {
    LivingController& living;
    Controller& controller;
    UnknownRequests& unknown;
    const PacketTable& pairs;
    std::function<void(const PairTexts& pair)> addPair; ///< as if it had been typed
};

/// "Controller": answers from memory, the memory, and the requests that no prepared pair answers.
class ControllerPanel : public CompanionPart {
    Q_OBJECT
    Q_DISABLE_COPY(ControllerPanel)

public:
    ControllerPanel(SimulatedController simulated, const BenchContext& context, QWidget* parent = nullptr);
    ~ControllerPanel() override;

    /// Shows how things are now.
    void refresh() final;

private:
    void makeTables();
    void bind();
    void chooseMemory();
    void chooseWhereToSave();
    void load(const QString& path);
    void save(const QString& path);
    void makePair();
    void clearUnknown();
    std::optional<int> editedRow() const;
    void showMemoryState(const QString& news);
    void showUnknownState(const QString& news);

    SimulatedController simulated_;
    BenchContext context_;
    std::unique_ptr<Ui::ControllerPanel> ui_;
    QTabBar* kinds_;
    MemoryModel* memory_;
    UnknownModel* unknown_;
};

} // namespace varda::window
