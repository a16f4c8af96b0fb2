#pragma once

#include <QTableView>

#include <optional>
#include <vector>

namespace varda::window {

class TraceModel;

/// The table of a trace: follows the latest line, or keeps the lines in sight where they are.
///
/// It follows until a line is chosen or the user scrolls away from the end, and again when the end is
/// reached.
class TraceTable : public QTableView {
    Q_OBJECT

public:
    explicit TraceTable(QWidget* parent = nullptr);

    void showTrace(TraceModel* model);
    bool isFollowing() const { return isFollowing_; }
    void follow(bool isFollowing);
    /// Takes the news of the trace over.
    void takeNews();
    /// Goes to a row, chooses it and brings it into sight.
    void choose(int row);
    std::optional<int> chosenRow() const;
    /// The rows that are selected, from the top.
    std::vector<int> selectedRows() const;

signals:
    void followingChanged(bool isFollowing);
    void lineChosen(int row);

protected:
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void changeEvent(QEvent* event) override;
    void updateGeometries() override;

private:
    void fitRows();
    void fitColumns();
    void scrolled(int value);

    TraceModel* trace_ = nullptr;
    bool isFollowing_ = true;
    bool isMoving_ = false; ///< the program moves the lines, not the user
};

} // namespace varda::window
