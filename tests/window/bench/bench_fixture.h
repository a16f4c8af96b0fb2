#pragma once

#include "core/base/bytes.h"
#include "core/protocol/crc16.h"
#include "core/virtual/controller.h"
#include "support/driven_window.h"
#include "window/bench/bench_window.h"

#include <QAbstractButton>
#include <QAbstractItemModel>
#include <QApplication>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QTabWidget>
#include <QTableView>
#include <QTest>

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace varda::test {

/// The main window and its bench on a clock and a line in the test's hands.
class BenchTest : public testing::Test {
protected:
    enum Tab { Faults, ControllerTab, Expectations, Recordings, Pairs };

    explicit BenchTest(Tab tab) {
        window.click("openBench");
        showTab(tab);
    }

    BenchWindow* bench() { return window.window().bench().window(); }
    /// The control of that name. @throws std::runtime_error where there is none of that class
    template <typename Control = QWidget>
    Control* find(const char* name) {
        auto* const control = bench()->findChild<Control*>(QString::fromLatin1(name));
        if (control == nullptr) {
            throw std::runtime_error(std::string("no such control of the bench: ") + name);
        }
        return control;
    }
    void showTab(Tab tab) { find<QTabWidget>("benchTabs")->setCurrentIndex(tab); }

    void openPort() {
        window.paste("cbPort", "COM1");
        window.click("cmdCommTest");
        window.click("cmdPortOpen");
    }
    /// Enters the simulation, on an open port.
    void simulate() {
        openPort();
        window.click("optMode_4");
    }
    /// A request comes in, and what there is to do about it is done. @return what was sent
    std::vector<Bytes> ask(const Bytes& request) {
        window.farEnd().takeWritten();
        window.farEnd().deliver(request);
        window.advance(400);
        return written();
    }
    std::vector<Bytes> written() {
        std::vector<Bytes> sent;
        for (const auto& write : window.farEnd().takeWritten()) {
            sent.push_back(write.bytes);
        }
        return sent;
    }
    /// Lets the bench show what there is.
    void settle() { window.advance(300); }

    void press(const char* button) { find<QAbstractButton>(button)->click(); }
    std::string label(const char* name) { return find<QLabel>(name)->text().toStdString(); }
    std::string field(const char* name) { return find<QLineEdit>(name)->text().toStdString(); }
    /// Types over a field, and Enter.
    void enter(const char* name, const char* text) {
        auto* const edit = find<QLineEdit>(name);
        edit->selectAll();
        if (*text == '\0') {
            QTest::keyClick(edit, Qt::Key_Delete);
        }
        QTest::keyClicks(edit, QLatin1String(text));
        QTest::keyClick(edit, Qt::Key_Return);
    }
    QAbstractItemModel* model(const char* table) { return find<QTableView>(table)->model(); }
    int rows(const char* table) { return model(table)->rowCount(); }
    std::string cell(const char* table, int row, int column) {
        return model(table)->index(row, column).data().toString().toStdString();
    }
    /// Types into a cell, as its editor hands it over. @return whether it is taken
    bool edit(const char* table, int row, int column, const char* text) {
        return model(table)->setData(model(table)->index(row, column), QLatin1String(text));
    }
    void tick(const char* table, int row, int column, bool isTicked = true) {
        model(table)->setData(model(table)->index(row, column), isTicked ? Qt::Checked : Qt::Unchecked,
                              Qt::CheckStateRole);
    }
    bool isTicked(const char* table, int row, int column) {
        return model(table)->index(row, column).data(Qt::CheckStateRole).toInt() == Qt::Checked;
    }
    /// Brings the keys of a user to a control.
    void focus(const char* control) {
        QApplication::setActiveWindow(bench());
        find(control)->setFocus();
    }
    void chooseRow(const char* table, int row) {
        find<QTableView>(table)->setCurrentIndex(model(table)->index(row, 0));
    }

    /// Answers the file dialog of the bench with a file of the test's folder.
    void chooseFile(const std::string& name) {
        auto* const dialog = find<QFileDialog>("QFileDialog");
        dialog->setOption(QFileDialog::DontConfirmOverwrite);
        dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))
            ->setText(QString::fromStdString(window.folder().file(name)));
        QMetaObject::invokeMethod(dialog, "accept");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    void writeFile(const std::string& name, const std::string& text) {
        std::ofstream(window.folder().file(name), std::ios::binary) << text;
    }
    std::string readFile(const std::string& name) {
        std::ostringstream text;
        text << std::ifstream(window.folder().file(name), std::ios::binary).rdbuf();
        return text.str();
    }
    /// The message box on the bench, or nullptr.
    QMessageBox* box() {
        for (auto* const shown : bench()->findChildren<QMessageBox*>()) {
            if (shown->isVisible()) {
                return shown;
            }
        }
        return nullptr;
    }

    /// A frame with its check behind it.
    static Bytes checked(Bytes frame) {
        const std::uint16_t check = crc16(frame);
        frame.push_back(static_cast<std::uint8_t>(check));
        frame.push_back(static_cast<std::uint8_t>(check >> 8U));
        return frame;
    }

    Controller controller;
    DrivenWindow window{&controller};
};

} // namespace varda::test
