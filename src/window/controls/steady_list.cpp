#include "window/controls/steady_list.h"

#include "window/controls/steady_scroll_bar.h"

#include <QScrollBar>

#include <algorithm>

namespace varda::window {
namespace {

/// Keeps a widget from being painted.
class Unpainted {
public:
    explicit Unpainted(QWidget* widget)
        : widget_(widget), isOutermost_(!widget->testAttribute(Qt::WA_UpdatesDisabled)) {
        widget_->setAttribute(Qt::WA_UpdatesDisabled); // setUpdatesEnabled() would paint it in the end
    }
    Unpainted(const Unpainted&) = delete;
    Unpainted& operator=(const Unpainted&) = delete;
    ~Unpainted() {
        if (isOutermost_) {
            widget_->setAttribute(Qt::WA_UpdatesDisabled, false);
        }
    }

private:
    QWidget* widget_;
    bool isOutermost_;
};

/// Both scroll bars of a list, while it is laid out: for each line that comes Qt raises what they stand in,
/// one over the other by turns, and paints them for that. A bar that comes or goes, or gets another size, is
/// painted by itself.
struct UnraisedScrollBars {
    explicit UnraisedScrollBars(const QAbstractScrollArea* list)
        : vertical(list->verticalScrollBar()->parentWidget()),
          horizontal(list->horizontalScrollBar()->parentWidget()) {}

    Unpainted vertical;
    Unpainted horizontal;
};

} // namespace

SteadyList::SteadyList(QWidget* parent) : QListView(parent) { giveSteadyScrollBars(this); }

/// The lines that are there move, and those behind them are painted; all of them where somebody else has
/// moved them meanwhile, for they may be where they were until they are laid out.
void SteadyList::showEnd() {
    const bool wasShown = place() == shown_;
    layOutInSilence();
    const int firstChanged = wasShown && place() == shown_ ? unchanged_ : 0;
    scrollToBottom();
    const int top = visualRect(model()->index(firstChanged, modelColumn())).top();
    viewport()->update(viewport()->rect().adjusted(0, std::max(0, top), 0, 0));
    unchanged_ = model()->rowCount();
    shown_ = place();
}

/// Qt would paint all lines for a layout.
void SteadyList::layOutInSilence() {
    const Unpainted lines(viewport());
    executeDelayedItemsLayout();
    updateGeometries();
}

SteadyList::Place SteadyList::place() const {
    return {viewport()->size(), {horizontalScrollBar()->value(), verticalScrollBar()->value()}};
}

void SteadyList::doItemsLayout() {
    const UnraisedScrollBars unraised(this);
    QListView::doItemsLayout();
}

void SteadyList::updateGeometries() {
    const UnraisedScrollBars unraised(this);
    QListView::updateGeometries();
}

void SteadyList::reset() {
    unchanged_ = 0;
    QListView::reset();
}

void SteadyList::rowsInserted(const QModelIndex& parent, int first, int last) {
    unchanged_ = std::min(unchanged_, first);
    QListView::rowsInserted(parent, first, last);
}

void SteadyList::rowsAboutToBeRemoved(const QModelIndex& parent, int first, int last) {
    unchanged_ = std::min(unchanged_, first);
    QListView::rowsAboutToBeRemoved(parent, first, last);
}

} // namespace varda::window
