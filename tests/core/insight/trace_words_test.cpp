#include "core/insight/trace_words.h"

#include "core/insight/traced_link.h"

namespace varda::test {
namespace {

class TraceWords : public TracedLinkTest {
protected:
    TraceWords() {
        send(wordRead, 10);
        receive(wordAnswer, 23);
        clock.advance(100);
    }
    std::string cell(std::size_t index, TraceColumn column, const RegisterNames& names = noNames()) const {
        return cellInWords(trace, trace.begin() + index, column, names);
    }
};

TEST_F(TraceWords, EveryColumnHasItsWords) {
    EXPECT_EQ(cell(1, TraceColumn::Delta), "0.000");
    EXPECT_EQ(cell(2, TraceColumn::Delta), "23.000");
    EXPECT_EQ(cell(2, TraceColumn::Time).size(), 12U);
    EXPECT_EQ(cell(2, TraceColumn::Time).substr(8), ".023");
    EXPECT_EQ(cell(0, TraceColumn::Direction), "event");
    EXPECT_EQ(cell(0, TraceColumn::Kind), "port opened");
    EXPECT_EQ(cell(1, TraceColumn::Direction), "sent");
    EXPECT_EQ(cell(2, TraceColumn::Direction), "received");
    EXPECT_EQ(cell(1, TraceColumn::Kind), "word read");
    EXPECT_EQ(cell(2, TraceColumn::Kind), "answer to word read");
    EXPECT_EQ(cell(1, TraceColumn::Station), "0 to 5");
    EXPECT_EQ(cell(2, TraceColumn::Station), "5 to 0");
    EXPECT_EQ(cell(1, TraceColumn::Registers), "W 0000 .. W 0001");
    EXPECT_EQ(cell(2, TraceColumn::Registers), "W 0000 .. W 0001");
    EXPECT_EQ(cell(1, TraceColumn::Hex), "05 00 23 03 00 02 02 0B 22");
    EXPECT_EQ(cell(2, TraceColumn::Verdict), "Taken: it has the 10 bytes that were awaited.");
    EXPECT_EQ(cell(3, TraceColumn::Verdict), "");
}

TEST_F(TraceWords, RegistersHaveTheUsersNames) {
    const RegisterNames names = RegisterNames::parse("W 0000,tank level\n");
    EXPECT_EQ(cell(1, TraceColumn::Registers, names), "W 0000 (tank level) .. W 0001");
}

TEST_F(TraceWords, BurstsThatAreNotKeptWholeSayHowMuchIsMissing) {
    wire.receive(Bytes(Trace::mostLineBytes + 5, 0x11));
    EXPECT_TRUE(cell(3, TraceColumn::Hex).ends_with("11 11 and 5 bytes more"));
}

TEST_F(TraceWords, TwoFramesOfABurstAreTwoKinds) {
    link.enterMode(Mode::Monitoring);
    const std::string both = std::string(wordRead) + wordAnswer;
    receive(both.c_str(), 100);
    EXPECT_EQ(cell(3, TraceColumn::Kind), "word read, answer to word read");
}

TEST_F(TraceWords, TimesOfTheWorldAreIso8601) {
    using namespace std::chrono_literals;
    const std::chrono::system_clock::time_point time(1'800'000'000s + 123'456us);
    EXPECT_EQ(universalTime(time), "2027-01-15T08:00:00.123456Z");
}

} // namespace
} // namespace varda::test
