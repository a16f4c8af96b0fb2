#include "platform/scope_exit.h"
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

using std::chrono::steady_clock;
using Times = std::vector<steady_clock::time_point>;

constexpr std::size_t pairCount = 20000;
constexpr std::size_t requestCount = 1000;
constexpr unsigned seed = 20261122;

/// Medians allowed, ms. The far end's holds the waking of the other thread too.
constexpr double mostToPort = 1.0;
constexpr double mostToFarEnd = 1.0;

/// What the far end saw of the exchanges; it stops at the first miss.
struct Exchanges {
    Times answered;   ///< when each answer was there whole
    std::string miss; ///< empty where every answer came as prepared
};

/// Prints how long it takes from each start to its end. @return the median, ms
double medianOf(const char* what, const Times& starts, const Times& ends) {
    std::vector<double> times;
    for (std::size_t i = 0; i < std::min(starts.size(), ends.size()); ++i) {
        times.push_back(std::chrono::duration<double, std::milli>(ends[i] - starts[i]).count());
    }
    std::ranges::sort(times);
    const double median = times.at(times.size() / 2);
    std::printf("from the end of the settling %s: median %.2f ms, 99 %% %.2f ms, most %.2f ms\n", what,
                median, times.at(times.size() * 99 / 100), times.back());
    return median;
}

/// The simulated controller with 20,000 pairs, loaded from a file.
class ThousandRequestsTest : public WindowTest {
protected:
    ThousandRequestsTest() {
        driver.click("optMode_4");
        openLine();
        writeBytes(folder.file("pairs.ini"), packetFile());
        driver.click("cmdLoadSimPacket");
        auto* const dialog = driver.window().findChild<QFileDialog*>();
        dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))
            ->setText(QString::fromStdString(folder.file("pairs.ini")));
        QMetaObject::invokeMethod(dialog, "accept");
        noteTimes();
    }

    void noteTimes() {
        // The first thing that a settled request does is to show its length.
        auto* const length = driver.find<QLineEdit>("txtCurrentData");
        QObject::connect(length, &QLineEdit::textChanged, length, [this](const QString& text) {
            if (text != QLatin1String("0")) {
                settled.push_back(steady_clock::now());
            }
        });
        // An answer is shown as soon as the port has taken it.
        auto* const answer = driver.find<QPlainTextEdit>("txtSimSP");
        QObject::connect(answer, &QPlainTextEdit::textChanged, answer,
                         [this] { handedOver.push_back(steady_clock::now()); });
    }

    std::string packetFile() const {
        std::string requests = "[Information]\r\nTotal=" + std::to_string(reads.size()) + "\r\n[Receive]\r\n";
        std::string answers = "[Send]\r\n";
        for (std::size_t row = 0; row < reads.size(); ++row) {
            requests += std::to_string(row) + "=" + frameText(reads[row].request) + "\r\n";
            answers += std::to_string(row) + "=" + frameText(reads[row].answer) + "\r\n";
        }
        return requests + answers;
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
            const auto arrival = steady_clock::now();
            if (answer != reads[row].answer) {
                exchanges.miss = "row " + std::to_string(row) + " came as \"" + frameText(answer) + '"';
                break;
            }
            exchanges.answered.push_back(arrival);
        }
        return exchanges;
    }

    const std::vector<PreparedRead> reads = preparedReads(pairCount, seed);
    TemporaryFolder folder;
    Times settled;    ///< the end of each settling
    Times handedOver; ///< when the port had taken each answer
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

    EXPECT_EQ(exchanges.answered.size(), requestCount);
    EXPECT_EQ(exchanges.miss, "");
    EXPECT_EQ(driver.find<QListView>("lstSimReceive")->currentIndex().row(), static_cast<int>(rows.back()));
    EXPECT_TRUE(line.readAvailable().empty());

    ASSERT_EQ(settled.size(), requestCount);
    ASSERT_EQ(handedOver.size(), requestCount);
    EXPECT_LE(medianOf("until the port has the answer", settled, handedOver), mostToPort);
    EXPECT_LE(medianOf("until the far end has it", settled, exchanges.answered), mostToFarEnd);
}

} // namespace
} // namespace varda::test
