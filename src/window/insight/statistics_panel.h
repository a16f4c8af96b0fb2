#pragma once

#include "window/controls/companion_window.h"
#include "window/insight/insight_context.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace varda::window {

namespace Ui {
class StatisticsPanel;
}

/// "Statistics": a row for each kind of request, and what the last ten minutes looked like.
class StatisticsPanel : public CompanionPart {
    Q_OBJECT
    Q_DISABLE_COPY(StatisticsPanel)

public:
    explicit StatisticsPanel(const InsightContext& context, QWidget* parent = nullptr);
    ~StatisticsPanel() override;

    /// Shows how things are now.
    void refresh() final;

private:
    void showRows();
    void setCell(int row, int column, const QString& text);
    void reset();
    void saveCsv();

    InsightContext context_;
    std::unique_ptr<Ui::StatisticsPanel> ui_;
    std::optional<std::uint64_t> shownChanges_;
};

} // namespace varda::window
