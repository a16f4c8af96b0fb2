#include "window/monitor/monitor_model.h"

#include <utility>

namespace varda::window {

int MonitorModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(lines_.size());
}

QVariant MonitorModel::data(const QModelIndex& index, int role) const {
    if (role != Qt::DisplayRole || !index.isValid() || index.row() >= rowCount()) {
        return {};
    }
    const std::string text = line(index.row()).text();
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

void MonitorModel::append(MonitorLine line) {
    beginInsertRows({}, rowCount(), rowCount());
    lines_.push_back(std::move(line));
    endInsertRows();
}

void MonitorModel::clear() {
    beginResetModel();
    lines_.clear();
    lines_.shrink_to_fit();
    endResetModel();
}

} // namespace varda::window
