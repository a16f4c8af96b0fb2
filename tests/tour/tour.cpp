#include "support/event_loop.h"
#include "support/window_driver.h"

#include <QApplication>
#include <QDir>
#include <QPixmap>

#include <algorithm>
#include <cstdio>
#include <exception>

/// The guided tour: the real window, driven by clicks and keys, talks to the embedded controller. Prints
/// every exchange, saves a picture of every page, and ends with 0 only if every answer was right.
namespace {

using varda::test::runUntil;
using varda::test::WindowDriver;

/// One exchange of a page: its fields in the order of the answers below.
struct Page {
    const char* name;
    const char* send;
    const char* request;
    const char* answer;
    const char* status;
    const char* completionStatus;
};

constexpr Page readPage = {"read",       "cmdRDSend", "txtSendRData", "txtReceiveRData",
                           "txtRStatus", "txtRStatus"};

class Tour {
public:
    explicit Tour(QDir pictures) : pictures_(std::move(pictures)) {}

    bool take() {
        openPort();
        readBits();
        readWords();
        otherPages();
        driver_.click("cmdPortOpen");
        std::printf("%s\n", failures_ == 0 ? "Every answer was right." : "The tour has found wrong answers.");
        return failures_ == 0;
    }

private:
    void openPort() {
        driver_.openPort("VIRTUAL");
        std::printf("Port VIRTUAL is %s.\n", driver_.text("cmdPortOpen") == "Close Port" ? "open" : "closed");
    }

    void readBits() {
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
    }

    void otherPages() {
        const char* const names[] = {"write", "mixed-read", "mixed-write", "simulation", "monitoring"};
        for (int index = 1; index < 6; ++index) {
            driver_.click(("optMode_" + std::to_string(index)).c_str());
            picture(names[index - 1]);
        }
    }

    /// Sends the page's request and compares the answer with `expected`, which lacks the frame check.
    void exchange(const char* what, const Page& page, const char* expected) {
        driver_.click(page.send);
        const bool answered =
            runUntil([&] { return driver_.text(page.completionStatus) == "Data Receive OK !!"; });
        const std::string answer = driver_.text(page.answer);
        const bool right =
            answered && answer.substr(0, answer.size() - std::min<std::size_t>(answer.size(), 6)) == expected;
        failures_ += right ? 0 : 1;
        std::printf("\n%s\n  request  %s\n  answer   %s\n  status   %s\n  %s\n", what,
                    driver_.text(page.request).c_str(), answer.c_str(),
                    driver_.text(page.completionStatus).c_str(), right ? "right" : "WRONG");
    }

    void picture(const char* name) {
        varda::test::runFor(std::chrono::milliseconds(20));
        const QString file = pictures_.filePath(QString::fromLatin1(name) + QStringLiteral(".png"));
        const bool saved = driver_.window().grab().save(file);
        failures_ += saved ? 0 : 1;
        std::printf("  picture  %s%s\n", qPrintable(file), saved ? "" : " COULD NOT BE SAVED");
    }

    QDir pictures_;
    WindowDriver driver_;
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
    const QApplication application(argc, argv);
    const QDir pictures(application.arguments().value(1, QStringLiteral("tour")));
    if (!pictures.mkpath(QStringLiteral("."))) {
        std::printf("The folder %s cannot be made.\n", qPrintable(pictures.path()));
        return 1;
    }
    try {
        return Tour(pictures).take() ? 0 : 1;
    } catch (const std::exception& error) {
        std::printf("The tour broke off: %s\n", error.what());
        return 1;
    }
}
