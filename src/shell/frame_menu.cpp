#include "shell/frame_menu.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QListView>
#include <QMenu>
#include <QPlainTextEdit>

#include <functional>
#include <utility>

namespace varda {
namespace {

/// Opens the menu ahead of the field, which a disabled one would not do by itself.
class FrameMenu : public QObject {
public:
    using Text = std::function<QString()>;

    FrameMenu(QAbstractScrollArea* field, Text text) : QObject(field), field_(field), text_(std::move(text)) {
        field->installEventFilter(this);
        field->viewport()->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::ContextMenu) {
            return QObject::eventFilter(watched, event);
        }
        showMenu(static_cast<const QContextMenuEvent*>(event)->globalPos());
        return true;
    }

private:
    void showMenu(const QPoint& where) {
        auto* const menu = new QMenu(field_);
        menu->setAttribute(Qt::WA_DeleteOnClose);
        QAction* const copy =
            menu->addAction(tr("Copy"), this, [this] { QGuiApplication::clipboard()->setText(text_()); });
        copy->setObjectName(QStringLiteral("copyFrame"));
        copy->setEnabled(!text_().isEmpty());
        menu->popup(where);
    }

    QAbstractScrollArea* field_;
    Text text_;
};

QString copiedFrom(const QPlainTextEdit* frame) {
    const QString selected = frame->textCursor().selectedText();
    return selected.isEmpty() ? frame->toPlainText() : selected;
}

} // namespace

void offerCopy(QWidget* window) {
    for (QPlainTextEdit* const frame : window->findChildren<QPlainTextEdit*>()) {
        frame->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        new FrameMenu(frame, [frame] { return copiedFrom(frame); });
    }
    for (QListView* const list : window->findChildren<QListView*>()) {
        if (list->objectName().startsWith(QLatin1String("lst")) &&
            list->contextMenuPolicy() != Qt::NoContextMenu) {
            new FrameMenu(list, [list] { return list->currentIndex().data().toString(); });
        }
    }
}

} // namespace varda
