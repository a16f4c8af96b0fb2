#pragma once

#include "core/runs/monitor_run.h"

#include <QAbstractListModel>

#include <vector>

namespace varda::window {

/// The lines of the monitor, oldest first.
class MonitorModel : public QAbstractListModel, public MonitorLines {
    Q_OBJECT

public:
    int rowCount(const QModelIndex& parent = {}) const override;
    /// The exact text of a line.
    QVariant data(const QModelIndex& index, int role) const override;

    std::size_t count() const override { return lines_.size(); }
    void append(MonitorLine line) override;
    void clear() override;
    const MonitorLine& line(int row) const { return lines_[static_cast<std::size_t>(row)]; }

private:
    std::vector<MonitorLine> lines_;
};

} // namespace varda::window
