#pragma once

#include "core/insight/trace_filter.h"

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
    /// Takes the news of the trace over, the first of them where they are many; fill() goes on.
    void takeNews();
    /// Begins to show the lines that pass another filter; fill() brings them. The line that was chosen last
    /// is chosen again when it is among them, whatever was typed meanwhile.
    void setFilter(const TraceFilter& filter);
    /// Adds some of the lines that were not looked at yet. @return whether lines are left
    bool fill();
    /// Goes to a row, chooses it and brings it into sight.
    void choose(int row);
    std::optional<Trace::Number> chosenLine() const;
    /// The lines that are selected, from the top.
    std::vector<Trace::Number> selectedLines() const;
    int selectedCount() const;

signals:
    void followingChanged(bool isFollowing);
    void lineChosen(int row);

protected:
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
    void changeEvent(QEvent* event) override;
    void updateGeometries() override;

private:
    void fitRows();
    void scrolled(int value);
    void chooseAgain();
    template <typename Change>
    void keepSight(Change&& change);

    TraceModel* trace_ = nullptr;
    std::optional<Trace::Number> chosen_; ///< by the user, also while the filter keeps it back
    bool isFollowing_ = true;
    bool isMoving_ = false; ///< the program moves the lines, not the user
};

} // namespace varda::window
