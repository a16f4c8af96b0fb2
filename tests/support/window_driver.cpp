#include "support/window_driver.h"

#include "support/trace_wish.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QTest>

namespace varda::test {

WindowDriver::WindowDriver() {
    for (const char* const folder : {"Data", "Log"}) {
        QDir(programFolder_.path()).mkdir(QString::fromLatin1(folder));
    }
    window().resize(1024, 768);
    window().show();
    if (isTraceWanted()) {
        find<QAbstractButton>("openTrace")->click();
    }
    QApplication::setActiveWindow(&window());
}

void WindowDriver::click(const char* name) {
    auto* const button = find<QAbstractButton>(name);
    if (button->isEnabled() && (button->focusPolicy() & Qt::ClickFocus) != 0) {
        button->setFocus(Qt::MouseFocusReason); // as a desktop does at the press
    }
    QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(10, button->height() / 2));
}

void WindowDriver::choose(const char* list, const std::string& entry) {
    auto* const box = find<QComboBox>(list);
    const int index = box->findText(QString::fromStdString(entry), Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (index < 0) {
        throw std::runtime_error(std::string(list) + " does not offer " + entry);
    }
    box->setFocus();
    box->showPopup();
    box->view()->setCurrentIndex(box->model()->index(index, box->modelColumn()));
    QTest::keyClick(box->view(), Qt::Key_Return);
}

void WindowDriver::type(const char* field, const std::string& text) {
    auto* const control = find(field);
    control->setFocus();
    QTest::keyClick(control, Qt::Key_A, Qt::ControlModifier);
    if (text.empty()) {
        QTest::keyClick(control, Qt::Key_Delete);
    }
    QTest::keyClicks(control, QString::fromStdString(text));
}

QMessageBox* WindowDriver::box() {
    for (auto* const shown : window().findChildren<QMessageBox*>()) {
        if (shown->isVisible()) {
            return shown;
        }
    }
    return nullptr;
}

std::string WindowDriver::boxText() { return box() != nullptr ? box()->text().toStdString() : std::string(); }

std::string WindowDriver::boxTitle() {
    return box() != nullptr ? box()->windowTitle().toStdString() : std::string();
}

void WindowDriver::closeBox() {
    if (QMessageBox* const shown = box()) {
        QTest::keyClick(shown, Qt::Key_Return);
    }
}

void WindowDriver::chooseFile(const std::string& path) {
    auto* const dialog = window().findChild<QFileDialog*>();
    if (dialog == nullptr) {
        throw std::runtime_error("no file dialog is on the screen");
    }
    dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(QString::fromStdString(path));
    QMetaObject::invokeMethod(dialog, "accept");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void WindowDriver::openPort(const std::string& name) {
    paste("cbPort",
          name); // typed, it would open the list of offers, which the offscreen platform leaves active
    click("cmdCommTest");
    click("cmdPortOpen");
}

} // namespace varda::test
