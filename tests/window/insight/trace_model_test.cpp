#include "window/insight/trace_model.h"
#include "window/insight/trace_table.h"

#include <QAbstractItemModelTester>
#include <QScrollBar>

#include <gtest/gtest.h>

#include <random>

namespace varda::test {
namespace {

using namespace window;

TraceLine lineOf(Direction direction, std::size_t bytes) {
    TraceLine line;
    line.direction = direction;
    line.bytes = Bytes(bytes, 0x23);
    line.size = bytes;
    return line;
}

/// Takes the news, however many slices they are.
template <typename Model>
void takeAllNews(Model& model) {
    model.takeNews();
    while (model.fill()) {
    }
}

/// Counts what is asked of it.
class CountingModel : public TraceModel {
public:
    using TraceModel::TraceModel;
    QVariant data(const QModelIndex& index, int role) const override {
        asked += role == Qt::DisplayRole ? 1 : 0;
        return TraceModel::data(index, role);
    }
    mutable int asked = 0;
};

TEST(TraceModelTest, StaysSoundWhateverHappensToTheTrace) {
    constexpr unsigned seed = 20261122;
    std::mt19937 generator(seed);
    Trace trace;
    TraceModel model(trace, noNames(), nullptr);
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    const auto draw = [&generator](unsigned below) { return generator() % below; };
    for (int step = 0; step < 2000; ++step) {
        switch (draw(12)) {
        case 0:
            trace.mark(trace.begin() + draw(static_cast<unsigned>(trace.size()) + 1), draw(2) == 0);
            break;
        case 1:
            model.setFilter(readTraceFilter(draw(2) == 0 ? "sent" : ""));
            break;
        case 2:
            model.setFilter(readTraceFilter("marked"));
            break;
        case 3:
            model.setHeld(draw(2) == 0);
            break;
        case 4:
            if (draw(20) == 0) {
                trace.clear();
            }
            break;
        default:
            trace.append(lineOf(draw(2) == 0 ? Direction::Sent : Direction::Received, draw(20)));
        }
        model.takeNews();
        model.fill();
        for (int row = 1; row < model.rowCount(); ++row) {
            ASSERT_LT(model.line(row - 1), model.line(row)) << "seed " << seed << ", step " << step;
        }
    }
}

TEST(TraceModelTest, OldestLinesGoWhereTheTraceIsFull) {
    Trace trace;
    TraceModel model(trace, noNames(), nullptr);
    for (std::size_t count = 0; count < Trace::mostLines; ++count) {
        trace.append(lineOf(Direction::Sent, 1));
    }
    takeAllNews(model);
    EXPECT_EQ(model.rowCount(), static_cast<int>(Trace::mostLines));
    for (int count = 0; count < 7; ++count) {
        trace.append(lineOf(Direction::Received, 1));
    }
    EXPECT_EQ(model.rowCount(), static_cast<int>(Trace::mostLines)) << "until the news are taken";
    EXPECT_EQ(model.data(model.index(0, 7), Qt::DisplayRole).toString(), QStringLiteral("No longer kept"));
    EXPECT_EQ(model.takeNews(), 7);
    EXPECT_EQ(model.rowCount(), static_cast<int>(Trace::mostLines));
    EXPECT_EQ(model.line(0), 7U);
}

/// Of 100,000 lines those alone are asked for that can be seen.
TEST(TraceTableTest, AsksForWhatCanBeSeenAlone) {
    Trace trace;
    for (std::size_t count = 0; count < Trace::mostLines; ++count) {
        trace.append(lineOf(Direction::Sent, 1000));
        if (trace.size() < count + 1) {
            break; // as many as all lines may keep
        }
    }
    CountingModel model(trace, noNames(), nullptr);
    TraceTable table;
    table.showTrace(&model);
    table.resize(1600, 600);
    table.show();
    takeAllNews(table);
    table.grab();
    EXPECT_GT(model.rowCount(), 20'000);
    EXPECT_GT(model.asked, 0);
    EXPECT_LT(model.asked, 2000);
    for (int count = 0; count < 100; ++count) {
        trace.append(lineOf(Direction::Sent, 1000));
        table.takeNews();
    }
    EXPECT_EQ(table.verticalScrollBar()->value(), table.verticalScrollBar()->maximum());
    EXPECT_LT(model.asked, 4000);
}

/// The lines in sight stay there while older ones leave a full trace.
TEST(TraceTableTest, LinesInSightStayWhereTheyAreWhileTheOldestGo) {
    Trace trace;
    for (std::size_t count = 0; count < Trace::mostLines; ++count) {
        trace.append(lineOf(Direction::Sent, 1));
    }
    TraceModel model(trace, noNames(), nullptr);
    TraceTable table;
    table.showTrace(&model);
    table.resize(900, 400);
    table.show();
    takeAllNews(table);
    table.choose(500);
    const auto topLine = [&] { return model.line(table.rowAt(0)); };
    const Trace::Number before = topLine();
    for (int count = 0; count < 60; ++count) {
        trace.append(lineOf(Direction::Received, 1));
        table.takeNews();
    }
    EXPECT_EQ(topLine(), before);
    EXPECT_EQ(*table.chosenLine(), 500U);
}

} // namespace
} // namespace varda::test
