#pragma once

#include "core/insight/register_names.h"
#include "core/insight/register_watch.h"

#include <QAbstractTableModel>

#include <vector>

namespace varda::window {

/// The registers that were seen, by stations, in the order of their addresses: bits, then words.
///
/// It changes when refresh() is called and not in between.
class WatchModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column {
        Station,
        Register,
        RegisterName,
        Decimal,
        Signed,
        Hex,
        Binary,
        Age,
        Changes,
        History,
        ColumnCount
    };

    WatchModel(const RegisterWatch& watch, const RegisterNames& names, const Clock& clock, QObject* parent)
        : QAbstractTableModel(parent), watch_(watch), names_(names), clock_(clock) {}

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    const WatchedRegister& at(int row) const { return watch_.at(order_.at(static_cast<std::size_t>(row))); }

    void refresh();
    /// The registers were forgotten, so that no row stands for one.
    void clear();

private:
    QString textOf(const WatchedRegister& watched, int column) const;
    QString ageOf(const WatchedRegister& watched) const;
    void addNew();

    const RegisterWatch& watch_;
    const RegisterNames& names_;
    const Clock& clock_;
    std::vector<std::size_t> order_; ///< rows of the watch
};

} // namespace varda::window
