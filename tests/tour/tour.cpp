#include "core/protocol/crc16.h"
#include "core/protocol/frame_text.h"
#include "core/protocol/hex_text.h"
#include "support/event_loop.h"
#include "support/window_driver.h"
#include "tour/bench_pictures.h"
#include "tour/examples.h"
#include "tour/far_end_pictures.h"
#include "tour/fault_pictures.h"
#include "tour/pictures.h"
#include "window/insight/insight_window.h"
#include "window/insight/watch_panel.h"
#include "window/shell/program.h"

#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QMessageBox>
#include <QTabWidget>
#include <QTableView>
#include <QTableWidget>
#include <QTest>

#include <algorithm>
#include <array>
#include <cstdio>
#include <exception>

/// The guided tour: the real window, driven by clicks and keys, talks to the embedded controller. Prints
/// every exchange, saves a picture of every page, and ends with 0 only if every answer was right.
namespace {

using varda::test::runUntil;
using varda::test::WindowDriver;

/// The controls of a page that an exchange goes through.
struct Page {
    const char* send;
    const char* request;
    const char* answer;
    const char* status;
};

constexpr Page readPage = {"cmdRDSend", "txtSendRData", "txtReceiveRData", "txtRStatus"};
constexpr Page writePage = {"cmdWDSend", "txtSendWData", "txtReceiveWData", "txtWStatus"};
// The completion of both mixed pages is told on the write page.
constexpr Page mixedReadPage = {"cmdMRDSend", "txtSendMRData", "txtReceiveMRData", "txtWStatus"};
constexpr Page mixedWritePage = {"cmdMWDSend", "txtSendMWData", "txtReceiveMWData", "txtWStatus"};

class Tour {
public:
    explicit Tour(const QDir& pictures) : pictures_(pictures) { driver_.window().resize(1000, 700); }

    bool take() {
        picture("window");
        openPort();
        countAnswers();
        readBits();
        readWords();
        writeBits();
        writeWords();
        writeMixed();
        readMixed();
        trace();
        judge(bench_.faults());
        playScenario();
        judge(farEnd_.simulate(bench_));
        judge(farEnd_.monitor());
        judge(farEnd_.unplug());
        failures_ += takeFaults(pictures_);
        std::printf("%s\n", failures_ == 0 ? "Every answer was right." : "The tour has found wrong answers.");
        return failures_ == 0;
    }

private:
    void openPort() {
        driver_.openPort("VIRTUAL");
        std::printf("Port VIRTUAL is %s.\n", driver_.text("cmdPortOpen") == "Close Port" ? "open" : "closed");
    }

    void countAnswers() {
        driver_.click("optRead_1");
        driver_.choose("cbRegister", "SR");
        driver_.choose("cbRegAddress", "000");
        driver_.choose("cbRLength", "1");
        exchange("Word read of SR 000, the first transaction", readPage, "FF FF A3 02 00 00 ");
        picture("first-transaction");
    }

    void readBits() {
        driver_.click("optRead_0");
        driver_.controller().setWord(2, 0x0005); // R 0002: bits 0 and 2 are on
        driver_.choose("cbRegister", "R");
        driver_.choose("cbRegAddress", "0002");
        driver_.choose("cbRegBit", "0");
        driver_.choose("cbRLength", "4");
        exchange("Bit read of R 0002.0, 4 bits", readPage, "FF FF A1 04 FF 00 FF 00 ");
        picture("read-bits");
    }

    void readWords() {
        driver_.controller().setWord(512, 0x1234);
        driver_.controller().setWord(513, 0xABCD);
        driver_.click("optRead_1");
        driver_.choose("cbRegister", "W");
        driver_.choose("cbRegAddress", "0000");
        driver_.choose("cbRLength", "2");
        exchange("Word read of W 0000, 2 words", readPage, "FF FF A3 04 34 12 CD AB ");
        picture("read-words");
        waitForTick();
        driver_.click("cmdRDSend"); // until the next answer the last one stands in grey
        judge(driver_.text("txtReceiveRData").empty());
        picture("read-awaiting");
        runUntil([&] { return driver_.text("txtRStatus") == "Data Receive OK !!"; });
    }

    void chooseRegister(const std::array<const char*, 2>& lists, const char* kind, const char* number) {
        driver_.choose(lists[0], kind);
        driver_.choose(lists[1], number);
    }

    /// Clicks a cell of the data grid, both counted from 0.
    void clickCell(int row, int column) {
        auto* const grid = driver_.find<QTableWidget>("gridWriteData");
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, {},
                          grid->visualItemRect(grid->item(row, column)).center());
    }

    void writeBits() {
        driver_.click("optMode_1");
        chooseRegister({"cbWRegister", "cbWRegAddress"}, "M", "0010");
        driver_.choose("cbWRegBit", "4");
        driver_.choose("cbWLength", "3");
        clickCell(0, 4);
        clickCell(0, 6);
        exchange("Bit write of M 0010.4, ON OFF ON", writePage, "FF FF A2 01 00 ");
        picture("write-bits");
        driver_.click("optMode_0");
        chooseRegister({"cbRegister", "cbRegAddress"}, "M", "0010");
        driver_.choose("cbRegBit", "4");
        driver_.choose("cbRLength", "3");
        exchange("The same bits read back", readPage, "FF FF A1 03 FF 00 FF ");
    }

