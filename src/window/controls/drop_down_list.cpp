#include "window/controls/drop_down_list.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QListView>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <QWheelEvent>

#include <algorithm>

namespace varda::window {
namespace {

/// Marks, in a list that opens, the entry that stands in the field: a text that was typed chooses none by
/// itself, and the list would mark the one that was chosen before.
class EntryMarker : public QObject {
public:
    explicit EntryMarker(QComboBox* list) : QObject(list), list_(list) {
        list->view()->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Show) {
            keepOutOfTheYellow();
            markShownEntry();
        }
        return QObject::eventFilter(watched, event);
    }

private:
    /// The field has a colour while it has the focus, which its list would take over.
    void keepOutOfTheYellow() {
        const QPalette usual = QApplication::palette(list_->view());
        QPalette palette;
        for (const QPalette::ColorRole role : {QPalette::Base, QPalette::Text}) {
            palette.setColor(role, usual.color(QPalette::Active, role));
        }
        list_->view()->setPalette(palette);
    }

    void markShownEntry() {
        const int row = list_->findText(list_->currentText(), Qt::MatchExactly | Qt::MatchCaseSensitive);
        const QModelIndex entry = list_->model()->index(row, list_->modelColumn());
        list_->view()->selectionModel()->setCurrentIndex(entry, QItemSelectionModel::ClearAndSelect);
    }

    QComboBox* list_;
};

} // namespace

DropDownList::DropDownList(QWidget* parent) : QComboBox(parent) { setFocusPolicy(Qt::StrongFocus); }

/// What Qt's own policy for a width in characters comes to. To set that policy makes what opens.
QSize DropDownList::sizeHint() const {
    constexpr int leastTextHeight = 14; // as Qt has it
    constexpr int besideIcon = 4;
    const QFontMetrics metrics = fontMetrics();
    const QSize contents(minimumContentsLength() * metrics.horizontalAdvance(u'X') + iconSize().width() +
                             besideIcon,
                         2 + std::max({metrics.height(), leastTextHeight, iconSize().height()}));
    QStyleOptionComboBox option;
    initStyleOption(&option);
    return style()->sizeFromContents(QStyle::CT_ComboBox, &option, contents, this);
}

void DropDownList::showPopup() {
    if (!isMade_) {
        isMade_ = true;
        new EntryMarker(this);
        if (auto* const entries = qobject_cast<QListView*>(view())) {
            entries->setUniformItemSizes(true); // 2048 numbers open at once
        }
    }
    QComboBox::showPopup();
}

void DropDownList::wheelEvent(QWheelEvent* event) {
    if (hasFocus()) {
        QComboBox::wheelEvent(event);
    } else {
        event->ignore(); // the window scrolls
    }
}

} // namespace varda::window
