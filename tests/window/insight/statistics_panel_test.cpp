#include "window/insight/insight_fixture.h"
#include "window/insight/response_plot.h"

#include <QTableWidget>

#include <fstream>
#include <sstream>

namespace varda::test {
namespace {

class StatisticsPanelTest : public InsightTest {
protected:
    enum Column {
        Request,
        Sent,
        Answered,
        CheckWrong,
        WrongLength,
        Silent,
        Least = 8,
        Wire = 12,
        Period,
        Wanted
    };

    StatisticsPanelTest() { showTab(1); }

    QTableWidget* table() { return find<QTableWidget>("statisticsTable"); }
    std::string cellOf(int row, int column) { return cellText(table(), row, column); }
    /// Two good answers, one with a wrong check, one too short, and one silence.
    void fill() {
        openPort();
        chooseWord(57);
        exchange(wordOne);
        exchange(wordOne);
        Bytes damaged = wordOne;
        damaged.back() ^= 1;
        exchange(damaged);
        exchange({1, 2, 3});
        send();
        window.advance(10'000);
    }
};

TEST_F(StatisticsPanelTest, CountsWhatBecameOfEachKind) {
    fill();
    ASSERT_EQ(table()->rowCount(), 1);
    EXPECT_EQ(cellOf(0, Request), "word read");
    EXPECT_EQ(cellOf(0, Sent), "5");
    EXPECT_EQ(cellOf(0, Answered), "3");
    EXPECT_EQ(cellOf(0, CheckWrong), "1");
    EXPECT_EQ(cellOf(0, WrongLength), "1");
    EXPECT_EQ(cellOf(0, Silent), "1");
    EXPECT_FALSE(cellOf(0, Least).empty());
    EXPECT_EQ(cellOf(0, Wire), "17.7") << "17 bytes of ten bits at 9600 baud";
    EXPECT_EQ(cellOf(0, Wanted), "500");
    EXPECT_FALSE(cellOf(0, Period).empty());
}

TEST_F(StatisticsPanelTest, ThePlotTellsInWordsWhatItShows) {
    fill();
    const std::string words = find<ResponsePlot>("responsePlot")->accessibleDescription().toStdString();
    EXPECT_NE(words.find("3 answers"), std::string::npos) << words;
    EXPECT_NE(words.find("1 silence, 1 dropped"), std::string::npos) << words;
    window.advance(1000);
    const QImage full = find("responsePlot")->grab().toImage();
    press("resetStatistics");
    EXPECT_NE(find("responsePlot")->grab().toImage(), full);
}

TEST_F(StatisticsPanelTest, ResetBeginsAnew) {
    fill();
    press("resetStatistics");
    EXPECT_EQ(table()->rowCount(), 0);
    exchange(wordOne);
    window.advance(1000);
    EXPECT_EQ(cellOf(0, Sent), "1");
}

TEST_F(StatisticsPanelTest, SavesItsTable) {
    fill();
    press("saveStatistics");
    chooseFile(window.folder().file("times.csv"));
    std::ifstream file(window.folder().file("times.csv"));
    std::string heading;
    std::string row;
    std::getline(file, heading);
    std::getline(file, row);
    EXPECT_TRUE(heading.starts_with("Kind,Sent,Answered"));
    EXPECT_TRUE(row.starts_with("word read,5,3,1,1,1")) << row;
}

} // namespace
} // namespace varda::test
