#pragma once

#include "core/faults/fault_plan.h"

#include <QAbstractTableModel>

#include <vector>

namespace varda::window {

class FaultSwitch;

/// Every fault that there is, a row each: whether it is chosen, its number, how often, and how often it was
/// done. Cells are edited in place.
class FaultModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Name, Number, Rate, Done, Help, ColumnCount };

    FaultModel(FaultSwitch& faults, QObject* parent);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

    /// How often each fault was done is another number.
    void showDone();

signals:
    /// A text that was typed is no number, or does not say how often: why, and what helps. Empty once one is.
    void refused(const QString& problem);

private:
    void takeChosen();
    void tick(std::size_t row, bool isTicked);
    bool type(std::size_t row, int column, const std::string& text);
    QString textOf(std::size_t row, int column) const;

    FaultSwitch& faults_;
    std::vector<PlannedFault> rows_; ///< as they stand there, chosen or not
    std::vector<bool> isTicked_;
};

} // namespace varda::window
