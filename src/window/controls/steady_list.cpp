#include "window/controls/steady_list.h"

#include "window/controls/steady_scroll_bar.h"

#include <QScrollBar>

namespace varda::window {
namespace {

/// Keeps what a scroll bar stands in from being painted for nothing else than that it is raised: for each
/// line that comes Qt raises both, one over the other by turns. A bar that comes or goes, or gets another
/// size, is painted by itself.
class Unraised {
public:
    explicit Unraised(const QScrollBar* bar)
        : place_(bar->parentWidget()), isOutermost_(!place_->testAttribute(Qt::WA_UpdatesDisabled)) {
        place_->setAttribute(Qt::WA_UpdatesDisabled); // setUpdatesEnabled() would paint it in the end
    }
    Unraised(const Unraised&) = delete;
    Unraised& operator=(const Unraised&) = delete;
    ~Unraised() {
        if (isOutermost_) {
            place_->setAttribute(Qt::WA_UpdatesDisabled, false);
        }
    }

private:
    QWidget* place_;
    bool isOutermost_;
};

} // namespace

SteadyList::SteadyList(QWidget* parent) : QListView(parent) { giveSteadyScrollBars(this); }

/// The lines are laid out, and by that painted, all of them: moved pixels would be painted over.
void SteadyList::showEnd() {
    viewport()->setUpdatesEnabled(false);
    scrollToBottom();
    viewport()->setUpdatesEnabled(true);
}

void SteadyList::doItemsLayout() {
    const Unraised vertical(verticalScrollBar());
    const Unraised horizontal(horizontalScrollBar());
    QListView::doItemsLayout();
}

void SteadyList::updateGeometries() {
    const Unraised vertical(verticalScrollBar());
    const Unraised horizontal(horizontalScrollBar());
    QListView::updateGeometries();
}

} // namespace varda::window
