#pragma once

#include <QAbstractTableModel>

#include <functional>
#include <string>

namespace varda::window {

class ScenarioExpectations;

/// The lines of the scenario with what is expected of each, and what became of that. What is expected is
/// edited in place.
class ExpectationModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Line, Request, Wanted, Limit, Result, Why, Right, Wrong, ColumnCount };

    /// @param lineText a line of the scenario, as it stands there
    ExpectationModel(ScenarioExpectations& expectations, std::function<std::string(int row)> lineText,
                     QObject* parent);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

    /// Shows other lines.
    void reset();
    /// Shows what became of them. What is expected stays as it is shown: somebody may be typing.
    void refresh();

private:
    QString textOf(int row, int column) const;
    QString result(int row) const;

    ScenarioExpectations& expectations_;
    std::function<std::string(int row)> lineText_;
    int rows_ = 0;
};

} // namespace varda::window
