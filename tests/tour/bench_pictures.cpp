#include "tour/bench_pictures.h"

#include "core/protocol/crc16.h"
#include "core/protocol/hex_text.h"
#include "support/event_loop.h"
#include "window/bench/bench_window.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QTabBar>
#include <QTabWidget>
#include <QTableView>
#include <QTest>

#include <cstdio>

using varda::test::runUntil;

QWidget* BenchPictures::bench() { return driver_.window().bench().window(); }

void BenchPictures::showTab(int tab) { find<QTabWidget>("benchTabs")->setCurrentIndex(tab); }

bool BenchPictures::faults() {
    driver_.click("openBench");
    bench()->resize(1000, 620);
    showTab(0);
    auto* const text = find<QLineEdit>("faultText");
    text->setText(QStringLiteral("late=50..200,drop@3rd,flip@1%"));
    QTest::keyClick(text, Qt::Key_Return);
    find<QAbstractButton>("faultsOn")->click();
    const bool isTold = driver_.find("faultBanner")->isVisible();
    const bool isSaved =
        pictures_.save(*bench(), "bench-faults") && pictures_.save(driver_.window(), "bench-banner");
    driver_.click("faultsAllOff");
    return isTold && isSaved && !driver_.find("faultBanner")->isVisible();
}

bool BenchPictures::expectations() {
    showTab(2);
    const auto* const table = find<QTableView>("expectationTable")->model();
    constexpr int result = 4;
    const bool isJudged = runUntil([table] { return !table->index(2, result).data().toString().isEmpty(); });
    return pictures_.save(*bench(), "bench-expectations") && isJudged;
}

bool BenchPictures::controller(const std::function<varda::Bytes(const varda::Bytes& request)>& ask) {
    showTab(1);
    auto* const kinds = find<QTabBar>("memoryKinds");
    for (int tab = 0; tab < kinds->count(); ++tab) {
        if (kinds->tabText(tab) == QLatin1String("W")) {
            kinds->setCurrentIndex(tab);
        }
    }
    find<QAbstractButton>("answerFromMemory")->click();
    varda::Bytes request = {0xFF, 0xFF, 0x23, 0x03, 0x00, 0x02, 0x02};
    const std::uint16_t check = varda::crc16(request);
    request.push_back(static_cast<std::uint8_t>(check));
    request.push_back(static_cast<std::uint8_t>(check >> 8U));
    const varda::Bytes answer = ask(request);
    const bool isRight = varda::crc16(answer) == 0; // the check over a whole frame is 0
    std::printf("\nWord read of W 0000, 2 words, answered from memory\n  answer   %s\n  %s\n",
                varda::hexGroups(answer).c_str(), isRight ? "right" : "WRONG");
    const auto* const unknown = find<QTableView>("unknownTable")->model();
    const bool isListed = runUntil([unknown] { return unknown->rowCount() > 0; });
    const bool isSaved = pictures_.save(*bench(), "bench-controller");
    find<QAbstractButton>("answerFromMemory")->click();
    return isRight && isListed && isSaved;
}

bool BenchPictures::pairs() {
    showTab(4);
    find<QAbstractButton>("checkPairs")->click();
    const bool isSaved = pictures_.save(*bench(), "bench-pairs");
    driver_.click("openBench");
    return isSaved;
}