    void writeWords() {
        driver_.click("optMode_1");
        driver_.click("optWrite_1");
        chooseRegister({"cbWRegister", "cbWRegAddress"}, "SV", "000");
        driver_.choose("cbWLength", "2");
        enterWord(0, "4660", "word-dialog");
        pasteWords(1, "FFFFh");
        exchange("Word write of SV 000, 4660 and 65535", writePage, "FF FF A4 01 00 ");
        picture("write-words");
        driver_.click("optMode_0");
        driver_.click("optRead_1");
        chooseRegister({"cbRegister", "cbRegAddress"}, "SV", "000");
        driver_.choose("cbRLength", "2");
        exchange("The same words read back", readPage, "FF FF A3 04 34 12 FF FF ");
    }

    void enterWord(int column, const char* value, const char* pictureName) {
        clickCell(0, column);
        auto* const dialog = driver_.find<QDialog>("frmWriteWord");
        QTest::keyClicks(driver_.find("txtWordWrite"), QString::fromLatin1(value));
        save(*dialog, pictureName);
        QTest::keyClick(driver_.find("txtWordWrite"), Qt::Key_Return);
        QCoreApplication::sendPostedEvents(dialog, QEvent::DeferredDelete);
    }

    void pasteWords(int column, const char* words) {
        auto* const grid = driver_.find<QTableWidget>("gridWriteData");
        grid->setCurrentCell(0, column);
        QGuiApplication::clipboard()->setText(QString::fromLatin1(words));
        QTest::keyClick(grid, Qt::Key_V, Qt::ControlModifier);
    }

    void writeMixed() {
        driver_.click("optMode_3");
        chooseRegister({"cbMWRegister", "cbMWRegAddress"}, "R", "0000");
        driver_.choose("cbMWRegBit", "3");
        driver_.click("cmdMWAdd");
        driver_.click("optMWrite_1");
        chooseRegister({"cbMWRegister", "cbMWRegAddress"}, "W", "0001");
        driver_.type("txtMWData", "1A2B");
        driver_.click("cmdMWAdd");
        exchange("Mixed write of R 0000.3 ON and W 0001 = 1A2B", mixedWritePage, "FF FF A6 01 00 ");
        picture("mixed-write");
    }

    void readMixed() {
        driver_.click("optMode_2");
        chooseRegister({"cbMRegister", "cbMRegAddress"}, "R", "0000");
        driver_.choose("cbMRegBit", "2");
        driver_.choose("cbMRLength", "3");
        driver_.click("cmdMRAdd");
        driver_.click("optMRead_1");
        chooseRegister({"cbMRegister", "cbMRegAddress"}, "W", "0001");
        driver_.choose("cbMRLength", "1");
        driver_.click("cmdMRAdd");
        exchange("Mixed read of R 0000.2, 3 bits, and W 0001", mixedReadPage, "FF FF A5 05 00 FF 00 2B 1A ");
        picture("mixed-read");
        refuseTwoLetterKind();
    }

    /// A report names the point that cannot be sent, and what helps.
    void refuseTwoLetterKind() {
        chooseRegister({"cbMRegister", "cbMRegAddress"}, "SR", "000");
        driver_.choose("cbMRLength", "1");
        driver_.click("cmdMRAdd");
        driver_.click("cmdMRDSend");
        auto* const report = driver_.box();
        if (judge(report != nullptr && report->informativeText().startsWith(QLatin1String("SR 000: ")))) {
            save(*report, "report");
            driver_.closeBox();
        }
        driver_.click("cmdMRDel"); // the point that was being read is the marked one
    }

    /// Opens the trace, has something to show in it, and closes it.
    void trace() {
        driver_.click("optMode_0");
        driver_.click("openTrace");
        auto* const trace = driver_.window().insight().window();
        trace->resize(1000, 640);
        QFile names(QStringLiteral("names.csv"));
        judge(names.open(QIODevice::WriteOnly) && names.write("W 0000,tank level\nW 0001,flow\n") > 0);
        names.close();
        trace->findChild<varda::window::WatchPanel*>()->loadNames(names.fileName());
        driver_.click("optRead_1");
        chooseRegister({"cbRegister", "cbRegAddress"}, "W", "0000");
        driver_.choose("cbRLength", "2");
        constexpr std::array<std::uint16_t, 4> levels = {0x1234, 0x1240, 0x1260, 0x1251};
        for (const std::uint16_t tank : levels) {
            driver_.controller().setWord(512, tank);
            exchange("Word read of W 0000, traced", readPage, varda::hexGroups(answered(tank)).c_str());
        }
        auto* const table = trace->findChild<QTableView*>(QStringLiteral("traceTable"));
        runUntil([table] { return table->model()->rowCount() >= 8; });
        table->setCurrentIndex(table->model()->index(7, 0));
        auto* const fields = trace->findChild<QTableView*>(QStringLiteral("fieldTable"));
        fields->setCurrentIndex(fields->model()->index(5, 0));
        save(*trace, "trace");
        auto* const tabs = trace->findChild<QTabWidget*>(QStringLiteral("insightTabs"));
        tabs->setCurrentIndex(1);
        save(*trace, "trace-statistics");
        tabs->setCurrentIndex(2);
        save(*trace, "trace-watch");
        driver_.click("openTrace");
    }

