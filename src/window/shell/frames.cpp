#include "window/shell/frames.h"

#include "window/controls/wheel_steps.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QListView>
#include <QMenu>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QStyle>

namespace varda::window {
namespace {

/// A context menu with one entry, which copies a text.
void showCopyMenu(QWidget* field, const QPoint& where, const QString& text) {
    auto* const menu = new QMenu(field);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QAction* const copy =
        menu->addAction(QObject::tr("Copy"), field, [text] { QGuiApplication::clipboard()->setText(text); });
    copy->setObjectName(QStringLiteral("copyFrame"));
    copy->setEnabled(!text.isEmpty());
    menu->popup(where);
}

/// Stands ahead of a frame text and its scroll bar, which do nothing by themselves while they are disabled.
class FrameReader : public QObject {
public:
    explicit FrameReader(QPlainTextEdit* frame) : QObject(frame), frame_(frame) {
        frame->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        for (QObject* const part : {static_cast<QObject*>(frame), static_cast<QObject*>(frame->viewport()),
                                    static_cast<QObject*>(frame->verticalScrollBar())}) {
            part->installEventFilter(this);
        }
    }

    /// The kind of event is asked first: while the frame is taken down, others still come by, and it is no
    /// frame then.
    bool eventFilter(QObject* watched, QEvent* event) override {
        switch (event->type()) {
        case QEvent::ContextMenu:
            return showMenu(watched, *static_cast<const QContextMenuEvent*>(event));
        case QEvent::Wheel:
            return !frame_->isEnabled() && turn(*static_cast<const QWheelEvent*>(event));
        case QEvent::MouseButtonPress:
        case QEvent::MouseMove:
            return !frame_->isEnabled() && drag(watched, *static_cast<const QMouseEvent*>(event));
        default:
            return false;
        }
    }

private:
    QString chosenText() const {
        const QString selected = frame_->textCursor().selectedText();
        return selected.isEmpty() ? frame_->toPlainText() : selected;
    }

    bool showMenu(const QObject* watched, const QContextMenuEvent& event) {
        if (watched == frame_->verticalScrollBar()) {
            return false;
        }
        showCopyMenu(frame_, event.globalPos(), chosenText());
        return true;
    }

    bool turn(const QWheelEvent& wheel) {
        QScrollBar* const bar = frame_->verticalScrollBar();
        bar->setValue(bar->value() - wheelSteps_.take(wheel));
        return true;
    }

    bool drag(const QObject* watched, const QMouseEvent& mouse) {
        QScrollBar* const bar = frame_->verticalScrollBar();
        if (watched != bar) {
            return false;
        }
        const int place = mouse.position().toPoint().y();
        bar->setValue(QStyle::sliderValueFromPosition(0, bar->maximum(), place, bar->height() - 1));
        return true;
    }

    QPlainTextEdit* frame_;
    WheelSteps wheelSteps_;
};

/// Gives a list of frames its menu; pressing the right button chooses no line, for a run goes on from that
/// one.
class ListCopier : public QObject {
public:
    explicit ListCopier(QListView* list) : QObject(list), list_(list) {
        list->viewport()->installEventFilter(this);
    }

    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::ContextMenu) {
            const auto& menu = *static_cast<const QContextMenuEvent*>(event);
            const bool byMouse = menu.reason() == QContextMenuEvent::Mouse;
            const QModelIndex line = byMouse ? list_->indexAt(menu.pos()) : list_->currentIndex();
            showCopyMenu(list_, menu.globalPos(), line.data().toString());
            return true;
        }
        return event->type() == QEvent::MouseButtonPress &&
               static_cast<const QMouseEvent*>(event)->button() == Qt::RightButton;
    }

private:
    QListView* list_;
};

} // namespace

void keepFramesReadable(QWidget* window) {
    for (QPlainTextEdit* const frame : window->findChildren<QPlainTextEdit*>()) {
        new FrameReader(frame);
    }
    for (QListView* const list : window->findChildren<QListView*>()) {
        if (list->objectName().startsWith(QLatin1String("lst")) &&
            list->contextMenuPolicy() != Qt::NoContextMenu) {
            new ListCopier(list);
        }
    }
}

} // namespace varda::window
