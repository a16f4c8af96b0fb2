#pragma once

#include "window/bench/bench_context.h"
#include "window/controls/companion_window.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

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
    using Texts = std::pair<std::vector<std::string>, std::vector<std::string>>; ///< requests and answers

    void bind();
    void check();
    void chooseFile();
    void checkFile(const QString& path);
    void showFindings(const PacketTable& table, const QString& name);
    void goToPair();
    void dropStaleFindings();
    Texts pairTexts() const;

    PreparedPairs pairs_;
    BenchContext context_;
    std::unique_ptr<Ui::PairsPanel> ui_;
    HitModel* hits_;
    FindingModel* findings_;
    std::optional<Texts> checked_; ///< whose findings are shown; nothing where they are of a file
};

} // namespace varda::window
