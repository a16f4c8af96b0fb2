#pragma once

#include "core/pairs/packet_table.h"

#include <QAbstractListModel>

namespace varda::window {

/// One of the two lists of a packet table as a list view shows it; tens of thousands of rows cost nothing
/// until they are looked at.
class PacketListModel : public QAbstractListModel {
    Q_OBJECT

public:
    PacketListModel(const PacketTable& table, PacketTableChange::List list)
        : list_(list),
          entries_(list == PacketTableChange::List::Requests ? table.requests() : table.answers()) {}

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

    /// To be called around each edit of the table; edits of the other list are ignored.
    void beginChange(const PacketTableChange& change);
    void endChange(const PacketTableChange& change);

private:
    PacketTableChange::List list_;
    const std::vector<std::string>& entries_;
};

} // namespace varda::window
