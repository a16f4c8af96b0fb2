#pragma once

#include "core/insight/pair_lint.h"

#include <QAbstractTableModel>

#include <vector>

namespace varda::window {

/// What is wrong, or odd, about prepared pairs, with what helps.
class FindingModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Pair, Problem, Remedy, ColumnCount };

    using QAbstractTableModel::QAbstractTableModel;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    void show(std::vector<PairFinding> findings);
    const std::vector<PairFinding>& findings() const { return findings_; }

private:
    std::vector<PairFinding> findings_;
};

} // namespace varda::window
