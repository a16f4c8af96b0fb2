#include "window/simulator/packet_list_model.h"

namespace varda::window {
namespace {

/// A packet in groups of two digits, some of them in a row: a list shows only its beginning.
QString inRows(const QString& packet) {
    constexpr qsizetype digitsInRow = 64;
    QString rows;
    for (qsizetype start = 0; start < packet.size(); start += 2) {
        const bool isNewRow = start > 0 && start % digitsInRow == 0;
        rows += (isNewRow ? QStringLiteral("\n") : QString()) + packet.mid(start, 2) + QLatin1Char(' ');
    }
    return rows;
}

} // namespace

int PacketListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(entries_.size());
}

QVariant PacketListModel::data(const QModelIndex& index, int role) const {
    const bool isShown = role == Qt::DisplayRole || role == Qt::ToolTipRole;
    if (!isShown || !index.isValid() || index.row() >= rowCount()) {
        return {};
    }
    const QString packet = QString::fromStdString(entries_[static_cast<std::size_t>(index.row())]);
    return role == Qt::DisplayRole ? packet : inRows(packet);
}

void PacketListModel::beginChange(const PacketTableChange& change) {
    if (change.list != list_) {
        return;
    }
    const int row = static_cast<int>(change.row);
    switch (change.kind) {
    case PacketTableChange::Kind::Added:
        beginInsertRows({}, row, row);
        break;
    case PacketTableChange::Kind::Removed:
        beginRemoveRows({}, row, row);
        break;
    case PacketTableChange::Kind::Reset:
        beginResetModel();
        break;
    }
}

void PacketListModel::endChange(const PacketTableChange& change) {
    if (change.list != list_) {
        return;
    }
    switch (change.kind) {
    case PacketTableChange::Kind::Added:
        endInsertRows();
        break;
    case PacketTableChange::Kind::Removed:
        endRemoveRows();
        break;
    case PacketTableChange::Kind::Reset:
        endResetModel();
        break;
    }
}

} // namespace varda::window
