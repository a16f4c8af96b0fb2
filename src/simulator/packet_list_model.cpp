#include "simulator/packet_list_model.h"

namespace varda {

const std::vector<std::string>& PacketListModel::entries() const {
    return list_ == PacketTableChange::List::Requests ? table_.requests() : table_.answers();
}

int PacketListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(entries().size());
}

QVariant PacketListModel::data(const QModelIndex& index, int role) const {
    if (role != Qt::DisplayRole || !index.isValid() || index.row() >= rowCount()) {
        return {};
    }
    return QString::fromStdString(entries()[static_cast<std::size_t>(index.row())]);
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

} // namespace varda
