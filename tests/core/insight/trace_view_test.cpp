#include "core/insight/trace_view.h"

#include "core/insight/trace_search.h"
#include "core/insight/traced_link.h"

namespace varda::test {
namespace {

constexpr const char* bitRead = "01 00 21 03 23 0C 10 42 85 ";
using Numbers = std::vector<Trace::Number>;

/// Line 0 opens the port; 1 and 2 read words; 3 reads bits, 4 is no answer to it.
class TraceViewTest : public TracedLinkTest {
protected:
    TraceViewTest() {
        send(wordRead, 10);
        receive(wordAnswer, 23);
        clock.advance(100);
        send(bitRead, 22);
        receive("00 01 ", 1);
        clock.advance(100);
    }

    static void show(TraceView& view, const char* typed) {
        view.setFilter(readTraceFilter(typed));
        view.fill();
    }
    static Numbers linesOf(const TraceView& view) {
        Numbers numbers;
        for (std::size_t row = 0; row < view.rows(); ++row) {
            numbers.push_back(view.line(row));
        }
        return numbers;
    }
    void addEvents(int count) {
        for (; count > 0; --count) {
            trace.append({});
        }
    }
};

TEST_F(TraceViewTest, ViewFollowsItsTrace) {
    TraceView view(trace);
    view.update(trace.takeNews());
    show(view, "wrong");
    EXPECT_EQ(view.rows(), 2U);
    trace.mark(3, true);
    TraceView::Step step = view.update(trace.takeNews());
    EXPECT_EQ(step.gone, 0U);
    EXPECT_EQ(step.kept, 2U);
    EXPECT_EQ(step.changedBegin, 0U);
    EXPECT_EQ(step.added, 0U);
    trace.change(2, [](TraceLine& changed) { changed.verdict = Verdict::Dropped; });
    step = view.update(trace.takeNews());
    EXPECT_EQ(step.kept, 0U); // a line in between passes now
    EXPECT_EQ(step.added, 3U);
    EXPECT_EQ(view.line(0), 2U);
    trace.append({});
    send(bitRead, 22);
    tick(13);
    step = view.update(trace.takeNews());
    EXPECT_EQ(step.kept, 3U);
    EXPECT_EQ(step.added, 2U); // the request without an answer, and the silence
    trace.clear();
    step = view.update(trace.takeNews());
    EXPECT_EQ(step.gone, 5U);
    EXPECT_EQ(view.rows(), 0U);
}

TEST_F(TraceViewTest, MarksOfManyLinesAreOneChange) {
    TraceView view(trace);
    view.update(trace.takeNews());
    trace.mark(Numbers{1, 3, 4}, true);
    TraceView::Step step = view.update(trace.takeNews());
    EXPECT_EQ(step.kept, 5U);
    EXPECT_EQ(step.changedBegin, 1U);
    show(view, "marked received"); // the first of the marked lines was sent
    EXPECT_EQ(linesOf(view), Numbers{4});
    trace.mark(Numbers{1, 4}, false);
    view.update(trace.takeNews());
    EXPECT_EQ(linesOf(view), Numbers{});
    trace.mark(Numbers{1, 2, 3}, true);
    view.update(trace.takeNews());
    EXPECT_EQ(linesOf(view), Numbers{2});
}

TEST_F(TraceViewTest, ViewOfAFullTraceIsAsGoodAsANewOne) {
    TraceView view(trace);
    view.setFilter(readTraceFilter("event"));
    Draws draws(5);
    for (int round = 0; round < 300; ++round) {
        for (int count = draws.below(1500); count > 0; --count) {
            TraceLine line;
            line.direction = draws.oneIn(2) ? Direction::Event : Direction::Sent;
            trace.append(std::move(line));
        }
        trace.change(trace.begin() + static_cast<Trace::Number>(draws.below(static_cast<int>(trace.size()))),
                     [](TraceLine& line) { line.direction = Direction::Event; });
        view.update(trace.takeNews());
        if (draws.oneIn(30)) {
            TraceView other(trace);
            other.setFilter(view.filter());
            other.update({trace.begin(), trace.end(), {}});
            ASSERT_EQ(view.rows(), other.rows()) << "round " << round;
            for (std::size_t row = 0; row < view.rows(); ++row) {
                ASSERT_EQ(view.line(row), other.line(row));
            }
        }
    }
    EXPECT_EQ(trace.size(), Trace::mostLines);
}

TEST_F(TraceViewTest, OtherFilterIsFilledSomeLinesAtATime) {
    TraceView view(trace);
    view.update(trace.takeNews());
    view.setFilter(readTraceFilter("wrong"));
    EXPECT_EQ(view.rows(), 0U);
    EXPECT_EQ(view.left(), 5U);
    EXPECT_TRUE(view.fill(3));
    EXPECT_EQ(linesOf(view), Numbers{});
    EXPECT_EQ(view.left(), 2U);
    EXPECT_TRUE(view.fill(1));
    EXPECT_EQ(linesOf(view), Numbers{3});
    EXPECT_FALSE(view.fill(1));
    EXPECT_EQ(linesOf(view), (Numbers{3, 4}));
    EXPECT_FALSE(view.fill(100));
    EXPECT_EQ(view.rows(), 2U);
}

TEST_F(TraceViewTest, FillsOnlyUpToTheEndOfTheLastUpdate) {
    TraceView view(trace);
    view.update(trace.takeNews());
    addEvents(3);
    show(view, "event");
    EXPECT_EQ(linesOf(view), Numbers{0});
    const TraceView::Step step = view.update(trace.takeNews());
    EXPECT_EQ(step.kept, 1U);
    EXPECT_EQ(step.added, 3U);
    EXPECT_EQ(linesOf(view), (Numbers{0, 5, 6, 7}));
}

TEST_F(TraceViewTest, UpdateLooksAtSomeOfTheNewLines) {
    TraceView view(trace);
    const TraceView::Step step = view.update(trace.takeNews(), 2);
    EXPECT_EQ(step.added, 2U);
    EXPECT_EQ(view.left(), 3U);
    EXPECT_FALSE(view.fill(3));
    EXPECT_EQ(linesOf(view), (Numbers{0, 1, 2, 3, 4}));
}

TEST_F(TraceViewTest, ChangesOfLinesThatItHasNotLookedAtYetAreNone) {
    TraceView view(trace);
    view.update(trace.takeNews());
    view.setFilter(readTraceFilter("marked"));
    view.fill(2);
    trace.mark(4, true);
    const TraceView::Step step = view.update(trace.takeNews(), 0);
    EXPECT_EQ(step.added, 0U);
    EXPECT_EQ(view.left(), 3U);
    view.fill();
    EXPECT_EQ(linesOf(view), Numbers{4});
}

TEST_F(TraceViewTest, LinesThatGoMeanwhileAreLeftOut) {
    TraceView view(trace);
    view.update(trace.takeNews());
    view.setFilter({});
    view.fill(1);
    trace.clear();
    EXPECT_EQ(view.left(), 0U);
    EXPECT_FALSE(view.fill());
    EXPECT_EQ(view.update(trace.takeNews()).gone, 1U);
    EXPECT_EQ(view.rows(), 0U);
}

TEST_F(TraceViewTest, SomeLinesAtATimeAreTheSameAsAllAtOnce) {
    TraceView view(trace);
    view.setFilter(readTraceFilter("event"));
    Draws draws(11);
    for (int round = 0; round < 2'000; ++round) {
        addEvents(draws.below(4));
        const auto any =
            trace.begin() + static_cast<Trace::Number>(draws.below(static_cast<int>(trace.size())));
        trace.change(any, [&](TraceLine& line) {
            line.direction = draws.oneIn(2) ? Direction::Event : Direction::Sent;
        });
        if (draws.oneIn(2)) {
            view.update(trace.takeNews(), static_cast<std::size_t>(draws.below(3)));
        }
        view.fill(static_cast<std::size_t>(draws.below(3)));
        if (draws.oneIn(50)) {
            show(view, draws.oneIn(2) ? "event" : "sent");
        }
    }
    view.update(trace.takeNews());
    const Numbers bySteps = linesOf(view);
    show(view, view.filter().direction == Direction::Event ? "event" : "sent");
    EXPECT_EQ(bySteps, linesOf(view));
}

/// What a search comes upon, looking at `most` rows at a time.
std::optional<Trace::Number> found(TraceSearch search, std::size_t most = TraceView::all) {
    while (search.look(most)) {
    }
    return search.found();
}

TEST_F(TraceViewTest, SearchGoesOnPastTheEnd) {
    TraceView view(trace);
    view.update(trace.takeNews());
    const TraceFilter wrong = readTraceFilter("wrong");
    for (const std::size_t most : {std::size_t{1}, TraceView::all}) {
        EXPECT_EQ(found({view, wrong, {}, true}, most), 3U);
        EXPECT_EQ(found({view, wrong, 3, true}, most), 4U);
        EXPECT_EQ(found({view, wrong, 4, true}, most), 3U);
        EXPECT_EQ(found({view, wrong, {}, false}, most), 4U);
        EXPECT_EQ(found({view, wrong, 4, false}, most), 3U);
        EXPECT_EQ(found({view, wrong, 3, false}, most), 4U);
        EXPECT_EQ(found({view, readTraceFilter("marked"), 2, true}, most), std::nullopt);
        EXPECT_EQ(found({view, readTraceFilter("marked"), 2, false}, most), std::nullopt);
        EXPECT_EQ(found({view, readTraceFilter("event"), 0, true}, most), 0U); // itself, once round
    }
    TraceSearch search(view, wrong, 4, true);
    EXPECT_FALSE(search.isRound());
    EXPECT_TRUE(search.look(1));
    EXPECT_TRUE(search.isRound());
}

TEST_F(TraceViewTest, SearchIsNotConfusedByRowsThatGo) {
    TraceView view(trace);
    view.update(trace.takeNews());
    TraceSearch search(view, readTraceFilter("marked"), {}, true);
    EXPECT_TRUE(search.look(2));
    trace.clear();
    addEvents(2);
    trace.mark(6, true);
    view.update(trace.takeNews());
    EXPECT_FALSE(search.look());
    EXPECT_EQ(search.found(), 6U);
}

} // namespace
} // namespace varda::test
