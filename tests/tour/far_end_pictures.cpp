#include "tour/far_end_pictures.h"

#include "core/protocol/frame_text.h"
#include "core/protocol/hex_text.h"
#include "support/event_loop.h"
#include "tour/bench_pictures.h"
#include "tour/examples.h"

#include <QFile>
#include <QListView>
#include <QMessageBox>
#include <QTest>

#include <cstdio>

using varda::bytesOfText;
using varda::test::runUntil;

namespace {

/// Below a name of its own the line is the same in every picture, where a link to a port is a port.
std::string nameInPictures(const std::string& path) {
#ifdef Q_OS_WIN
    return path;
#else
    const QString name = QStringLiteral("./line");
    QFile::remove(name);
    QFile::link(QString::fromStdString(path), name);
    return name.toStdString();
#endif
}

} // namespace

bool FarEndPictures::simulate(BenchPictures& bench) {
    driver_.click("cmdPortOpen");
    openLine_ = nameInPictures(line_.path());
    driver_.openPort(openLine_);
    driver_.click("optMode_4");
    driver_.click("cmdLoadSimPacket");
    driver_.chooseFile(example("example-reads.ini"));
    const bool isShown = picture("simulation");
    std::printf("\nWord read of W 0000, 4 words, from the far end of a line\n");
    const varda::Bytes answer = ask(bytesOfText("FF FF 23 03 00 02 04 C5 20"), 14);
    const bool isRight = varda::hexGroups(answer) == "FF FF A3 04 12 34 56 78 9A BC DE F0 FF 1F ";
    std::printf("  request  %s\n  answer   %s\n  %s\n", driver_.text("txtSimRP").c_str(),
                varda::hexGroups(answer).c_str(), isRight ? "right" : "WRONG");
    const bool isAnswerShown = picture("simulation-answered");
    const bool isTaken = bench.controller([this](const varda::Bytes& request) { return ask(request, 10); });
    return bench.pairs() && isShown && isRight && isAnswerShown && isTaken;
}

/// Asks from the far end of the line. @return so many bytes of the answer
varda::Bytes FarEndPictures::ask(const varda::Bytes& request, std::size_t size) {
    line_.write(request);
    varda::Bytes answer;
    runUntil([&] {
        const varda::Bytes more = line_.readAvailable();
        answer.insert(answer.end(), more.begin(), more.end());
        return answer.size() >= size;
    });
    return answer;
}

bool FarEndPictures::monitor() {
    driver_.click("optMode_5");
    QFile file(QStringLiteral("tour.log"));
    file.remove();
    driver_.click("chkMonLog");
    driver_.paste("txtMonLogFile", file.fileName().toStdString());
    driver_.click("chkTimeStamp");
    driver_.click("cmdMonStart");
    const QString first = hear("01 00 A1 01 FF");
    const QString second = hear("FF FF A3 04 34 12 CD AB 52 49");
    const bool isShown = picture("monitoring");
    const bool isWholeShown = showWhole(1);
    driver_.click("cmdMonStop");
    const bool isOpened = file.open(QIODevice::ReadOnly);
    const bool isRight =
        isOpened && first == QLatin1String("9:5:7 - 01 00 A1 01 FF ") &&
        file.readAll().replace("\r\n", "\n") == first.toLatin1() + '\n' + second.toLatin1() + '\n';
    std::printf("\nBursts heard while monitoring, and their log\n  line     %s\n  line     %s\n  %s\n",
                qPrintable(first), qPrintable(second), isRight ? "right" : "WRONG");
    return isRight && isShown && isWholeShown;
}

/// Sends a burst from the far end. @return its line in the monitor
QString FarEndPictures::hear(const char* burst) {
    const auto* const lines = driver_.find<QListView>("lstMonitor")->model();
    const int before = lines->rowCount();
    line_.write(bytesOfText(burst));
    runUntil([&] { return lines->rowCount() > before; });
    return lines->index(before, 0).data().toString();
}

/// Holds the mouse on a line of the monitor.
bool FarEndPictures::showWhole(int row) {
    auto* const list = driver_.find<QListView>("lstMonitor");
    const QPoint place = list->visualRect(list->model()->index(row, 0)).center();
    QTest::mousePress(list->viewport(), Qt::LeftButton, {}, place);
    const bool isSaved = pictures_.save(*driver_.find("frmMonitoringData"), "monitoring-line");
    QTest::mouseRelease(list->viewport(), Qt::LeftButton, {}, place);
    return isSaved;
}

bool FarEndPictures::unplug() {
    QFile::remove(QString::fromStdString(openLine_));
    line_.closeFarEnd();
    if (!runUntil([this] { return driver_.box() != nullptr; })) {
        return false;
    }
    std::printf("\nThe line is unplugged\n  box      %s\n", driver_.boxText().c_str());
    const bool isSaved = pictures_.save(*driver_.box(), "unplugged");
    driver_.closeBox();
    return isSaved;
}
