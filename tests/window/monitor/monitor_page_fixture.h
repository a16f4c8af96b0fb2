#pragma once

#include "support/open_file.h"
#include "support/temporary_folder.h"
#include "support/window_test.h"

#include <QCheckBox>
#include <QListView>

#include <fstream>
#include <sstream>

namespace varda::test {

class MonitorPageTest : public WindowTest {
protected:
    MonitorPageTest() { driver.click("optMode_5"); }

    void startMonitoring() {
        openLine();
        driver.click("cmdMonStart");
    }

    QListView* list() { return driver.find<QListView>("lstMonitor"); }
    int lines() { return list()->model()->rowCount(); }
    std::string shown(int row) { return list()->model()->index(row, 0).data().toString().toStdString(); }

    /// Sends a burst and waits for its line.
    void receive(const Bytes& burst) {
        const int before = lines();
        line.write(burst);
        ASSERT_TRUE(runUntil([&] { return lines() != before; }));
    }

    std::string logged() {
        std::stringstream content;
        content << std::ifstream(folder.file("line.log")).rdbuf();
        return content.str();
    }

    void chooseLog(const std::string& path) {
        driver.find<QCheckBox>("chkMonLog")->setChecked(true);
        paste("txtMonLogFile", path);
    }

    bool logIsOpen() { return isOpenFile(folder.file("line.log")); }

    QWidget* popUp() { return driver.find("frmMonitoringData"); }

    TemporaryFolder folder;
};

} // namespace varda::test
