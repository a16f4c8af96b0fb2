#include "window/shell/screen_fit.h"

#include "window/system/screen_room.h"

#include <QApplication>
#include <QEvent>
#include <QMainWindow>
#include <QScrollArea>
#include <QScrollBar>

#include <algorithm>

namespace varda::window {
namespace {

void makePlain(QScrollArea* area) {
    area->setFrameShape(QFrame::NoFrame);
    area->setFocusPolicy(Qt::NoFocus);
    area->setWidgetResizable(true);
    area->viewport()->setAutoFillBackground(false);
    // Also where a program sets the focus, or it comes in from outside: an area by itself follows Tab within
    // it alone. The focus moves while the window is taken down, too, when the area is none any more.
    QObject* const object = area;
    QObject::connect(qApp, &QApplication::focusChanged, area, [object](QWidget* /*before*/, QWidget* now) {
        auto* const alive = qobject_cast<QScrollArea*>(object);
        if (alive != nullptr && alive->widget() != nullptr && alive->widget()->isAncestorOf(now)) {
            alive->ensureWidgetVisible(now);
        }
    });
}

/// As wide as its part needs it, so that nothing ever has to be looked for at the side.
class UpAndDown : public QScrollArea {
public:
    explicit UpAndDown(QWidget* part) {
        makePlain(this);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setWidget(part);
        part->setAutoFillBackground(false); // the tab's own shows through
        connect(verticalScrollBar(), &QScrollBar::rangeChanged, this, [this] { updateGeometry(); });
    }

    QSize sizeHint() const override { return widget()->sizeHint(); }

    QSize minimumSizeHint() const override {
        constexpr int fewLines = 6;
        const int bar = verticalScrollBar()->maximum() > 0 ? verticalScrollBar()->sizeHint().width() : 0;
        const QSize whole = widget()->minimumSizeHint();
        return {whole.width() + bar, std::min(whole.height(), fewLines * fontMetrics().height())};
    }

protected:
    /// The part may need more room than before, for example when a field of it is shown.
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == widget() && event->type() == QEvent::LayoutRequest) {
            updateGeometry();
        }
        return QScrollArea::eventFilter(watched, event);
    }
};

} // namespace

QWidget* lettingScroll(QWidget* part) { return new UpAndDown(part); }

void fitScreen(QMainWindow* window) {
    auto* const area = new QScrollArea;
    makePlain(area);
    area->setWidget(window->takeCentralWidget()); // on a ground of its own: none below is painted for a field
    window->setCentralWidget(area);
    window->resize(window->size().boundedTo(roomFor(window)));
}

} // namespace varda::window
