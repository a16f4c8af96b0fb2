#pragma once

#include <QAbstractTableModel>

#include <cstddef>

namespace varda::inline core {
class PacketTable;
class PairHits;
} // namespace varda::core

namespace varda::window {

/// The prepared pairs with how often each has answered. It changes when refresh() is called.
class HitModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Pair, Hits, Words, Request, Answer, ColumnCount };

    /// @param pairs, hits outlive the model
    HitModel(const PacketTable& pairs, const PairHits& hits, QObject* parent)
        : QAbstractTableModel(parent), pairs_(pairs), hits_(hits) {}

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    void refresh();

private:
    QString textOf(std::size_t row, int column) const;

    const PacketTable& pairs_;
    const PairHits& hits_;
    int rows_ = 0;
};

} // namespace varda::window
