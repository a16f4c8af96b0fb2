#include "window/controls/lists.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QCompleter>
#include <QEvent>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QSignalBlocker>
#include <QStringList>
#include <QTabBar>
#include <QTabWidget>

namespace varda::window {
namespace {

/// Leaves the wheel to the window: on a list while it has no focus, on anything else always.
class WheelGuard : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override {
        const auto* const list = qobject_cast<QComboBox*>(watched);
        if (event->type() == QEvent::Wheel && (list == nullptr || !list->hasFocus())) {
            event->ignore();
            return true;
        }
        return QObject::eventFilter(watched, event);
    }
};

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

void fillList(QComboBox* list, const std::vector<std::string>& texts) {
    const QSignalBlocker silent(list);
    QStringList entries;
    entries.reserve(static_cast<qsizetype>(texts.size()));
    for (const std::string& text : texts) {
        entries.append(QString::fromStdString(text));
    }
    list->clear();
    list->addItems(entries);
    chooseNone(list);
}

void chooseNone(QComboBox* list) {
    const QSignalBlocker silent(list);
    list->setCurrentIndex(-1);
    list->clearEditText();
}

void fillList(QComboBox* list, const std::vector<std::string>& texts, const std::string& startValue) {
    fillList(list, texts);
    const QString start = QString::fromStdString(startValue);
    list->setCurrentIndex(list->findText(start, Qt::MatchFixedString | Qt::MatchCaseSensitive));
    list->setEditText(start);
}

std::vector<std::string> linesOf(const QListWidget* list) {
    std::vector<std::string> lines;
    lines.reserve(static_cast<std::size_t>(list->count()));
    for (int row = 0; row < list->count(); ++row) {
        lines.push_back(list->item(row)->text().toStdString());
    }
    return lines;
}

void keepFromWheel(QComboBox* list) {
    list->setFocusPolicy(Qt::StrongFocus);
    list->installEventFilter(new WheelGuard(list));
    if (auto* const view = qobject_cast<QListView*>(list->view())) {
        view->setUniformItemSizes(true); // lists of 2048 numbers open at once
    }
}

void keepTabsFromWheel(QTabWidget* tabs) { tabs->tabBar()->installEventFilter(new WheelGuard(tabs)); }

void letTypeInto(QComboBox* list) {
    static QCompleter nobody; // a text that has a completer gets none of the list's own
    auto* const text = new QLineEdit(list);
    text->setCompleter(&nobody);
    list->setLineEdit(text);
    text->setCompleter(nullptr);
    list->setInsertPolicy(QComboBox::NoInsert);
    // Not before: it makes the drop-down, which is a menu without a scroll bar while nobody can type.
    list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    new EntryMarker(list);
    // Enter and leaving would look the text up in the list, and take an entry that differs in case only.
    QObject::disconnect(text, &QLineEdit::returnPressed, list, nullptr);
    QObject::disconnect(text, &QLineEdit::editingFinished, list, nullptr);
    keepFromWheel(list);
}

void keepPlaceWhenHidden(QWidget* field) {
    QSizePolicy policy = field->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    field->setSizePolicy(policy);
}

} // namespace varda::window
