#pragma once

#include <QAbstractTableModel>

#include <cstddef>
#include <cstdint>

namespace varda::inline core {
class UnknownRequests;
struct UnknownRequest;
} // namespace varda::core

namespace varda::window {

/// The requests that no prepared pair answers, as a table. It changes when refresh() is called.
class UnknownModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Count, Request, Words, Answered, ColumnCount };

    /// @param unknown outlives the model
    UnknownModel(const UnknownRequests& unknown, QObject* parent)
        : QAbstractTableModel(parent), unknown_(unknown) {}

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /// Shows new requests and counts.
    void refresh();
    /// Some have been forgotten.
    void reset();

private:
    static QString textOf(const UnknownRequest& request, int column);
    static QString answeredInWords(const UnknownRequest& request);

    const UnknownRequests& unknown_;
    int rows_ = 0;
};

} // namespace varda::window
