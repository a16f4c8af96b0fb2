#include "core/insight/trace_filter.h"

#include "core/insight/traced_link.h"

namespace varda::test {
namespace {

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

TEST_F(TraceFilterTest, StationsOfEveryFrameOfALineCount) {
    link.enterMode(Mode::Monitoring);
    receive((std::string(wordRead) + "00 05 A3 04 34 12 CD AB 47 42 " + bitRead).c_str());
    clock.advance(100);
    EXPECT_EQ(passing("station 1"), (Numbers{3, 5}));
    EXPECT_EQ(passing("station 5"), (Numbers{1, 2, 5}));
}

TEST_F(TraceFilterTest, NoiseIsNoStationAndHidesNone) {
    send(wordRead, 10);
    receive("F7 ");
    receive(wordAnswer, 40);
    clock.advance(100);
    receive("F7 05 07 ");
    clock.advance(100);
    EXPECT_EQ(passing("station 5"), (Numbers{1, 2, 5, 7}));
    EXPECT_EQ(passing("station 247"), Numbers{}); // F7h
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
}

} // namespace
} // namespace varda::test
