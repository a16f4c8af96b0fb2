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
    noteLength(line);
    lines_.push_back(std::move(line));
    endInsertRows();
}

/// Of a line that goes behind the others. Its text is not made for that.
void MonitorModel::noteLength(const MonitorLine& line) {
    const std::size_t length = line.textLength(paintedBytes);
    if (longestRow_ < 0 || length > longest_) {
        longest_ = length;
        longestRow_ = rowCount();
    }
}

void MonitorModel::clear() {
    beginResetModel();
    longest_ = 0;
    longestRow_ = -1;
    lines_.clear();
    lines_.shrink_to_fit();
    endResetModel();
}

} // namespace varda::window
