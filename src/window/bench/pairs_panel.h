#pragma once

#include "window/bench/bench_context.h"
#include "window/controls/companion_window.h"

#include <cstddef>
#include <functional>
#include <memory>

namespace varda::inline core {
class PacketTable;
class PairHits;
} // namespace varda::core

namespace varda::window {

namespace Ui {
class PairsPanel;
}
class FindingModel;
class HitModel;

/// The prepared pairs, and what is kept beside them.
struct PreparedPairs {
    const PacketTable& table;
    PairHits& hits;
    std::function<void(std::size_t row)> show; ///< on their own page
};

/// "Pairs": how often each prepared pair has answered, and what is wrong with them.
class PairsPanel : public CompanionPart {
    Q_OBJECT
    Q_DISABLE_COPY(PairsPanel)

public:
    PairsPanel(PreparedPairs pairs, const BenchContext& context, QWidget* parent = nullptr);
    ~PairsPanel() override;

    /// Shows how things are now.
    void refresh() final;

private:
    void bind();
    void check();
    void chooseFile();
    void checkFile(const QString& path);
    void showFindings(const PacketTable& table, const QString& name);
    void goToPair();

    PreparedPairs pairs_;
    BenchContext context_;
    std::unique_ptr<Ui::PairsPanel> ui_;
    HitModel* hits_;
    FindingModel* findings_;
    bool areOfFile_ = false; ///< the findings, which belong to no pair that is loaded
};

} // namespace varda::window
