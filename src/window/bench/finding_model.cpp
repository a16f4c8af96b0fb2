#include "window/bench/finding_model.h"

#include <array>
#include <utility>

namespace varda::window {

int FindingModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(findings_.size());
}

int FindingModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : ColumnCount; }

QVariant FindingModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount() ||
        (role != Qt::DisplayRole && role != Qt::ToolTipRole)) {
        return {};
    }
    const PairFinding& finding = findings_[static_cast<std::size_t>(index.row())];
    switch (index.column()) {
    case Pair:
        return QString::number(static_cast<qulonglong>(finding.pair) + 1);
    case Problem:
        return QString::fromStdString(finding.problem);
    default:
        return QString::fromStdString(finding.remedy);
    }
}

QVariant FindingModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= ColumnCount) {
        return {};
    }
    const std::array names = {tr("Pair"), tr("What is wrong"), tr("What helps")};
    return names.at(static_cast<std::size_t>(section));
}

void FindingModel::show(std::vector<PairFinding> findings) {
    beginResetModel();
    findings_ = std::move(findings);
    endResetModel();
}

} // namespace varda::window
