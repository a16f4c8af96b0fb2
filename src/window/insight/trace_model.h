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

    const Trace& trace() const { return trace_; }
    Trace::Number line(int row) const;
    std::vector<Trace::Number> lines() const;
    /// The row of a line; nothing where the filter keeps it back.
    std::optional<int> rowOf(Trace::Number number) const;

    void setFilter(const TraceFilter& filter);
    void setHeld(bool isHeld) { isHeld_ = isHeld; }
    bool isHeld() const { return isHeld_; }
    /// Brings the rows up to date. @return how many went away at the front
    int takeNews();
    /// Names of registers are other ones.
    void showNames();

    /// A search among the rows, from a line on or back.
    TraceSearch search(const TraceFilter& wanted, std::optional<Trace::Number> from, bool isForward) const {
        return {view_, wanted, from, isForward};
    }
    void mark(Trace::Number number, bool isMarked);

private:
    QString cell(Trace::Number number, TraceColumn column) const;
    QString whole(Trace::Number number, TraceColumn column) const;
    void dropRows(int first, int last);

    Trace& trace_;
    const RegisterNames& names_;
    TraceView view_;
    int rows_ = 0;
    int shift_ = 0; ///< rows at the front that the view has lost already and the model still has
    bool isHeld_ = false;
};

} // namespace varda::window
