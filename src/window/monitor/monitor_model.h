#pragma once

#include "core/runs/monitor_run.h"

#include <QAbstractListModel>

#include <vector>

namespace varda::window {

/// The lines of the monitor, oldest first.
class MonitorModel : public QAbstractListModel, public MonitorLines {
    Q_OBJECT

public:
    /// No more of a line is painted: no screen is wider.
    static constexpr std::size_t paintedBytes = 1000;

    int rowCount(const QModelIndex& parent = {}) const override;
    /// The exact text of a line.
    QVariant data(const QModelIndex& index, int role) const override;

    std::size_t count() const override { return lines_.size(); }
    void append(MonitorLine line) override;
    void clear() override;
    const MonitorLine& line(int row) const { return lines_[static_cast<std::size_t>(row)]; }
    /// The row of which the most is painted, the first of several; -1 where there is none.
    int longestRow() const { return longestRow_; }

private:
    void noteLength(const MonitorLine& line);

    std::vector<MonitorLine> lines_;
    std::size_t longest_ = 0; ///< characters
    int longestRow_ = -1;
};

} // namespace varda::window
