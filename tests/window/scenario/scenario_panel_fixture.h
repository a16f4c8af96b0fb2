#pragma once

#include "support/temporary_folder.h"
#include "support/window_test.h"

#include <QListWidget>

#include <initializer_list>
#include <string>

namespace varda::test {

inline constexpr const char* bitRead = "FF FF 21 03 20 00 04 BC 4A ";
inline constexpr const char* wordRead = "FF FF 23 03 00 02 02 45 22 ";

class ScenarioPanelTest : public WindowTest {
protected:
    QListWidget* schedule() { return driver.find<QListWidget>("lstSchedule"); }
    int selected() { return schedule()->currentRow(); }

    void addLines(std::initializer_list<const char*> lines) {
        for (const char* const frame : lines) {
            schedule()->addItem(QString::fromLatin1(frame));
        }
        driver.find("cmdRunScenario")->setEnabled(schedule()->count() > 0);
    }

    /// How many of the controls that a run switches off are on by themselves.
    int masterControlsOn() {
        int on = driver.isEnabled("tabMode") ? 1 : 0;
        for (const char* const control :
             {"cmdAddScenario", "cmdDelScenario", "cmdLoadScenario", "cmdSaveScenario", "chkRTimer",
              "chkWTimer", "chkMRTimer", "chkMWTimer", "cmdRDSend", "cmdWDSend", "cmdMRDSend",
              "cmdMWDSend"}) {
            QWidget* const found = driver.find(control);
            const bool isInPage = driver.find("tabMode")->isAncestorOf(found);
            on += (isInPage ? found->isEnabledTo(driver.find("tabMode")) : found->isEnabled()) ? 1 : 0;
        }
        return on;
    }

    std::string write(const char* name, const std::string& content) {
        writeBytes(folder.file(name), content);
        return folder.file(name);
    }

    void load(const std::string& path) {
        driver.click("cmdLoadScenario");
        chooseFile(path);
    }

    TemporaryFolder folder;
};

} // namespace varda::test
