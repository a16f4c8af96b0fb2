#include "core/base/scope_exit.h"
#include "support/prepared_reads.h"
#include "support/temporary_folder.h"
#include "support/window_test.h"

#include <QEventLoop>
#include <QFileDialog>
#include <QLineEdit>
#include <QListView>
#include <QPlainTextEdit>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <future>
#include <numeric>
#include <random>

namespace varda::test {
namespace {

constexpr std::size_t pairCount = 20000;
constexpr std::size_t requestCount = 1000;
constexpr unsigned seed = 20261122;

/// What the far end saw of the exchanges; it stops at the first miss.
struct Exchanges {
    std::size_t answered = 0; ///< answers that came as prepared
    std::string miss;         ///< empty where every answer came as prepared
};

/// The simulated controller with 20,000 pairs, loaded from a file.
class ThousandRequestsTest : public WindowTest {
protected:
    ThousandRequestsTest() {
        driver.click("optMode_4");
        openLine();
        writeBytes(folder.file("pairs.ini"), packetFile(reads));
        driver.click("cmdLoadSimPacket");
        auto* const dialog = driver.window().findChild<QFileDialog*>();
        dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))
            ->setText(QString::fromStdString(folder.file("pairs.ini")));
        QMetaObject::invokeMethod(dialog, "accept");
        // An answer is shown as soon as the port has taken it.
        auto* const answer = driver.find<QPlainTextEdit>("txtSimSP");
        QObject::connect(answer, &QPlainTextEdit::textChanged, answer, [this] { ++handedOver; });
    }

    /// Rows to ask for, spread over the whole table in drawn order, the first and the last among them.
    static std::vector<std::size_t> drawnRows() {
        std::vector<std::size_t> rows(pairCount);
        std::iota(rows.begin(), rows.end(), 0U);
        std::shuffle(rows.begin() + 1, rows.end() - 1, std::mt19937(seed));
        rows.erase(rows.begin() + requestCount - 1, rows.end() - 1);
        return rows;
    }

    /// The master's side, on a thread of its own: each request goes out as soon as the answer before is
    /// there.
    Exchanges askForAll(const std::vector<std::size_t>& rows) const {
        Exchanges exchanges;
        for (const std::size_t row : rows) {
            line.write(reads[row].request);
            const Octets answer = line.read(reads[row].answer.size(), std::chrono::seconds(5));
            if (answer != reads[row].answer) {
                exchanges.miss = "row " + std::to_string(row) + " came as \"" + frameText(answer) + '"';
                break;
            }
            ++exchanges.answered;
        }
        return exchanges;
    }

    const std::vector<PreparedRead> reads = preparedReads(pairCount, seed);
    TemporaryFolder folder;
    std::size_t handedOver = 0; ///< answers that the port has taken
};

TEST_F(ThousandRequestsTest, EveryOneIsAnsweredByteForByteFromATableOf20000Pairs) {
    std::printf("seed %u\n", seed);
    ASSERT_EQ(driver.find<QListView>("lstSimSend")->model()->rowCount(), static_cast<int>(pairCount));
    const std::vector<std::size_t> rows = drawnRows();
    ASSERT_EQ(rows.size(), requestCount);

    QEventLoop loop;
    auto farEnd = std::async(std::launch::async, [&] {
        const ScopeExit end(
            [&loop] { QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection); });
        return askForAll(rows);
    });
    loop.exec();
    const Exchanges exchanges = farEnd.get();

    EXPECT_EQ(exchanges.answered, requestCount);
    EXPECT_EQ(exchanges.miss, "");
    EXPECT_EQ(driver.find<QListView>("lstSimReceive")->currentIndex().row(), static_cast<int>(rows.back()));
    EXPECT_TRUE(line.readAvailable().empty());
    EXPECT_EQ(handedOver, requestCount);
}

} // namespace
} // namespace varda::test
