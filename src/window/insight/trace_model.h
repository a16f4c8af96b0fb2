#pragma once

#include "core/insight/register_names.h"
#include "core/insight/trace_search.h"
#include "core/insight/trace_view.h"
#include "core/insight/trace_words.h"

#include <QAbstractTableModel>

#include <optional>
#include <vector>

namespace varda::window {

/// The lines of a trace that pass a filter, as a table: their words are made when somebody looks at them,
/// nothing is copied.
///
/// It changes when takeNews() is called and not in between, however much goes over the line. Held, it takes
/// no news: what comes meanwhile waits in the trace.
class TraceModel : public QAbstractTableModel {
    Q_OBJECT

public:
    TraceModel(Trace& trace, const RegisterNames& names, QObject* parent);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    Trace::Number line(int row) const;
    std::vector<Trace::Number> lines() const;
    /// The row of a line; nothing where the filter keeps it back.
    std::optional<int> rowOf(Trace::Number number) const;

    /// Begins anew with another filter, without rows: fill() brings them.
    void setFilter(const TraceFilter& filter);
    const TraceFilter& filter() const { return view_.filter(); }
    /// Looks at some of the lines that were not looked at yet, and adds rows for those that pass.
    /// @return whether lines are left
    bool fill();
    /// Lines that were not looked at yet.
    std::size_t left() const { return view_.left(); }

    void setHeld(bool isHeld) { isHeld_ = isHeld; }
    bool isHeld() const { return isHeld_; }
    /// Brings the rows up to date; where many lines are new, fill() goes on with them.
    /// @return how many went away at the front
    int takeNews();
    /// Names of registers are other ones.
    void showNames();

    /// A search among the rows, from a line on or back; not to be used any more with another filter.
    TraceSearch search(const TraceFilter& wanted, std::optional<Trace::Number> from, bool isForward) const {
        return {view_, wanted, from, isForward};
    }
    /// Marks lines, or takes their marks away. @param numbers in order
    void mark(const std::vector<Trace::Number>& numbers, bool isMarked);

private:
    QString cell(Trace::Number number, TraceColumn column) const;
    QString whole(Trace::Number number, TraceColumn column) const;
    void dropRows(int first, int last);
    void addRows();

    Trace& trace_;
    const RegisterNames& names_;
    TraceView view_;
    int rows_ = 0;
    int shift_ = 0; ///< rows at the front that the view has lost already and the model still has
    bool isHeld_ = false;
};

} // namespace varda::window
