#include "window/insight/insight_fixture.h"
#include "window/insight/watch_model.h"

#include <QAbstractItemModelTester>
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>

#include <fstream>

namespace varda::test {
namespace {

class WatchPanelTest : public InsightTest {
protected:
    WatchPanelTest() {
        showTab(2);
        tester_ = std::make_unique<QAbstractItemModelTester>(table()->model());
    }

    QTableView* table() { return find<QTableView>("watchTable"); }
    std::string cellOf(int row, int column) { return cellText(table(), row, column); }
    int rowCount() { return table()->model()->rowCount(); }
    void read(int number, std::uint8_t low, std::uint8_t high) {
        chooseWord(number);
        exchange(checked({0xFF, 0xFF, 0xA3, 0x02, low, high}));
    }
    void look() { window.advance(1000); }

    std::string namesFile(const std::string& text) {
        std::string path = window.folder().file("names.csv");
        std::ofstream(path) << text;
        return path;
    }
    void drop(const std::string& path) {
        QMimeData files;
        files.setUrls({QUrl::fromLocalFile(QString::fromStdString(path))});
        QWidget* const target = trace();
        QDragEnterEvent enter(QPoint(40, 60), Qt::CopyAction, &files, Qt::LeftButton, {});
        QCoreApplication::sendEvent(target, &enter);
        QDropEvent dropped(QPointF(40, 60), Qt::CopyAction, &files, Qt::LeftButton, {});
        QCoreApplication::sendEvent(target, &dropped);
        QCoreApplication::processEvents();
    }

private:
    std::unique_ptr<QAbstractItemModelTester> tester_;
};

TEST_F(WatchPanelTest, ListsRegistersByAddressWithTheirLatestValue) {
    openPort();
    read(100, 0x01, 0x00);
    read(57, 0xFE, 0xFF);
    look();
    ASSERT_EQ(rowCount(), 2);
    EXPECT_EQ(cellOf(0, WatchModel::Station), "255");
    EXPECT_EQ(cellOf(0, WatchModel::Register), "W 0057");
    EXPECT_EQ(cellOf(0, WatchModel::Decimal), "65534");
    EXPECT_EQ(cellOf(0, WatchModel::Signed), "-2");
    EXPECT_EQ(cellOf(0, WatchModel::Hex), "FFFEh");
    EXPECT_EQ(cellOf(0, WatchModel::Binary), "1111 1111 1111 1110");
    EXPECT_EQ(cellOf(1, WatchModel::Register), "W 0100");
    EXPECT_EQ(label("watchState"), "2 registers");
}

TEST_F(WatchPanelTest, StationsHaveRowsOfTheirOwnAndTheNamesOfTheirRegisters) {
    openPort();
    drop(namesFile("W 0057,tank level\n"));
    read(57, 1, 0);
    chooseWord(57);
    exchange(checked({0xFF, 0x05, 0xA3, 0x02, 2, 0}));
    look();
    ASSERT_EQ(rowCount(), 2);
    EXPECT_EQ(cellOf(0, WatchModel::Station), "5");
    EXPECT_EQ(cellOf(0, WatchModel::Decimal), "2");
    EXPECT_EQ(cellOf(1, WatchModel::Station), "255");
    EXPECT_EQ(cellOf(1, WatchModel::Decimal), "1");
    for (const int row : {0, 1}) {
        EXPECT_EQ(cellOf(row, WatchModel::Register), "W 0057");
        EXPECT_EQ(cellOf(row, WatchModel::RegisterName), "tank level");
        EXPECT_EQ(cellOf(row, WatchModel::Changes), "0");
    }
    EXPECT_EQ(table()->model()->headerData(0, Qt::Horizontal).toString(), QStringLiteral("Station"));
}

TEST_F(WatchPanelTest, CountsChangesAndAgesAndKeepsTheLastValues) {
    openPort();
    read(57, 1, 0);
    read(57, 1, 0);
    read(57, 7, 0);
    window.advance(65'000);
    EXPECT_EQ(cellOf(0, WatchModel::Changes), "1");
    EXPECT_EQ(cellOf(0, WatchModel::Age).substr(0, 5), "1 min");
    const auto* const model = table()->model();
    EXPECT_EQ(model->index(0, WatchModel::History).data(Qt::ToolTipRole).toString(), QStringLiteral("1, 7"));
    EXPECT_FALSE(table()->grab().isNull()); // the line of the last values is drawn
}

TEST_F(WatchPanelTest, ANewRegisterLeavesTheChosenOneChosen) {
    openPort();
    read(57, 1, 0);
    look();
    table()->setCurrentIndex(table()->model()->index(0, 0));
    read(3, 1, 0);
    read(100, 1, 0);
    look();
    EXPECT_EQ(rowCount(), 3);
    EXPECT_EQ(cellText(table(), table()->currentIndex().row(), WatchModel::Register), "W 0057");
}

TEST_F(WatchPanelTest, NamesOfAFileAreUsedEverywhere) {
    openPort();
    read(57, 1, 0);
    drop(namesFile("W 0057,tank level\nW 0100,\"flow, main\"\n"));
    look();
    EXPECT_EQ(cellOf(0, WatchModel::RegisterName), "tank level");
    EXPECT_NE(label("watchState").find("2 names from names.csv"), std::string::npos);
    showTab(0);
    settle();
    EXPECT_EQ(cell(1, TraceColumn::Registers), "W 0057 (tank level)");
    choose(2);
    bool isNamed = false;
    auto* const fields = find<QTableView>("fieldTable");
    for (int row = 0; row < fields->model()->rowCount(); ++row) {
        isNamed = isNamed || cellText(fields, row, 0) == "W 0057 (tank level)";
    }
    EXPECT_TRUE(isNamed);
}

TEST_F(WatchPanelTest, TheButtonAsksForTheFile) {
    press("loadNames");
    chooseFile(namesFile("W 0057,tank level\n"));
    EXPECT_NE(label("watchState").find("1 name from names.csv"), std::string::npos);
}

TEST_F(WatchPanelTest, AFileWithoutNamesIsToldAndLeavesThoseThatAreThere) {
    drop(namesFile("W 0057,tank level\n"));
    drop(namesFile("nonsense\n"));
    EXPECT_TRUE(boxText().ends_with("lines that name no register: 1.")) << boxText();
    EXPECT_TRUE(boxAdvice().ends_with("No name was taken: those from before stay.")) << boxAdvice();
    EXPECT_NE(label("watchState").find("1 name from names.csv"), std::string::npos);
}

TEST_F(WatchPanelTest, LinesWithoutANameAreToldAndTheOthersTaken) {
    drop(namesFile("nonsense\nW 0057,tank level\n"));
    EXPECT_TRUE(boxText().ends_with("lines that name no register: 1.")) << boxText();
    EXPECT_TRUE(boxAdvice().ends_with("The others are taken.")) << boxAdvice();
    EXPECT_NE(label("watchState").find("1 name from names.csv"), std::string::npos);
}

TEST_F(WatchPanelTest, AFileThatCannotBeReadIsTold) {
    drop(window.folder().file("Log")); // a folder
    EXPECT_NE(boxText().find("Log"), std::string::npos);
}

TEST_F(WatchPanelTest, ClearForgetsRegistersAndKeepsNames) {
    openPort();
    read(57, 1, 0);
    drop(namesFile("W 0057,tank level\n"));
    press("clearWatch");
    EXPECT_EQ(rowCount(), 0);
    read(57, 1, 0);
    look();
    EXPECT_EQ(cellOf(0, WatchModel::RegisterName), "tank level");
}

} // namespace
} // namespace varda::test
