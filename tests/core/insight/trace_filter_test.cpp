#include "core/insight/trace_filter.h"

#include "core/insight/trace_view.h"
#include "core/insight/traced_link.h"

namespace varda::test {
namespace {

constexpr const char* wordRead = "05 00 23 03 00 02 02 0B 22 ";
constexpr const char* wordAnswer = "00 05 A3 04 34 12 CD AB 47 42 ";
constexpr const char* bitRead = "01 00 21 03 23 0C 10 42 85 ";

/// Line 0 opens the port; 1 and 2 read words; 3 reads bits, 4 is no answer to it.
class TraceFilterTest : public TracedLinkTest {
protected:
    TraceFilterTest() {
        send(wordRead, 10);
        receive(wordAnswer, 23);
        clock.advance(100);
        send(bitRead, 22);
        receive("00 01 ", 1);
        clock.advance(100);
    }

    std::vector<Trace::Number> passing(const char* typed) const {
        std::vector<Trace::Number> numbers;
        const TraceFilter filter = readTraceFilter(typed);
        for (Trace::Number number = trace.begin(); number < trace.end(); ++number) {
            if (passes(filter, trace, number)) {
                numbers.push_back(number);
            }
        }
        return numbers;
    }
};
using Numbers = std::vector<Trace::Number>;

TEST_F(TraceFilterTest, EveryTermFilters) {
    EXPECT_EQ(passing(""), (Numbers{0, 1, 2, 3, 4}));
    EXPECT_EQ(passing("sent"), (Numbers{1, 3}));
    EXPECT_EQ(passing("Received"), (Numbers{2, 4}));
    EXPECT_EQ(passing("event"), Numbers{0});
    EXPECT_EQ(passing("wrong"), (Numbers{3, 4}));
    EXPECT_EQ(passing("station 5"), (Numbers{1, 2}));
    EXPECT_EQ(passing("hex 34 12"), Numbers{2});
    EXPECT_EQ(passing("hex 3412 CD"), Numbers{2});
    EXPECT_EQ(passing("word read"), (Numbers{1, 2}));
    EXPECT_EQ(passing("answer"), Numbers{2});
    EXPECT_EQ(passing("unknown"), Numbers{4});
    EXPECT_EQ(passing("W 0001"), (Numbers{1, 2}));
    EXPECT_EQ(passing("w2"), Numbers{});
    EXPECT_EQ(passing("M 0002.3"), Numbers{3});
    EXPECT_EQ(passing("M0002.2"), Numbers{});
    EXPECT_EQ(passing("M 0002"), Numbers{3});
    EXPECT_EQ(passing("W 0000.15 received"), Numbers{2});
    EXPECT_EQ(passing("sent wrong station 1"), Numbers{3});
}

TEST_F(TraceFilterTest, HalfTypedTermsDoNoHarm) {
    EXPECT_EQ(passing("station"), (Numbers{0, 1, 2, 3, 4}));
    EXPECT_EQ(passing("hex"), (Numbers{0, 1, 2, 3, 4}));
    EXPECT_EQ(passing("station 256"), Numbers{});
    EXPECT_EQ(passing("wor"), (Numbers{1, 2}));
}

TEST_F(TraceFilterTest, MarksAreFound) {
    trace.mark(2, true);
    EXPECT_EQ(passing("marked"), Numbers{2});
    const TraceFilter marked = readTraceFilter("marked");
    EXPECT_EQ(findNext(trace, marked, 0), 2U);
    EXPECT_EQ(findNext(trace, marked, 2), std::nullopt);
    EXPECT_EQ(findPrevious(trace, marked, 4), 2U);
    EXPECT_EQ(findPrevious(trace, marked, 2), std::nullopt);
}

TEST_F(TraceFilterTest, ViewFollowsItsTrace) {
    TraceView view(trace);
    view.setFilter(readTraceFilter("wrong"));
    trace.takeNews();
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

TEST_F(TraceFilterTest, ViewOfAFullTraceIsAsGoodAsANewOne) {
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
            ASSERT_EQ(view.rows(), other.rows()) << "round " << round;
            for (std::size_t row = 0; row < view.rows(); ++row) {
                ASSERT_EQ(view.line(row), other.line(row));
            }
        }
    }
    EXPECT_EQ(trace.size(), Trace::mostLines);
}

} // namespace
} // namespace varda::test
