#include "support/temporary_folder.h"
#include "window/scenario/scenario_panel_fixture.h"

#include <QDir>
#include <QFileDialog>
#include <QSettings>

namespace varda::test {
namespace {

/// The dialogs of Qt's own, which tests can fill in, stand in for the system's.
class FileDialogsOnWindows : public ScenarioPanelTest {};

TEST_F(FileDialogsOnWindows, StartInData) {
    driver.click("cmdSaveScenario");
    EXPECT_EQ(driver.window().findChild<QFileDialog*>()->directory(),
              QDir(QString::fromStdString(driver.programFolder() + "/Data")));
}

TEST_F(FileDialogsOnWindows, NamesOutsideTheCodePageAreSavedAndLoaded) {
    const std::string name = "Me\xC3\x9Fwert \xE6\xB8\xAC\xE5\xAE\x9A \xD0\x96.scn";
    addLines({bitRead, wordRead});
    driver.click("cmdSaveScenario");
    chooseFile(folder.file(name));
    EXPECT_EQ(text("txtSimStatus"), "Saved Scenario Data completely !!!");
    EXPECT_EQ(folder.names(), std::vector<std::string>{name});
    schedule()->clear();
    load(folder.file(name));
    EXPECT_EQ(schedule()->count(), 2);
}

TEST_F(FileDialogsOnWindows, StoreNoHistoryAndLeaveThatOfOthers) {
    const QString place = QStringLiteral("FileDialog/history");
    QSettings settings(QSettings::UserScope, QStringLiteral("QtProject"));
    settings.remove(QStringLiteral("FileDialog"));
    for (const QVariant& ofOthers : {QVariant(), QVariant(QStringLiteral("file:///C:/others"))}) {
        if (ofOthers.isValid()) {
            settings.setValue(place, ofOthers);
        }
        load(write("one.scn", "[Information]\r\nTotal=0\r\n"));
        settings.sync();
        EXPECT_EQ(settings.value(place), ofOthers);
    }
    settings.remove(QStringLiteral("FileDialog"));
}

} // namespace
} // namespace varda::test
