#include "support/driven_window.h"

#include "core/virtual/virtual_line.h"
#include "support/trace_wish.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QGroupBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPointer>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QTimer>

#include <filesystem>

namespace varda::test {
DrivenWindow::DrivenWindow(Controller* controller)
    : window_({clock_, [this, controller](const std::string& name) { return makeLine(name, controller); },
               [] { return 0.5; }, QString::fromStdString(folder_.path()), [] { return QTime(9, 5, 7); },
               [this](std::function<void()> tick) -> std::unique_ptr<PeriodTimer> {
                   return std::make_unique<ManualTimer>(clock_, std::move(tick));
               },
               controller}) {
    for (const char* const name : {"Data", "Log"}) {
        std::filesystem::create_directory(filePath(folder_.file(name)));
    }
    window_.resize(1024, 768);
    window_.setUpdatesEnabled(false); // nobody looks at it, and painting would take most of the time
    window_.show();
    if (isTraceWanted()) {
        find<QAbstractButton>("openTrace")->click();
    }
    QApplication::setActiveWindow(&window_);
}

std::unique_ptr<Line> DrivenWindow::makeLine(const std::string& name, Controller* controller) {
    if (controller != nullptr && name == virtualPortName) {
        return std::make_unique<VirtualLine>(*controller, clock_);
    }
    return farEnd_.makeLine();
}

void DrivenWindow::advance(int milliseconds) { clock_.advance(milliseconds); }

void DrivenWindow::step() { clock_.step(); }

void DrivenWindow::click(const std::string& button) {
    auto* const control = find<QAbstractButton>(button);
    if (!control->isVisible()) {
        return;
    }
    if (control->isEnabled() && (control->focusPolicy() & Qt::ClickFocus) != 0) {
        control->setFocus(Qt::MouseFocusReason); // as a desktop does at the press
    }
    control->click();
}

void DrivenWindow::clickTab(int index) {
    QTabBar* const bar = find<QTabWidget>("tabMode")->tabBar();
    QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(index).center());
}

void DrivenWindow::choose(const std::string& list, int index) {
    auto* const box = find<QComboBox>(list);
    if (!box->isEnabled() || !box->isVisible()) {
        return;
    }
    box->setFocus(Qt::MouseFocusReason);
    if (index != box->currentIndex()) {
        box->setCurrentIndex(index);
    } else if (box->lineEdit() != nullptr) {
        box->lineEdit()->setText(box->itemText(index));
    }
    emit box->activated(index);
    emit box->textActivated(box->itemText(index));
}

void DrivenWindow::type(const std::string& field, const std::string& text) {
    QWidget* const control = find(field);
    if (!control->isEnabled() || !control->isVisible()) {
        return;
    }
    control->setFocus();
    QTest::keyClick(control, Qt::Key_A, Qt::ControlModifier);
    if (text.empty()) {
        QTest::keyClick(control, Qt::Key_Delete);
    }
    QTest::keyClicks(control, QString::fromStdString(text));
}

void DrivenWindow::paste(const std::string& field, const std::string& text) {
    auto* const control = find(field);
    const auto* const list = qobject_cast<QComboBox*>(control);
    auto* const line = list != nullptr ? list->lineEdit() : qobject_cast<QLineEdit*>(control);
    if (line == nullptr || !line->isEnabled() || !line->isVisible()) {
        return;
    }
    control->setFocus();
    line->selectAll();
    line->insert(QString::fromStdString(text));
}

void DrivenWindow::clickLine(const std::string& list, int row) {
    auto* const view = find<QAbstractItemView>(list);
    const QModelIndex line = view->model()->index(row, 0);
    if (!view->isEnabled() || !view->isVisible() || !line.isValid()) {
        return;
    }
    view->scrollTo(line);
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(line).center());
}

void DrivenWindow::doubleClickLine(const std::string& list, int row) {
    clickLine(list, row);
    auto* const view = find<QAbstractItemView>(list);
    const QModelIndex line = view->model()->index(row, 0);
    if (view->isEnabled() && view->isVisible() && line.isValid()) {
        QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(line).center());
    }
}

void DrivenWindow::chooseFile(const std::string& name) {
    auto* const dialog = window_.findChild<QFileDialog*>();
    if (dialog == nullptr) {
        throw std::runtime_error("no file dialog is on the screen");
    }
    dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))
        ->setText(QString::fromStdString(folder_.file(name)));
    QTimer::singleShot(0, dialog, [dialog] { // runs inside accept() where that has a question, or a refusal
        if (auto* const asks = dialog->findChild<QMessageBox*>()) {
            QAbstractButton* const yes = asks->button(QMessageBox::Yes);
            (yes != nullptr ? yes : asks->button(QMessageBox::Ok))->click();
        }
    });
    const QPointer<QFileDialog> refused(dialog);
    QMetaObject::invokeMethod(dialog, "accept");
    if (refused != nullptr && refused->isVisible()) {
        refused->reject();
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

QMessageBox* DrivenWindow::box() {
    for (auto* const shown : window_.findChildren<QMessageBox*>()) {
        if (shown->isVisible()) {
            return shown;
        }
    }
    return nullptr;
}

void DrivenWindow::answerBox(const std::string& caption) {
    QMessageBox* const shown = box();
    if (shown == nullptr) {
        throw std::runtime_error("no message box is on the screen");
    }
    for (QAbstractButton* const button : shown->buttons()) {
        if (button->text().remove(QLatin1Char('&')).toStdString() == caption) {
            button->click();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            return;
        }
    }
    throw std::runtime_error("the box has no button " + caption);
}

std::string DrivenWindow::text(const std::string& name) {
    QWidget* const control = find(name);
    const auto* const edit = qobject_cast<QPlainTextEdit*>(control);
    const auto* const list = qobject_cast<QComboBox*>(control);
    const QVariant shown = edit != nullptr   ? QVariant(edit->toPlainText())
                           : list != nullptr ? QVariant(list->currentText())
                                             : control->property("text");
    return shown.toString().toStdString();
}

int DrivenWindow::entryCount(const std::string& name) {
    if (const auto* const list = qobject_cast<QComboBox*>(find(name))) {
        return list->count();
    }
    return find<QAbstractItemView>(name)->model()->rowCount();
}

std::string DrivenWindow::entry(const std::string& name, int row) {
    if (const auto* const list = qobject_cast<QComboBox*>(find(name))) {
        return list->itemText(row).toStdString();
    }
    return find<QAbstractItemView>(name)->model()->index(row, 0).data().toString().toStdString();
}

int DrivenWindow::selectedLine(const std::string& name) {
    const auto* const view = find<QAbstractItemView>(name);
    const QModelIndexList selected = view->selectionModel()->selectedIndexes();
    return selected.isEmpty() ? -1 : selected.first().row();
}

} // namespace varda::test
