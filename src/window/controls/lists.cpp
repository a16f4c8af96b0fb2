#include "window/controls/lists.h"

#include "window/controls/drop_down_list.h"

#include <QComboBox>
#include <QCompleter>
#include <QEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QSignalBlocker>
#include <QStringList>
#include <QTabBar>
#include <QTabWidget>

namespace varda::window {
namespace {

/// Leaves the wheel to the window.
class WheelGuard : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Wheel) {
            event->ignore();
            return true;
        }
        return QObject::eventFilter(watched, event);
    }
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

void keepTabsFromWheel(QTabWidget* tabs) { tabs->tabBar()->installEventFilter(new WheelGuard(tabs)); }

void letTypeInto(DropDownList* list) {
    static QCompleter nobody; // a text that has a completer gets none of the list's own
    auto* const text = new QLineEdit(list);
    text->setCompleter(&nobody);
    list->setLineEdit(text);
    text->setCompleter(nullptr);
    list->setInsertPolicy(QComboBox::NoInsert);
    // Enter and leaving would look the text up in the list, and take an entry that differs in case only.
    QObject::disconnect(text, &QLineEdit::returnPressed, list, nullptr);
    QObject::disconnect(text, &QLineEdit::editingFinished, list, nullptr);
}

void keepPlaceWhenHidden(QWidget* field) {
    QSizePolicy policy = field->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    field->setSizePolicy(policy);
}

} // namespace varda::window
