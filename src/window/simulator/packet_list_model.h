#pragma once

#include "core/pairs/packet_table.h"

#include <QAbstractListModel>

namespace varda::window {

/// One of the two lists of a packet table as a list view shows it; tens of thousands of rows cost nothing
/// until they are looked at.
class PacketListModel : public QAbstractListModel {
    Q_OBJECT

public:
    PacketListModel(const PacketTable& table, PacketTableChange::List list) : table_(table), list_(list) {}

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

    /// To be called around each edit of the table; edits of the other list are ignored.
    void beginChange(const PacketTableChange& change);
    void endChange(const PacketTableChange& change);

private:
    const std::vector<std::string>& entries() const;

    const PacketTable& table_;
    PacketTableChange::List list_;
};

} // namespace varda::window