    /// The answer of W 0000 and of W 0001, which the mixed write has set, without its check.
    static varda::Bytes answered(std::uint16_t tank) {
        const unsigned word = tank;
        return {0xFF, 0xFF, 0xA3, 4, static_cast<std::uint8_t>(word), static_cast<std::uint8_t>(word >> 8U),
                0x2B, 0x1A};
    }

    /// Plays a scenario twice round; every answer has to be a whole frame.
    void playScenario() {
        driver_.click("optMode_0");
        driver_.controller().setWord(0,
                                     0x0005); // R 0000: bits 0 and 2 are on, as is expected of the first line
        driver_.controller().setWord(512, 1000); // W 0000, of the second one
        driver_.click("cmdLoadScenario");
        driver_.chooseFile(example("example.scn"));
        driver_.paste("txtScnPeriod", "200");
        waitForTick();
        driver_.click("cmdRunScenario");
        std::printf("\nScenario of three frames, twice round\n");
        for (int frame = 0; frame < 6; ++frame) {
            driver_.paste("txtScnReceive", "");
            runUntil([&] { return !driver_.text("txtScnReceive").empty(); });
            const varda::Bytes answer = varda::bytesOfText(driver_.text("txtScnReceive"));
            judge(varda::crc16(answer) == 0 && answer.size() > 6); // the check over a whole frame is 0
            std::printf("  send     %s\n  answer   %s\n", driver_.text("txtScnSend").c_str(),
                        driver_.text("txtScnReceive").c_str());
        }
        picture("scenario");
        judge(bench_.expectations());
        driver_.click("cmdStopScenario");
    }

    /// Sends the page's request and compares the answer with `expected`, which lacks the frame check.
    void exchange(const char* what, const Page& page, const char* expected) {
        waitForTick();
        driver_.paste(page.status, "");
        driver_.click(page.send);
        const bool answered = runUntil([&] { return driver_.text(page.status) == "Data Receive OK !!"; });
        const std::string answer = driver_.text(page.answer);
        const bool right =
            answered && answer.substr(0, answer.size() - std::min<std::size_t>(answer.size(), 6)) == expected;
        judge(right);
        std::printf("\n%s\n  request  %s\n  answer   %s\n  status   %s\n  %s\n", what,
                    driver_.text(page.request).c_str(), answer.c_str(), driver_.text(page.status).c_str(),
                    right ? "right" : "WRONG");
    }

    /// The timer's tick after an answer empties the counters: behind it, the next one is far enough away to
    /// let every picture show them.
    void waitForTick() {
        runUntil([&] { return driver_.text("txtTotalData") == "0"; });
    }

    bool judge(bool right) {
        failures_ += right ? 0 : 1;
        return right;
    }

    void picture(const char* name) { save(driver_.window(), name); }

    void save(QWidget& window, const char* name) { judge(pictures_.save(window, name)); }

    Pictures pictures_;
    WindowDriver driver_;
    BenchPictures bench_{driver_, pictures_};
    FarEndPictures farEnd_{driver_, pictures_};
    int failures_ = 0;
};

} // namespace

/// Leaves out what the offscreen platform says of itself.
void showWarning(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& message) {
    if (!message.startsWith(QLatin1String("This plugin does not support")) &&
        !message.startsWith(QLatin1String("QStandardPaths"))) {
        std::fprintf(stderr, "%s\n", qPrintable(message));
    }
}

int main(int argc, char** argv) {
    qInstallMessageHandler(showWarning);
    QApplication::setAttribute(
        Qt::AA_DontUseNativeDialogs); // which have none of the controls that are filled in
    const QApplication application(argc, argv);
    varda::window::prepareApplication();
    QApplication::setCursorFlashTime(0); // a caret that is always there, in every picture alike
    const QDir pictures(QDir(QApplication::arguments().value(1, QStringLiteral("tour"))).absolutePath());
    if (!pictures.mkpath(QStringLiteral("."))) {
        std::printf("The folder %s cannot be made.\n", qPrintable(pictures.path()));
        return 1;
    }
    QDir::setCurrent(pictures.path()); // so that no picture shows where it was taken
    try {
        return Tour(pictures).take() ? 0 : 1;
    } catch (const std::exception& error) {
        std::printf("The tour broke off: %s\n", error.what());
        return 1;
    }
}
