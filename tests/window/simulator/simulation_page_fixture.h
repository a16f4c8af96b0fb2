#pragma once

#include "core/pairs/packet_builders.h"
#include "support/temporary_folder.h"
#include "support/window_test.h"

#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>

#include <fstream>
#include <sstream>

namespace varda::test {

class SimulationPageTest : public WindowTest {
protected:
    SimulationPageTest() { driver.click("optMode_4"); }

    QAbstractItemModel* requests() { return driver.find<QListView>("lstSimReceive")->model(); }
    QAbstractItemModel* answers() { return driver.find<QListView>("lstSimSend")->model(); }
    std::string request(int row) { return requests()->index(row, 0).data().toString().toStdString(); }
    std::string answer(int row) { return answers()->index(row, 0).data().toString().toStdString(); }
    int selectedRow(const char* list) {
        const QModelIndexList rows = driver.find<QListView>(list)->selectionModel()->selectedRows();
        return rows.isEmpty() ? -1 : rows.first().row();
    }
    int selectedRequest() { return selectedRow("lstSimReceive"); }
    int selectedAnswer() { return selectedRow("lstSimSend"); }
    QListWidget* points() { return driver.find<QListWidget>("lstSimMixed"); }
    bool isShown(const char* control) { return driver.find(control)->isVisible(); }

    void chooseRegister(const char* kind, const char* number) {
        driver.choose("cbSimReg", kind);
        driver.choose("cbSimAddress", number);
    }

    /// Prepares a pair for a bit read and adds it to the table.
    void addBitRead(const char* number, const char* length) {
        driver.choose("cbSimMode", "Bit Read");
        chooseRegister("M", number);
        driver.choose("cbSimBit", "3");
        driver.choose("cbSimLength", length);
        driver.click("cmdSimSendDataInputOK");
        driver.click("cmdSimInputOK");
    }

    void clickRow(const char* list, int row) {
        auto* const view = driver.find<QListView>(list);
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {},
                          view->visualRect(view->model()->index(row, 0)).center());
    }

    void doubleClickRow(int row) {
        auto* const view = driver.find<QListView>("lstSimReceive");
        const QPoint center = view->visualRect(view->model()->index(row, 0)).center();
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, center);
        QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, center);
    }

    std::string write(const char* name, const std::string& content) {
        std::string path = folder.file(name);
        std::ofstream(path) << content;
        return path;
    }

    void load(const std::string& path) {
        driver.click("cmdLoadSimPacket");
        chooseFile(path);
    }

    TemporaryFolder folder;
};

} // namespace varda::test
