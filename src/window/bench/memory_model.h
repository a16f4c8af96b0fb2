#pragma once

#include "core/virtual/controller_memory.h"

#include <QAbstractTableModel>

#include <cstddef>
#include <optional>

namespace varda::inline core {
class Controller;
} // namespace varda::core

namespace varda::window {

/// The words of one kind of a controller's memory: decimal, hexadecimal and bit by bit, each edited in place.
class MemoryModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Register, Decimal, Hex, FirstBit };
    static constexpr int bits = 16; ///< columns, the highest bit first
    static constexpr int columns = FirstBit + bits;

    /// @param controller outlives the model
    MemoryModel(Controller& controller, QObject* parent);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

    /// @param kind of registerKinds()
    void showKind(std::size_t kind);
    /// Shows what has changed in the memory. @param held a row in which somebody types
    void refresh(std::optional<int> held);
    std::size_t wordsSet() const;

signals:
    /// What was typed is no word: why, and what helps. Empty once one is.
    void refused(const QString& problem);

private:
    int address(int row) const;
    QVariant text(int row, int column) const;
    bool type(int row, int column, const QString& typed);
    void change(int row, std::uint16_t word);

    Controller& controller_;
    ControllerMemory shown_;
    std::size_t kind_ = 0;
};

} // namespace varda::window
